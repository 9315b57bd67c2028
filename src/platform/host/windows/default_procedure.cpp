// DefWindowProcW: the default actions for messages that a window's own procedure does not handle.
#include "platform/host/hooks/call_hooks.h"
#include "platform/host/windows/window.h"

namespace host {
namespace {

LRESULT HitPart(HWND handle, POINT point) {
    RECT client{};
    GetClientRect(handle, &client);
    ScreenToClient(handle, &point);
    return Contains(client, point) ? HTCLIENT : HTBORDER;
}

void LimitSize(const Window& window, WINDOWPOS& position) {
    if ((position.flags & SWP_NOSIZE) != 0)
        return;
    const SIZE size = WithinLimits(window, {position.cx, position.cy});
    if ((window.style & WS_MINIMIZE) == 0) {
        position.cx = size.cx;
        position.cy = size.cy;
    }
}

void SendChange(const Window& window, UINT flags) {
    const RECT client = window.client;
    const WPARAM kind = (window.style & WS_MINIMIZE) != 0 ? SIZE_MINIMIZED : SIZE_RESTORED;
    if ((flags & SWP_NOCLIENTMOVE) == 0)
        SendMove(window.handle, client);
    if ((flags & SWP_NOCLIENTSIZE) == 0 || (flags & SWP_STATECHANGED) != 0)
        SendSize(window.handle, kind, client);
}

LRESULT HandleSystemCommand(HWND handle, WPARAM command) {
    constexpr WPARAM COMMAND_BITS = 0xFFF0;
    switch (command & COMMAND_BITS) {
        case SC_CLOSE:
            return SendMessageW(handle, WM_CLOSE, 0, 0);
        case SC_MINIMIZE:
            ShowWindow(handle, SW_MINIMIZE);
            return 0;
        case SC_RESTORE:
            ShowWindow(handle, SW_RESTORE);
            return 0;
        default:
            NotImplemented("WM_SYSCOMMAND", "command", command & COMMAND_BITS);
    }
}

// A child asks its parent first whether a click may activate the top-level window.
LRESULT HandleMouseActivate(const Window& window, WPARAM wparam, LPARAM lparam) {
    if (window.parent == nullptr)
        return MA_ACTIVATE;
    const LRESULT answer = SendMessageW(window.parent, WM_MOUSEACTIVATE, wparam, lparam);
    return answer == 0 ? MA_ACTIVATE : answer;
}

// Alt+F4 closes the window.
void HandleSystemKey(HWND handle, WPARAM key) {
    if (key == VK_F4 && GetKeyState(VK_MENU) < 0)
        PostMessageW(RootOf(handle), WM_SYSCOMMAND, SC_CLOSE, 0);
}

void FocusOnActivation(const Window& window, WPARAM wparam) {
    if (LOWORD(wparam) != WA_INACTIVE && (window.style & WS_MINIMIZE) == 0)
        SetFocus(window.handle);
}

LRESULT HandleText(Window& window, UINT message, WPARAM wparam, LPARAM lparam) {
    if (message == WM_GETTEXT)
        return CopyText(window.text, wparam, lparam);
    if (message == WM_GETTEXTLENGTH)
        return static_cast<LRESULT>(window.text.size());
    const LPCWSTR text = message == WM_NCCREATE ? reinterpret_cast<const CREATESTRUCTW*>(lparam)->lpszName
                                                : reinterpret_cast<LPCWSTR>(lparam);
    window.text = text == nullptr ? u"" : text;
    return TRUE;
}

}  // namespace
}  // namespace host

LRESULT WINAPI DefWindowProcW(HWND handle, UINT message, WPARAM wparam, LPARAM lparam) {
    const host::WindowPointer window = host::FindWindowState(handle);
    if (window == nullptr)
        return 0;
    switch (message) {
        case WM_NCCREATE:
        case WM_SETTEXT:
        case WM_GETTEXT:
        case WM_GETTEXTLENGTH:
            return host::HandleText(*window, message, wparam, lparam);
        case WM_NCCALCSIZE: {
            auto& rectangle = *reinterpret_cast<RECT*>(lparam);
            rectangle = host::InsideFrame(*window, rectangle);
            return 0;
        }
        case WM_WINDOWPOSCHANGING:
            host::LimitSize(*window, *reinterpret_cast<WINDOWPOS*>(lparam));
            return 0;
        case WM_WINDOWPOSCHANGED:
            host::SendChange(*window, reinterpret_cast<const WINDOWPOS*>(lparam)->flags);
            return 0;
        case WM_NCHITTEST:
            return host::HitPart(handle,
                                 {static_cast<SHORT>(LOWORD(lparam)), static_cast<SHORT>(HIWORD(lparam))});
        case WM_PAINT:
            host::EraseAndValidate(*window);
            return 0;
        case WM_ERASEBKGND:
            return window->window_class->background != nullptr;
        case WM_CLOSE:
            DestroyWindow(handle);
            return 0;
        case WM_ACTIVATE:
            host::FocusOnActivation(*window, wparam);
            return 0;
        case WM_MOUSEACTIVATE:
            return host::HandleMouseActivate(*window, wparam, lparam);
        case WM_SYSCOMMAND:
            return host::HandleSystemCommand(handle, wparam);
        case WM_SYSKEYDOWN:
            host::HandleSystemKey(handle, wparam);
            return 0;
        default:
            return 0;
    }
}
