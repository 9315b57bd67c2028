// BUTTON: push buttons, the default push button, automatic check boxes, and group boxes.
#include "platform/host/controls/control.h"
#include "platform/host/hooks/call_hooks.h"

namespace host {
namespace {

struct Button {
    WPARAM check = BST_UNCHECKED;
    bool is_held = false;  // pressed by the mouse or the space bar and not yet released
};

DWORD KindOf(HWND window) {
    const DWORD kind = StyleOf(window) & BS_TYPEMASK;
    if (kind > BS_DEFPUSHBUTTON && kind != BS_AUTOCHECKBOX && kind != BS_GROUPBOX)
        NotImplemented("BUTTON", "this kind of button");
    return kind;
}

LRESULT DialogCode(HWND window) {
    switch (KindOf(window)) {
        case BS_PUSHBUTTON:
            return DLGC_BUTTON | DLGC_UNDEFPUSHBUTTON;
        case BS_DEFPUSHBUTTON:
            return DLGC_BUTTON | DLGC_DEFPUSHBUTTON;
        case BS_GROUPBOX:
            return DLGC_STATIC;
        default:
            return DLGC_BUTTON;
    }
}

LRESULT Hold(HWND window, Button& button) {
    SetCapture(window);
    button.is_held = true;
    SetFocus(window);
    return 0;
}

// Sends the command last, because its receiver may destroy the button.
void Click(HWND window, Button& button) {
    if (KindOf(window) == BS_AUTOCHECKBOX)
        button.check = button.check == BST_CHECKED ? BST_UNCHECKED : BST_CHECKED;
    SendCommand(window, BN_CLICKED);
}

// ReleaseCapture sends WM_CAPTURECHANGED, which clears `is_held`.
LRESULT Release(HWND window, Button& button, bool clicks) {
    if (!button.is_held)
        return 0;
    ReleaseCapture();
    if (clicks)
        Click(window, button);
    return 0;
}

LRESULT SetCheck(HWND window, Button& button, WPARAM check) {
    if (KindOf(window) == BS_AUTOCHECKBOX)
        button.check = check == BST_UNCHECKED ? BST_UNCHECKED : BST_CHECKED;
    return 0;
}

LRESULT SetKind(HWND window, WPARAM kind) {
    const DWORD style = (StyleOf(window) & ~BS_TYPEMASK) | (static_cast<DWORD>(kind) & BS_TYPEMASK);
    SetWindowLongPtrW(window, GWL_STYLE, static_cast<LONG_PTR>(style));
    return 0;
}

LRESULT HandleInput(HWND window, Button& button, UINT message, WPARAM wparam, LPARAM lparam) {
    switch (message) {
        case WM_LBUTTONDOWN:
        case WM_LBUTTONDBLCLK:
            return Hold(window, button);
        case WM_LBUTTONUP:
            return Release(window, button, IsInClientArea(window, lparam));
        case WM_KEYDOWN:
            return wparam == VK_SPACE ? Hold(window, button) : 0;
        case WM_KEYUP:
            return wparam == VK_SPACE ? Release(window, button, true) : 0;
        case WM_KILLFOCUS:
            return Release(window, button, false);
        case WM_CAPTURECHANGED:
            button.is_held = false;
            return 0;
        case BM_CLICK:
            SendMessageW(window, WM_LBUTTONDOWN, 0, 0);
            SendMessageW(window, WM_LBUTTONUP, 0, 0);
            return 0;
        default:
            return DefControlProcedure("BUTTON", window, message, wparam, lparam);
    }
}

}  // namespace

LRESULT CALLBACK ButtonProcedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    auto* const button = StateAt<Button>(window, message);
    if (button == nullptr)
        return DefWindowProcW(window, message, wparam, lparam);
    switch (message) {
        case WM_GETDLGCODE:
            return DialogCode(window);
        case WM_NCHITTEST:
            return KindOf(window) == BS_GROUPBOX ? HTTRANSPARENT
                                                 : DefWindowProcW(window, message, wparam, lparam);
        case BM_GETCHECK:
            return static_cast<LRESULT>(button->check);
        case BM_SETCHECK:
            return SetCheck(window, *button, wparam);
        case BM_SETSTYLE:
            return SetKind(window, wparam);
        default:
            return HandleInput(window, *button, message, wparam, lparam);
    }
}

}  // namespace host
