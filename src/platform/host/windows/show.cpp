// Showing, hiding, minimising and restoring windows.
#include "platform/host/hooks/call_hooks.h"
#include "platform/host/windows/window.h"

namespace host {
namespace {

constexpr UINT SAME_RECTANGLE = SWP_NOSIZE | SWP_NOMOVE;

void MoveTo(HWND handle, const RECT& outer, UINT flags) {
    SetWindowPos(handle, nullptr, outer.left, outer.top, outer.right - outer.left, outer.bottom - outer.top,
                 flags | SWP_SHOWWINDOW | SWP_STATECHANGED | SWP_FRAMECHANGED | SWP_NOZORDER);
}

void Hide(const WindowPointer& window) {
    const HWND handle = window->handle;
    if ((window->style & WS_VISIBLE) == 0)
        return;
    const UINT in_place = IsChildStyle(window->style) ? SWP_NOACTIVATE | SWP_NOZORDER : 0;
    SetWindowPos(handle, nullptr, 0, 0, 0, 0, SWP_HIDEWINDOW | SAME_RECTANGLE | in_place);
    PassActivationOn(*window);
}

void Show(const WindowPointer& window, bool activate) {
    const HWND handle = window->handle;
    if ((window->style & WS_VISIBLE) != 0)
        return;
    const bool child = IsChildStyle(window->style);
    if (child && IsWindowVisible(window->parent) == FALSE) {
        window->style |= WS_VISIBLE;
        return;
    }
    const UINT in_place = child || !activate ? SWP_NOACTIVATE | SWP_NOZORDER : 0;
    SetWindowPos(handle, nullptr, 0, 0, 0, 0, SWP_SHOWWINDOW | SAME_RECTANGLE | in_place);
    if (window->size_on_show && IsWindow(handle)) {
        window->size_on_show = false;
        SendSizeAndMove(handle);
    }
}

void Minimise(const WindowPointer& window) {
    if ((window->style & WS_MINIMIZE) != 0)
        return;
    constexpr LONG ORIGIN = -32000;
    constexpr LONG WIDTH = 160;
    constexpr LONG HEIGHT = 24;
    window->restored = window->outer;
    window->style |= WS_MINIMIZE;
    window->size_on_show = false;
    MoveTo(window->handle, {ORIGIN, ORIGIN, ORIGIN + WIDTH, ORIGIN + HEIGHT}, SWP_NOACTIVATE);
}

void Restore(const WindowPointer& window) {
    if ((window->style & WS_MINIMIZE) == 0) {
        Show(window, true);
        return;
    }
    window->style &= ~WS_MINIMIZE;
    MoveTo(window->handle, window->restored, 0);
    SetFocus(window->handle);
    SendMessageW(window->handle, WM_ACTIVATE, WA_ACTIVE, 0);
}

}  // namespace

void SendSizeAndMove(HWND handle) {
    if (const WindowPointer window = FindWindowState(handle); window != nullptr) {
        const RECT client = window->client;
        SendSize(handle, SIZE_RESTORED, client);
        SendMove(handle, client);
    }
}

}  // namespace host

BOOL WINAPI ShowWindow(HWND handle, int command) {
    const host::WindowPointer window = host::FindWindowState(handle);
    if (window == nullptr)
        return FALSE;
    const bool was_visible = (window->style & WS_VISIBLE) != 0;
    switch (command) {
        case SW_HIDE:
            host::Hide(window);
            break;
        case SW_SHOW:
            host::Show(window, true);
            break;
        case SW_SHOWNA:
            host::Show(window, false);
            break;
        case SW_SHOWNORMAL:
        case SW_RESTORE:
            host::Restore(window);
            break;
        case SW_MINIMIZE:
            host::Minimise(window);
            break;
        default:
            host::NotImplemented("ShowWindow", "this command");
    }
    return was_visible;
}
