// MessageBoxW with the buttons and icons that the program uses.
#include <algorithm>
#include <string_view>
#include <vector>

#include "platform/host/api/kernel32.h"
#include "platform/host/boxes/box.h"
#include "platform/host/controls/control.h"
#include "platform/host/hooks/call_hooks.h"
#include "platform/host/system/native.h"

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

struct Choice {
    std::vector<BoxButton> buttons;
    int cancelled;  // the answer when the box is closed without a button; 0: only a button closes it
};

Choice ChoiceOf(UINT flags) {
    switch (flags) {
        case MB_OK | MB_ICONERROR:
        case MB_OK | MB_ICONWARNING:
            return {{{IDOK, u"OK"}}, IDOK};
        case MB_YESNO | MB_ICONWARNING:
            return {{{IDYES, u"&Oui"}, {IDNO, u"&Non"}}, 0};
        case MB_YESNOCANCEL | MB_ICONQUESTION:
            return {{{IDYES, u"&Oui"}, {IDNO, u"&Non"}, {IDCANCEL, u"Annuler"}}, IDCANCEL};
        default:
            NotImplemented("MessageBoxW", "these flags");
    }
}

void FillBox(Box& box, const WCHAR* text, const std::vector<BoxButton>& buttons, int text_height) {
    const int text_width = BOX_WIDTH - 2 * MARGIN;
    AddToBox(box,
             {u"Static", text, TEXT_ID, SS_NOPREFIX | WS_GROUP, {MARGIN, MARGIN, text_width, text_height}});
    Place place = {MARGIN, text_height + 2 * MARGIN, BUTTON_WIDTH, BUTTON_HEIGHT};
    box.default_id = buttons.front().id;
    for (const BoxButton& button : buttons) {
        const bool is_default = button.id == box.default_id;
        const DWORD style = WS_TABSTOP | (is_default ? BS_DEFPUSHBUTTON | WS_GROUP : BS_PUSHBUTTON);
        const HWND control = AddToBox(box, {u"Button", button.text, button.id, style, place});
        if (is_default)
            box.focus = control;
        place.left += BUTTON_WIDTH + MARGIN;
    }
}

int LinesOf(std::u16string_view text) {
    return 1 + static_cast<int>(std::count(text.begin(), text.end(), u'\n'));
}

}  // namespace
}  // namespace host

int WINAPI MessageBoxW(HWND owner, LPCWSTR text, LPCWSTR title, UINT flags) {
    const host::Choice choice = host::ChoiceOf(flags);
    if (host::CallFails("MessageBoxW", {flags}))
        return 0;
    if (owner != nullptr && !IsWindow(owner))
        return host::Fail(ERROR_INVALID_WINDOW_HANDLE);
    const int text_height = host::LinesOf(text) * host::LINE_HEIGHT;
    const int height = text_height + host::BUTTON_HEIGHT + 3 * host::MARGIN + host::FRAME_HEIGHT;
    host::Box box;
    box.on_command = [&box, &choice](int id) {
        const int answer = id == IDCANCEL ? choice.cancelled : id;
        if (answer != 0)
            host::CloseBox(box, answer);
    };
    host::MakeBox(box, owner, title, host::BOX_WIDTH, height);
    host::FillBox(box, text, choice.buttons, text_height);
    return host::RunBox(box);
}
