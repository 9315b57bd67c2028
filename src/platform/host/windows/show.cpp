// Showing, hiding, minimising and restoring windows.
#include "platform/host/hooks.h"
#include "platform/host/windows/window.h"

namespace host {
namespace {

void MoveTo(HWND handle, const RECT& outer, UINT flags) {
    SetWindowPos(handle, nullptr, outer.left, outer.top, outer.right - outer.left, outer.bottom - outer.top,
                 flags | SWP_STATECHANGED | SWP_FRAMECHANGED | SWP_NOZORDER);
}

void Hide(const WindowPointer& window) {
    const HWND handle = window->handle;
    if ((window->style & WS_VISIBLE) == 0)
        return;
    UINT flags = SWP_HIDEWINDOW | SWP_NOSIZE | SWP_NOMOVE;
    if (IsChildStyle(window->style))
        flags |= SWP_NOACTIVATE | SWP_NOZORDER;
    SetWindowPos(handle, nullptr, 0, 0, 0, 0, flags);
    PassActivationOn(handle);
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
    UINT flags = SWP_SHOWWINDOW | SWP_NOSIZE | SWP_NOMOVE;
    if (child || !activate)
        flags |= SWP_NOACTIVATE | SWP_NOZORDER;
    SetWindowPos(handle, nullptr, 0, 0, 0, 0, flags);
    if (window->size_on_show && IsWindow(handle)) {
        window->size_on_show = false;
        SendSizeAndMove(handle);
    }
}

void Minimise(const WindowPointer& window) {
    if ((window->style & WS_MINIMIZE) != 0)
        return;
    constexpr LONG WIDTH = 160;
    constexpr LONG HEIGHT = 24;
    if (GetFocus() == window->handle || IsChild(window->handle, GetFocus()) != FALSE)
        SetFocus(nullptr);
    window->restored = window->outer;
    window->style |= WS_MINIMIZE;
    window->size_on_show = false;
    MoveTo(window->handle,
           {MINIMISED_ORIGIN, MINIMISED_ORIGIN, MINIMISED_ORIGIN + WIDTH, MINIMISED_ORIGIN + HEIGHT},
           SWP_SHOWWINDOW | SWP_NOACTIVATE);
}

void Restore(const WindowPointer& window) {
    const HWND handle = window->handle;
    if ((window->style & WS_MINIMIZE) == 0) {
        Show(window, true);
        return;
    }
    window->style &= ~WS_MINIMIZE;
    MoveTo(handle, window->restored, SWP_SHOWWINDOW);
    if (GetActiveWindow() == handle)
        SetFocus(handle);
}

}  // namespace

void SendSizeAndMove(HWND handle) {
    const WindowPointer window = FindWindowState(handle);
    if (window == nullptr)
        return;
    const RECT client = window->client;
    SendMessageW(handle, WM_SIZE, SIZE_RESTORED,
                 MAKELPARAM(static_cast<unsigned>(client.right - client.left),
                            static_cast<unsigned>(client.bottom - client.top)));
    SendMessageW(handle, WM_MOVE, 0,
                 MAKELPARAM(static_cast<unsigned>(client.left), static_cast<unsigned>(client.top)));
}

}  // namespace host

using host::FindWindowState;
using host::WindowPointer;

BOOL WINAPI ShowWindow(HWND handle, int command) {
    const WindowPointer window = FindWindowState(handle);
    if (window == nullptr)
        return FALSE;
    const BOOL was_visible = (window->style & WS_VISIBLE) != 0 ? TRUE : FALSE;
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
