// Painting without a picture: which windows are due, and in which order they are told. A window is damaged as
// a whole; what it would draw is not kept.
#include <utility>

#include "platform/host/api/gdi32.h"
#include "platform/host/hooks.h"
#include "platform/host/windows/window.h"

namespace host {
namespace {

// Stands for every device context.
constexpr WPARAM DEVICE_CONTEXT = 0x70000;

HWND DamagedIn(HWND handle) {
    const WindowPointer window = FindWindowState(handle);
    if (window == nullptr || (window->style & WS_VISIBLE) == 0 || (window->style & WS_MINIMIZE) != 0)
        return nullptr;
    if (window->damaged)
        return handle;
    for (const HWND child : window->children)
        if (const HWND found = DamagedIn(child); found != nullptr)
            return found;
    return nullptr;
}

// Up to the first window that does not paint when it is told to: it stays due.
void PaintNow(HWND handle) {
    HWND last = nullptr;
    for (HWND next = DamagedIn(handle); next != nullptr && next != last; next = DamagedIn(handle)) {
        SendMessageW(next, WM_PAINT, 0, 0);
        last = next;
    }
}

// The window itself is damaged as a whole, and of its children those that reach into the part.
void DamagePart(Window& window, const RECT& part, bool with_children, bool erase) {
    DamageWindow(window, false, erase);
    for (const HWND child : with_children ? window.children : std::vector<HWND>{}) {
        const WindowPointer touched = FindWindowState(child);
        const RECT& place = touched->outer;
        if (place.left < part.right && place.right > part.left && place.top < part.bottom &&
            place.bottom > part.top)
            DamageWindow(*touched, true, erase);
    }
}

}  // namespace

void DamageWindow(Window& window, bool with_children, bool erase) {
    if (IsWindowVisible(window.handle) == FALSE)
        return;
    window.damaged = true;
    window.unerased = window.unerased || erase;
    for (const HWND child : with_children ? window.children : std::vector<HWND>{})
        DamageWindow(*FindWindowState(child), true, erase);
}

HWND NextDamagedWindow() {
    for (const HWND handle : TopLevelWindows())
        if (const HWND found = DamagedIn(handle); found != nullptr)
            return found;
    return nullptr;
}

void PaintWindow(Window& window) {
    window.damaged = false;
    if (std::exchange(window.unerased, false))
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
        host::DamageWindow(*window, with_children, (flags & RDW_ERASE) != 0);
    else if ((flags & RDW_INVALIDATE) != 0)
        host::DamagePart(*window, *rectangle, with_children, (flags & RDW_ERASE) != 0);
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
        host::NotImplemented("GetUpdateRect", "more than whether the window waits");
    const host::WindowPointer window = host::FindWindowState(handle);
    return window != nullptr && window->damaged;
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

int WINAPI ExcludeClipRect(HDC, int, int, int, int) {
    return SIMPLEREGION;
}

HCURSOR WINAPI LoadCursorW(HINSTANCE instance, LPCWSTR name) {
    constexpr std::uintptr_t CURSORS = 0x60000;
    if (instance != nullptr)
        host::NotImplemented("LoadCursorW", "cursors of the program's own");
    return reinterpret_cast<HCURSOR>(CURSORS + reinterpret_cast<std::uintptr_t>(name));
}
