// Rectangles: frames, client areas, limits and coordinates.
#include <algorithm>

#include "platform/host/hooks/call_hooks.h"
#include "platform/host/windows/window.h"

namespace host {
namespace {

constexpr LONG SCROLL_BAR = 17;
constexpr LONG CAPTION = 19;
constexpr LONG TOOL_CAPTION = 16;
constexpr LONG SIZING_FRAME = 4;
constexpr LONG DIALOG_FRAME = 3;
constexpr LONG CLIENT_EDGE = 2;

// The origin of the window's client area on the screen; (0, 0) if there is no window.
POINT ClientOrigin(HWND handle) {
    const WindowPointer window = handle == nullptr ? nullptr : FindWindowState(handle);
    if (window == nullptr)
        return {0, 0};
    const POINT base = ClientOrigin(window->parent);
    return {base.x + window->client.left, base.y + window->client.top};
}

LONG FrameThickness(DWORD style, DWORD extended_style) {
    LONG thickness = 0;
    if ((style & WS_THICKFRAME) != 0)
        thickness = SIZING_FRAME;
    else if ((style & WS_DLGFRAME) != 0 || (extended_style & WS_EX_DLGMODALFRAME) != 0)
        thickness = DIALOG_FRAME;
    else if ((style & WS_BORDER) != 0)
        thickness = 1;
    return (extended_style & WS_EX_CLIENTEDGE) != 0 ? thickness + CLIENT_EDGE : thickness;
}

MINMAXINFO DefaultLimits(LONG frame) {
    constexpr LONG LEAST_WIDTH = 112;
    constexpr LONG LEAST_HEIGHT = 27;
    constexpr LONG TRACK_MARGIN = 12;
    return {{0, 0},
            {SCREEN_WIDTH + 2 * frame, SCREEN_HEIGHT + 2 * frame},
            {-frame, -frame},
            {LEAST_WIDTH, LEAST_HEIGHT},
            {SCREEN_WIDTH + TRACK_MARGIN, SCREEN_HEIGHT + TRACK_MARGIN}};
}

}  // namespace

bool Contains(const RECT& rectangle, POINT point) {
    return point.x >= rectangle.left && point.x < rectangle.right && point.y >= rectangle.top &&
           point.y < rectangle.bottom;
}

RECT FrameOf(DWORD style, DWORD extended_style) {
    const LONG side = FrameThickness(style, extended_style);
    LONG caption = 0;
    if ((style & WS_CAPTION) == WS_CAPTION)
        caption = (extended_style & WS_EX_TOOLWINDOW) != 0 ? TOOL_CAPTION : CAPTION;
    return {side, side + caption, side, side};
}

RECT InsideFrame(const Window& window, const RECT& outer) {
    const RECT frame = FrameOf(window.style, window.extended_style);
    const LONG scroll_bar_right = (window.style & WS_VSCROLL) != 0 ? SCROLL_BAR : 0;
    const LONG scroll_bar_below = (window.style & WS_HSCROLL) != 0 ? SCROLL_BAR : 0;
    const LONG left = outer.left + frame.left;
    const LONG top = outer.top + frame.top;
    return {left, top, std::max(outer.right - frame.right - scroll_bar_right, left),
            std::max(outer.bottom - frame.bottom - scroll_bar_below, top)};
}

void CalculateClient(Window& window) {
    RECT client = window.outer;
    SendMessageW(window.handle, WM_NCCALCSIZE, FALSE, reinterpret_cast<LPARAM>(&client));
    if ((window.style & WS_MINIMIZE) != 0)
        client = {client.left, client.top, client.left, client.top};
    window.client = client;
}

SIZE WithinLimits(const Window& window, SIZE size) {
    if ((window.style & WS_THICKFRAME) == 0 && (window.style & (WS_CHILD | WS_POPUP)) != 0)
        return size;
    MINMAXINFO limits = DefaultLimits(FrameThickness(window.style, window.extended_style));
    SendMessageW(window.handle, WM_GETMINMAXINFO, 0, reinterpret_cast<LPARAM>(&limits));
    return {std::max(std::min(size.cx, limits.ptMaxTrackSize.x), limits.ptMinTrackSize.x),
            std::max(std::min(size.cy, limits.ptMaxTrackSize.y), limits.ptMinTrackSize.y)};
}

void SendMove(HWND handle, RECT client) {
    SendMessageW(handle, WM_MOVE, 0, MAKELPARAM(client.left, client.top));
}

void SendSize(HWND handle, WPARAM kind, RECT client) {
    SendMessageW(handle, WM_SIZE, kind, MAKELPARAM(client.right - client.left, client.bottom - client.top));
}

}  // namespace host

using host::FindWindowState;
using host::WindowPointer;

BOOL WINAPI GetWindowRect(HWND handle, LPRECT rectangle) {
    const WindowPointer window = FindWindowState(handle);
    if (window == nullptr)
        return FALSE;
    const POINT base = host::ClientOrigin(window->parent);
    const RECT& outer = window->outer;
    *rectangle = {base.x + outer.left, base.y + outer.top, base.x + outer.right, base.y + outer.bottom};
    return TRUE;
}

BOOL WINAPI GetClientRect(HWND handle, LPRECT rectangle) {
    const WindowPointer window = FindWindowState(handle);
    if (window == nullptr)
        return FALSE;
    const RECT& client = window->client;
    *rectangle = {0, 0, client.right - client.left, client.bottom - client.top};
    return TRUE;
}

int WINAPI MapWindowPoints(HWND from, HWND to, LPPOINT points, UINT count) {
    const bool known = (from == nullptr || FindWindowState(from) != nullptr) &&
                       (to == nullptr || FindWindowState(to) != nullptr);
    if (!known)
        return 0;
    const POINT start = host::ClientOrigin(from);
    const POINT end = host::ClientOrigin(to);
    for (POINT& point : std::span(points, count))
        point = {point.x + start.x - end.x, point.y + start.y - end.y};
    return MAKELONG(start.x - end.x, start.y - end.y);
}

BOOL WINAPI ClientToScreen(HWND window, LPPOINT point) {
    MapWindowPoints(window, nullptr, point, 1);
    return IsWindow(window);
}

BOOL WINAPI ScreenToClient(HWND window, LPPOINT point) {
    MapWindowPoints(nullptr, window, point, 1);
    return IsWindow(window);
}

BOOL WINAPI AdjustWindowRectEx(LPRECT rectangle, DWORD style, BOOL menu, DWORD extended_style) {
    if (menu != FALSE)
        host::NotImplemented("AdjustWindowRectEx", "menus");
    const RECT frame = host::FrameOf(style, extended_style);
    rectangle->left -= frame.left;
    rectangle->top -= frame.top;
    rectangle->right += frame.right;
    rectangle->bottom += frame.bottom;
    return TRUE;
}
