#include "shell/focus_keeper.h"

namespace {

bool CanTakeFocus(HWND control) {
    return IsWindowVisible(control) != FALSE && IsWindowEnabled(control) != FALSE;
}

// While no window has the focus, the platform sends keys to the active window as system keys, although Alt is
// not down.
void MakePlainKey(MSG& message) {
    constexpr LPARAM ALT_IS_DOWN = 0x20000000;
    if ((message.lParam & ALT_IS_DOWN) != 0)
        return;
    if (message.message == WM_SYSKEYDOWN)
        message.message = WM_KEYDOWN;
    else if (message.message == WM_SYSKEYUP)
        message.message = WM_KEYUP;
}

bool IsPlainKey(const MSG& message) {
    return message.message == WM_KEYDOWN || message.message == WM_KEYUP || message.message == WM_CHAR;
}

}  // namespace

void KeepFocus(HWND main_window, HWND& last_control, MSG& message) {
    const HWND focus = GetFocus();
    if (focus != nullptr && IsChild(main_window, focus) != FALSE && CanTakeFocus(focus)) {
        last_control = focus;
        return;
    }
    if (GetActiveWindow() != main_window)
        return;
    SetFocus(CanTakeFocus(last_control) ? last_control : main_window);
    const HWND keyboard = GetFocus();
    if (message.hwnd != main_window || keyboard == nullptr)
        return;
    MakePlainKey(message);
    if (IsPlainKey(message))
        message.hwnd = keyboard;
}
