// Rectangles: frames, client areas, coordinates and the figures of the screen.
#include <algorithm>

#include "platform/host/hooks.h"
#include "platform/host/windows/window.h"

namespace host {
namespace {

constexpr LONG CAPTION = 19;
constexpr LONG TOOL_CAPTION = 16;
constexpr LONG SIZING_FRAME = 4;
constexpr LONG DIALOG_FRAME = 3;
constexpr LONG CLIENT_EDGE = 2;

POINT OriginOf(HWND handle) {
    const WindowPointer window = handle == nullptr ? nullptr : FindWindowState(handle);
    return window == nullptr ? POINT{0, 0} : ClientOrigin(*window);
}

LONG FrameThickness(DWORD style, DWORD extended_style) {
    LONG thickness = 0;
    if ((style & WS_THICKFRAME) != 0)
        thickness = SIZING_FRAME;
    else if ((style & WS_DLGFRAME) != 0 || (extended_style & WS_EX_DLGMODALFRAME) != 0)
        thickness = DIALOG_FRAME;
    else if ((style & WS_BORDER) != 0 || (extended_style & WS_EX_STATICEDGE) != 0)
        thickness = 1;
    return (extended_style & WS_EX_CLIENTEDGE) != 0 ? thickness + CLIENT_EDGE : thickness;
}

}  // namespace

FrameSize FrameOf(DWORD style, DWORD extended_style) {
    const LONG side = FrameThickness(style, extended_style);
    LONG caption = 0;
    if ((style & WS_CAPTION) == WS_CAPTION)
        caption = (extended_style & WS_EX_TOOLWINDOW) != 0 ? TOOL_CAPTION : CAPTION;
    return {side, side + caption, side, side};
}

bool HasLimits(DWORD style) {
    return (style & WS_THICKFRAME) != 0 || (style & (WS_CHILD | WS_POPUP)) == 0;
}

MINMAXINFO DefaultLimits(DWORD style, DWORD extended_style) {
    const LONG frame = FrameThickness(style, extended_style);
    constexpr LONG LEAST_WIDTH = 112;
    constexpr LONG LEAST_HEIGHT = 27;
    constexpr LONG TRACK_MARGIN = 12;
    return {{0, 0},
            {SCREEN_WIDTH + 2 * frame, SCREEN_HEIGHT + 2 * frame},
            {-frame, -frame},
            {LEAST_WIDTH, LEAST_HEIGHT},
            {SCREEN_WIDTH + TRACK_MARGIN, SCREEN_HEIGHT + TRACK_MARGIN}};
}

bool Contains(const RECT& rectangle, POINT point) {
    return point.x >= rectangle.left && point.x < rectangle.right && point.y >= rectangle.top &&
           point.y < rectangle.bottom;
}

POINT ClientOrigin(const Window& window) {
    const POINT base = OriginOf(window.parent);
    return {base.x + window.client.left, base.y + window.client.top};
}

RECT OuterOnScreen(const Window& window) {
    const POINT base = OriginOf(window.parent);
    return {base.x + window.outer.left, base.y + window.outer.top, base.x + window.outer.right,
            base.y + window.outer.bottom};
}

void CalculateClient(Window& window, BOOL with_parameters) {
    NCCALCSIZE_PARAMS parameters{{window.outer, window.outer, window.client}, nullptr};
    SendMessageW(window.handle, WM_NCCALCSIZE, static_cast<WPARAM>(with_parameters),
                 reinterpret_cast<LPARAM>(&parameters));
    window.client = parameters.rgrc[0];
    if ((window.style & WS_MINIMIZE) != 0) {
        window.client.right = window.client.left;
        window.client.bottom = window.client.top;
    }
}

}  // namespace host

using host::FindWindowState;
using host::WindowPointer;

BOOL WINAPI GetWindowRect(HWND handle, LPRECT rectangle) {
    const WindowPointer window = FindWindowState(handle);
    if (window == nullptr)
        return FALSE;
    *rectangle = host::OuterOnScreen(*window);
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
    const POINT start = host::OriginOf(from);
    const POINT end = host::OriginOf(to);
    std::for_each(points, points + count, [&](POINT& point) {
        point.x += start.x - end.x;
        point.y += start.y - end.y;
    });
    return MAKELONG(static_cast<unsigned>(start.x - end.x), static_cast<unsigned>(start.y - end.y));
}

BOOL WINAPI ClientToScreen(HWND window, LPPOINT point) {
    if (FindWindowState(window) == nullptr)
        return FALSE;
    MapWindowPoints(window, nullptr, point, 1);
    return TRUE;
}

BOOL WINAPI ScreenToClient(HWND window, LPPOINT point) {
    if (FindWindowState(window) == nullptr)
        return FALSE;
    MapWindowPoints(nullptr, window, point, 1);
    return TRUE;
}

BOOL WINAPI AdjustWindowRectEx(LPRECT rectangle, DWORD style, BOOL menu, DWORD extended_style) {
    if (menu != FALSE)
        host::NotImplemented("AdjustWindowRectEx", "menus");
    const host::FrameSize frame = host::FrameOf(style, extended_style);
    rectangle->left -= frame.left;
    rectangle->top -= frame.top;
    rectangle->right += frame.right;
    rectangle->bottom += frame.bottom;
    return TRUE;
}
