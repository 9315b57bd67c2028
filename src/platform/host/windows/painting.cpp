// Painting without a picture: which windows need to be painted, and in which order they get WM_PAINT. A
// window is always painted as a whole; what it draws is not stored.
#include <utility>

#include "platform/host/api/gdi32.h"
#include "platform/host/hooks/call_hooks.h"
#include "platform/host/windows/window.h"

namespace host {
namespace {

// The only device context.
constexpr WPARAM DEVICE_CONTEXT = 0x70000;

HWND WindowToPaintIn(HWND handle) {
    const WindowPointer window = FindWindowState(handle);
    if (window == nullptr || (window->style & WS_VISIBLE) == 0 || (window->style & WS_MINIMIZE) != 0)
        return nullptr;
    if (window->needs_paint)
        return handle;
    for (const HWND child : window->children)
        if (const HWND found = WindowToPaintIn(child); found != nullptr)
            return found;
    return nullptr;
}

// Sends WM_PAINT to the window and to the windows inside of it, where needed. Ends early when a window still
// needs to be painted after its WM_PAINT.
void PaintNow(HWND handle) {
    HWND last = nullptr;
    for (HWND next = WindowToPaintIn(handle); next != nullptr && next != last;
         next = WindowToPaintIn(handle)) {
        SendMessageW(next, WM_PAINT, 0, 0);
        last = next;
    }
}

// Marks the whole window, and its children that overlap the part.
void MarkPartForPaint(Window& window, const RECT& part, bool with_children, bool erase) {
    MarkForPaint(window, false, erase);
    if (!with_children)
        return;
    for (const HWND child : window.children) {
        const WindowPointer touched = FindWindowState(child);
        const RECT& place = touched->outer;
        if (place.left < part.right && place.right > part.left && place.top < part.bottom &&
            place.bottom > part.top)
            MarkForPaint(*touched, true, erase);
    }
}

}  // namespace

void MarkForPaint(Window& window, bool with_children, bool erase) {
    if (IsWindowVisible(window.handle) == FALSE)
        return;
    window.needs_paint = true;
    window.needs_erase = window.needs_erase || erase;
    if (with_children)
        for (const HWND child : window.children)
            MarkForPaint(*FindWindowState(child), true, erase);
}

HWND NextWindowToPaint() {
    for (const HWND handle : TopLevelWindows())
        if (const HWND found = WindowToPaintIn(handle); found != nullptr)
            return found;
    return nullptr;
}

void EraseAndValidate(Window& window) {
    window.needs_paint = false;
    if (std::exchange(window.needs_erase, false))
        SendMessageW(window.handle, WM_ERASEBKGND, DEVICE_CONTEXT, 0);
}

}  // namespace host

BOOL WINAPI RedrawWindow(HWND handle, const RECT* rectangle, HRGN, UINT flags) {
    const host::WindowPointer window = host::FindWindowState(handle);
    if (window == nullptr)
        return FALSE;
    constexpr UINT KNOWN = RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_UPDATENOW | RDW_FRAME;
    if ((flags & ~KNOWN) != 0)
        host::NotImplemented("RedrawWindow", "these flags");
    const bool with_children = (flags & RDW_ALLCHILDREN) != 0 || (window->style & WS_CLIPCHILDREN) == 0;
    if ((flags & RDW_INVALIDATE) != 0 && rectangle == nullptr)
        host::MarkForPaint(*window, with_children, (flags & RDW_ERASE) != 0);
    else if ((flags & RDW_INVALIDATE) != 0)
        host::MarkPartForPaint(*window, *rectangle, with_children, (flags & RDW_ERASE) != 0);
    if ((flags & RDW_UPDATENOW) != 0 && IsWindowVisible(handle))
        host::PaintNow(handle);
    return TRUE;
}

BOOL WINAPI InvalidateRect(HWND window, const RECT* rectangle, BOOL erase) {
    if (window == nullptr)
        host::NotImplemented("InvalidateRect", "all windows at once");
    return RedrawWindow(window, rectangle, nullptr, RDW_INVALIDATE | (erase != FALSE ? RDW_ERASE : 0));
}

BOOL WINAPI GetUpdateRect(HWND handle, LPRECT rectangle, BOOL erase) {
    if (rectangle != nullptr || erase != FALSE)
        host::NotImplemented("GetUpdateRect", "more than whether the window needs to be painted");
    const host::WindowPointer window = host::FindWindowState(handle);
    return window != nullptr && window->needs_paint;
}

BOOL WINAPI UpdateWindow(HWND window) {
    return RedrawWindow(window, nullptr, nullptr, RDW_UPDATENOW);
}

HGDIOBJ WINAPI GetStockObject(int object) {
    constexpr std::uintptr_t STOCK_OBJECTS = 0x40000;
    if (object != ANSI_FIXED_FONT && object != DEFAULT_GUI_FONT)
        host::NotImplemented("GetStockObject", "this object");
    return reinterpret_cast<HGDIOBJ>(STOCK_OBJECTS + static_cast<std::uintptr_t>(object));
}

int WINAPI ExcludeClipRect(HDC, int left, int top, int right, int bottom) {
    host::NoteExcludedRectangle({left, top, right, bottom});
    return SIMPLEREGION;
}

HCURSOR WINAPI LoadCursorW(HINSTANCE instance, LPCWSTR name) {
    constexpr std::uintptr_t CURSORS = 0x60000;
    if (instance != nullptr)
        host::NotImplemented("LoadCursorW", "a cursor of the program's own");
    return reinterpret_cast<HCURSOR>(CURSORS + reinterpret_cast<std::uintptr_t>(name));
}
