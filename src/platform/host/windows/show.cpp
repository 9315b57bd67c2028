// Showing, hiding, minimising and restoring windows.
#include "platform/host/hooks.h"
#include "platform/host/windows/window.h"

namespace host {
namespace {

void Place(HWND handle, const RECT& outer, UINT flags) {
    SetWindowPos(handle, nullptr, outer.left, outer.top, outer.right - outer.left, outer.bottom - outer.top,
                 flags | SWP_STATECHANGED | SWP_FRAMECHANGED | SWP_NOZORDER);
}

void Hide(const WindowPointer& window) {
    const HWND handle = window->handle;
    if ((window->style & WS_VISIBLE) == 0)
        return;
    SendMessageW(handle, WM_SHOWWINDOW, FALSE, 0);
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
    SendMessageW(handle, WM_SHOWWINDOW, TRUE, 0);
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
    Place(window->handle,
          {MINIMISED_ORIGIN, MINIMISED_ORIGIN, MINIMISED_ORIGIN + WIDTH, MINIMISED_ORIGIN + HEIGHT},
          SWP_SHOWWINDOW | SWP_NOACTIVATE);
}

void Maximise(const WindowPointer& window) {
    if ((window->style & WS_MINIMIZE) != 0)
        NotImplemented("ShowWindow", "a minimised window to be maximised");
    if ((window->style & WS_MAXIMIZE) != 0)
        return;
    MINMAXINFO limits = DefaultLimits(window->style, window->extended_style);
    SendMessageW(window->handle, WM_GETMINMAXINFO, 0, reinterpret_cast<LPARAM>(&limits));
    window->restored = window->outer;
    window->style |= WS_MAXIMIZE;
    window->size_on_show = false;
    const POINT& at = limits.ptMaxPosition;
    const POINT& size = limits.ptMaxSize;
    Place(window->handle, {at.x, at.y, at.x + size.x, at.y + size.y}, SWP_SHOWWINDOW);
}

void Restore(const WindowPointer& window) {
    const HWND handle = window->handle;
    const bool minimised = (window->style & WS_MINIMIZE) != 0;
    if (!minimised && (window->style & WS_MAXIMIZE) == 0) {
        Show(window, true);
        return;
    }
    if (minimised && SendMessageW(handle, WM_QUERYOPEN, 0, 0) == FALSE)
        return;
    window->style &= minimised ? ~WS_MINIMIZE : ~WS_MAXIMIZE;
    Place(handle, window->restored, SWP_SHOWWINDOW);
    if (minimised && GetActiveWindow() == handle)
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
        case SW_SHOWNOACTIVATE:
            host::Show(window, false);
            break;
        case SW_SHOWNORMAL:
        case SW_RESTORE:
        case SW_SHOWDEFAULT:
            host::Restore(window);
            break;
        case SW_MINIMIZE:
        case SW_SHOWMINIMIZED:
        case SW_SHOWMINNOACTIVE:
            host::Minimise(window);
            break;
        case SW_MAXIMIZE:
            host::Maximise(window);
            break;
        default:
            host::NotImplemented("ShowWindow", "this command");
    }
    return was_visible;
}
