// A failure in words: status line and box. Nothing here fails in its turn: where memory is too short for the
// words, it says just that.
#include "shell/show_error.h"

#include <new>
#include <optional>

#include "base/fixed_text.h"
#include "base/text_convert.h"

namespace {

constexpr WideView OUT_OF_MEMORY = TEXT("Mémoire insuffisante : l'opération n'a pas abouti.");
// A longer text would make a box whose button lies off the screen.
constexpr std::size_t BOX_LIMIT_CHARACTERS = 1000;
constexpr WideView OMISSION = TEXT(" […] ");

// The exception's own words; none where they cannot be made.
std::optional<WideText> OwnText(const std::exception& error) noexcept {
    if (dynamic_cast<const std::bad_alloc*>(&error) != nullptr)
        return std::nullopt;
    try {
        return WideFromMessage(error.what());
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

const WCHAR* TextToShow(const std::optional<WideText>& own_text) {
    return own_text ? own_text->c_str() : OUT_OF_MEMORY.data();
}

bool IsControlCharacter(WCHAR character) {
    return character < 0x20 || (character >= 0x7F && character < 0xA0);
}

bool IsHighSurrogate(WCHAR character) {
    return (character & 0xFC00) == 0xD800;
}

bool IsLowSurrogate(WCHAR character) {
    return (character & 0xFC00) == 0xDC00;
}

// The text itself; of a long one the start and the end, with a mark where the rest is left out.
FixedText<BOX_LIMIT_CHARACTERS> Shortened(WideView text) {
    constexpr std::size_t START = 600;
    constexpr std::size_t END = BOX_LIMIT_CHARACTERS - START - OMISSION.size();
    FixedText<BOX_LIMIT_CHARACTERS> shortened;
    if (text.size() <= BOX_LIMIT_CHARACTERS)
        return shortened += text;
    WideView start = text.substr(0, START);
    WideView end = text.substr(text.size() - END);
    if (IsHighSurrogate(start.back()))
        start.remove_suffix(1);
    if (IsLowSurrogate(end.front()))
        end.remove_prefix(1);
    shortened += start;
    shortened += OMISSION;
    return shortened += end;
}

// With a blank for each control character, which could make the box larger than the screen. The line ends of
// the platform's own texts stay: no name or value holds a carriage return with a line feed behind it.
FixedText<BOX_LIMIT_CHARACTERS> WithoutControls(WideView text) {
    constexpr WideView LINE_END = TEXT("\r\n");
    FixedText<BOX_LIMIT_CHARACTERS> plain;
    while (!text.empty()) {
        const std::size_t count = text.starts_with(LINE_END) ? LINE_END.size() : 1;
        const bool is_blanked = count == 1 && IsControlCharacter(text.front());
        plain += is_blanked ? WideView(TEXT(" ")) : text.substr(0, count);
        text.remove_prefix(count);
    }
    return plain;
}

void ShowBox(HWND owner, const WCHAR* text) {
    const FixedText<BOX_LIMIT_CHARACTERS> box_text = WithoutControls(Shortened(text));
    const HWND focus = GetFocus();
    MessageBoxW(owner, box_text.c_str(), TEXT("Veldrane VM"), MB_ICONERROR);
    // The field that the message speaks of may have got the focus in this very command, unseen by the message
    // loop.
    if (focus != nullptr)
        SetFocus(focus);
}

}  // namespace

void ShowError(Launcher& launcher, const std::exception& error) noexcept {
    const std::optional<WideText> own_text = OwnText(error);
    SetWindowTextW(launcher.status_label, TextToShow(own_text));
    ShowBox(launcher.main_window, TextToShow(own_text));
}

void ShowErrorBox(HWND owner, const std::exception& error) noexcept {
    ShowBox(owner, TextToShow(OwnText(error)));
}
