// MessageBoxW, with the buttons and the icons that the program asks for.
#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "platform/host/api/kernel32.h"
#include "platform/host/boxes/box.h"
#include "platform/host/controls/control.h"
#include "platform/host/hooks.h"

namespace host {
namespace {

constexpr int TEXT_ID = 0xFFFF;
constexpr int BOX_WIDTH = 420;
constexpr int BUTTON_WIDTH = 90;
constexpr int BUTTON_HEIGHT = 26;
constexpr int MARGIN = 12;
constexpr int FRAME_HEIGHT = 40;

struct BoxButton {
    int id;
    const WCHAR* text;
};

std::vector<BoxButton> ButtonsOf(UINT flags) {
    switch (flags & MB_TYPEMASK) {
        case MB_OK:
            return {{IDOK, u"OK"}};
        case MB_YESNO:
            return {{IDYES, u"&Oui"}, {IDNO, u"&Non"}};
        case MB_YESNOCANCEL:
            return {{IDYES, u"&Oui"}, {IDNO, u"&Non"}, {IDCANCEL, u"Annuler"}};
        default:
            NotImplemented("MessageBoxW", "these buttons");
    }
}

void CheckFlags(UINT flags) {
    constexpr auto ICONS =
        std::to_array<UINT>({0, MB_ICONERROR, MB_ICONQUESTION, MB_ICONWARNING, MB_ICONINFORMATION});
    const bool icon_is_known = std::find(ICONS.begin(), ICONS.end(), flags & MB_ICONMASK) != ICONS.end();
    if (!icon_is_known || (flags & ~(MB_TYPEMASK | MB_ICONMASK)) != 0)
        NotImplemented("MessageBoxW", "these flags");
}

// What closing the box without a button counts as; 0 where it must be answered.
int AnswerToCancel(UINT flags) {
    switch (flags & MB_TYPEMASK) {
        case MB_OK:
            return IDOK;
        case MB_YESNO:
            return 0;
        default:
            return IDCANCEL;
    }
}

bool FillBox(Box& box, const WCHAR* text, const std::vector<BoxButton>& buttons, int text_height) {
    const int text_width = BOX_WIDTH - 2 * MARGIN;
    if (AddToBox(
            box,
            {u"Static", text, TEXT_ID, SS_NOPREFIX | WS_GROUP, {MARGIN, MARGIN, text_width, text_height}}) ==
        nullptr)
        return false;
    int left = MARGIN;
    for (const BoxButton& button : buttons) {
        const bool is_first = box.focus == nullptr;
        const DWORD style = WS_TABSTOP | (is_first ? BS_DEFPUSHBUTTON | WS_GROUP : BS_PUSHBUTTON);
        const Place place = {left, text_height + 2 * MARGIN, BUTTON_WIDTH, BUTTON_HEIGHT};
        const HWND control = AddToBox(box, {u"Button", button.text, button.id, style, place});
        if (control == nullptr)
            return false;
        if (is_first) {
            box.focus = control;
            box.default_id = button.id;
        }
        left += BUTTON_WIDTH + MARGIN;
    }
    return true;
}

int LinesOf(const std::u16string& text) {
    return 1 + static_cast<int>(std::count(text.begin(), text.end(), u'\n'));
}

}  // namespace
}  // namespace host

int WINAPI MessageBoxW(HWND owner, LPCWSTR text, LPCWSTR title, UINT flags) {
    host::CheckFlags(flags);
    if (host::CallFails("MessageBoxW"))
        return 0;
    if (owner != nullptr && !IsWindow(owner)) {
        SetLastError(ERROR_INVALID_WINDOW_HANDLE);
        return 0;
    }
    const std::u16string shown = text == nullptr ? u"" : text;
    const int text_height = host::LinesOf(shown) * host::LINE_HEIGHT;
    const int height = text_height + host::BUTTON_HEIGHT + 3 * host::MARGIN + host::FRAME_HEIGHT;
    host::Box box;
    const int cancelled = host::AnswerToCancel(flags);
    box.on_command = [&box, cancelled](int id) {
        const int answer = id == IDCANCEL ? cancelled : id;
        if (answer >= IDOK && answer <= IDNO)
            host::CloseBox(box, answer);
    };
    const WCHAR* const shown_title = title == nullptr ? u"Erreur" : title;
    if (!host::MakeBox(box, owner, shown_title, host::BOX_WIDTH, height))
        return 0;
    if (!host::FillBox(box, shown.c_str(), host::ButtonsOf(flags), text_height)) {
        DestroyWindow(box.window);
        return 0;
    }
    return host::RunBox(box);
}
