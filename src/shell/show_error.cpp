// These functions must work when memory is short. So the texts of the boxes have a fixed capacity.
#include "shell/show_error.h"

#include <new>
#include <optional>

#include "base/fixed_text.h"
#include "base/text_convert.h"

namespace {

constexpr WideView OUT_OF_MEMORY = TEXT("Mémoire insuffisante : l'opération n'a pas abouti.");
// A longer text would move the button of the box off the screen.
constexpr std::size_t BOX_LIMIT_CHARACTERS = 1000;
constexpr WideView OMISSION = TEXT(" […] ");

// Returns the text of the exception; none for std::bad_alloc and when the text cannot be converted.
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

// Returns a text of at most BOX_LIMIT_CHARACTERS unchanged; of a longer text, the start, OMISSION and the
// end.
FixedText<BOX_LIMIT_CHARACTERS> Shortened(WideView text) {
    constexpr std::size_t START = 600;
    constexpr std::size_t END = BOX_LIMIT_CHARACTERS - START - OMISSION.size();
    if (text.size() <= BOX_LIMIT_CHARACTERS)
        return FixedText<BOX_LIMIT_CHARACTERS>(text);
    FixedText<BOX_LIMIT_CHARACTERS> shortened;
    WideView start = text.substr(0, START);
    WideView end = text.substr(text.size() - END);
    if (IS_HIGH_SURROGATE(start.back()))
        start.remove_suffix(1);
    if (IS_LOW_SURROGATE(end.front()))
        end.remove_prefix(1);
    shortened += start;
    shortened += OMISSION;
    shortened += end;
    return shortened;
}

// Replaces control characters by blanks, because many line feeds would make the box larger than the
// screen. Keeps each line end (carriage return and line feed): only the platform's messages contain line
// ends; keys, values and paths do not.
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
    // The failed command may have moved the focus to the field with the wrong value. KeepFocus does not know
    // this field yet: it is called only when a message is read.
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
