// What a window does with the messages that its own procedure leaves alone.
#include <algorithm>

#include "platform/host/hooks.h"
#include "platform/host/windows/window.h"

namespace host {
namespace {

LRESULT HitFrame(const Window& window, POINT point) {
    const POINT origin = ClientOrigin(window);
    const RECT client = {origin.x, origin.y, origin.x + window.client.right - window.client.left,
                         origin.y + window.client.bottom - window.client.top};
    return Contains(client, point) ? HTCLIENT : HTBORDER;
}

LRESULT CalculateFrame(const Window& window, RECT& rectangle) {
    const FrameSize frame = FrameOf(window.style, window.extended_style);
    rectangle.left += frame.left;
    rectangle.top += frame.top;
    rectangle.right -= frame.right;
    rectangle.bottom -= frame.bottom;
    if ((window.style & WS_VSCROLL) != 0)
        rectangle.right -= SCROLL_BAR;
    if ((window.style & WS_HSCROLL) != 0)
        rectangle.bottom -= SCROLL_BAR;
    rectangle.right = std::max(rectangle.right, rectangle.left);
    rectangle.bottom = std::max(rectangle.bottom, rectangle.top);
    return 0;
}

LRESULT LimitSize(const Window& window, WINDOWPOS& position) {
    if ((position.flags & SWP_NOSIZE) != 0 || !HasLimits(window.style))
        return 0;
    MINMAXINFO limits = DefaultLimits(window.style, window.extended_style);
    SendMessageW(window.handle, WM_GETMINMAXINFO, 0, reinterpret_cast<LPARAM>(&limits));
    if ((window.style & WS_MINIMIZE) == 0) {
        position.cx = std::max(std::min(position.cx, limits.ptMaxTrackSize.x), limits.ptMinTrackSize.x);
        position.cy = std::max(std::min(position.cy, limits.ptMaxTrackSize.y), limits.ptMinTrackSize.y);
    }
    return 0;
}

LRESULT TellChange(const Window& window, const WINDOWPOS& position) {
    const RECT client = window.client;
    const HWND handle = window.handle;
    const DWORD style = window.style;
    if ((position.flags & SWP_NOCLIENTMOVE) == 0) {
        SendMessageW(handle, WM_MOVE, 0,
                     MAKELPARAM(static_cast<unsigned>(client.left), static_cast<unsigned>(client.top)));
    }
    if ((position.flags & SWP_NOCLIENTSIZE) == 0 || (position.flags & SWP_STATECHANGED) != 0) {
        WPARAM kind = SIZE_RESTORED;
        if ((style & WS_MINIMIZE) != 0)
            kind = SIZE_MINIMIZED;
        else if ((style & WS_MAXIMIZE) != 0)
            kind = SIZE_MAXIMIZED;
        SendMessageW(handle, WM_SIZE, kind,
                     MAKELPARAM(static_cast<unsigned>(client.right - client.left),
                                static_cast<unsigned>(client.bottom - client.top)));
    }
    return 0;
}

LRESULT Paint(HWND handle) {
    PAINTSTRUCT paint{};
    BeginPaint(handle, &paint);
    EndPaint(handle, &paint);
    return 0;
}

LRESULT EraseBackground(const Window& window) {
    return window.window_class->background == nullptr ? 0 : 1;
}

LRESULT SystemCommand(HWND handle, WPARAM command) {
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
        case SC_SIZE:
            NotImplemented("WM_SYSCOMMAND", "SC_SIZE");
        case SC_MOVE:
            NotImplemented("WM_SYSCOMMAND", "SC_MOVE");
        case SC_MAXIMIZE:
            NotImplemented("WM_SYSCOMMAND", "SC_MAXIMIZE");
        case SC_KEYMENU:
            NotImplemented("WM_SYSCOMMAND", "SC_KEYMENU");
        default:
            NotImplemented("WM_SYSCOMMAND", "a command other than these: close, minimise, restore");
    }
}

// Children ask their parent first whether a click may activate it.
LRESULT MayActivate(const Window& window, WPARAM wparam, LPARAM lparam) {
    if (window.parent == nullptr)
        return MA_ACTIVATE;
    const LRESULT answer = SendMessageW(window.parent, WM_MOUSEACTIVATE, wparam, lparam);
    return answer == 0 ? MA_ACTIVATE : answer;
}

LRESULT SystemKey(const Window& window, WPARAM key) {
    if (key == VK_F4 && GetKeyState(VK_MENU) < 0)
        PostMessageW(RootOf(window.handle), WM_SYSCOMMAND, SC_CLOSE, 0);
    return 0;
}

LRESULT FocusOnActivation(const Window& window, WPARAM wparam) {
    if (LOWORD(wparam) != WA_INACTIVE && (window.style & WS_MINIMIZE) == 0)
        SetFocus(window.handle);
    return 0;
}

}  // namespace
}  // namespace host

LRESULT WINAPI DefWindowProcW(HWND handle, UINT message, WPARAM wparam, LPARAM lparam) {
    const host::WindowPointer window = host::FindWindowState(handle);
    if (window == nullptr)
        return 0;
    switch (message) {
        case WM_NCCREATE: {
            const LPCWSTR title = reinterpret_cast<const CREATESTRUCTW*>(lparam)->lpszName;
            window->text = title == nullptr ? u"" : title;
            return TRUE;
        }
        case WM_SETTEXT:
            window->text = lparam == 0 ? u"" : reinterpret_cast<LPCWSTR>(lparam);
            return TRUE;
        case WM_GETTEXT:
            return host::GiveText(window->text, wparam, lparam);
        case WM_GETTEXTLENGTH:
            return static_cast<LRESULT>(window->text.size());
        case WM_NCCALCSIZE:
            // The rectangle to work on comes first, with parameters and without.
            return host::CalculateFrame(*window, *reinterpret_cast<RECT*>(lparam));
        case WM_WINDOWPOSCHANGING:
            return host::LimitSize(*window, *reinterpret_cast<WINDOWPOS*>(lparam));
        case WM_WINDOWPOSCHANGED:
            return host::TellChange(*window, *reinterpret_cast<const WINDOWPOS*>(lparam));
        case WM_NCHITTEST:
            return host::HitFrame(*window,
                                  {static_cast<SHORT>(LOWORD(lparam)), static_cast<SHORT>(HIWORD(lparam))});
        case WM_PAINT:
            return host::Paint(handle);
        case WM_ERASEBKGND:
            return host::EraseBackground(*window);
        case WM_CLOSE:
            DestroyWindow(handle);
            return 0;
        case WM_ACTIVATE:
            return host::FocusOnActivation(*window, wparam);
        case WM_MOUSEACTIVATE:
            return host::MayActivate(*window, wparam, lparam);
        case WM_SYSCOMMAND:
            return host::SystemCommand(handle, wparam);
        case WM_SYSKEYDOWN:
            return host::SystemKey(*window, wparam);
        default:
            return 0;
    }
}
