// Painting without a picture: which windows are due, in which order they are told, and the stock objects. A
// window is damaged as a whole; what it would draw is not kept.

#include "platform/host/api/gdi32.h"
#include "platform/host/hooks.h"
#include "platform/host/windows/window.h"

namespace host {
namespace {

constexpr std::uintptr_t STOCK_OBJECTS = 0x40000;
constexpr std::uintptr_t DEVICE_CONTEXT = 0x50000;  // one stands for all
constexpr std::uintptr_t CURSORS = 0x60000;

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

void PaintNow(HWND handle) {
    for (HWND next = DamagedIn(handle); next != nullptr; next = DamagedIn(handle)) {
        SendMessageW(next, WM_PAINT, 0, 0);
        if (const WindowPointer window = FindWindowState(next); window != nullptr) {
            // A window that did not paint when it was told to stays due.
            if (window->damaged)
                return;
        }
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

HWND NextDamagedWindow(HWND filter) {
    if (filter != nullptr)
        return IsWindowVisible(filter) != FALSE ? DamagedIn(filter) : nullptr;
    for (const HWND handle : TopLevelWindows())
        if (const HWND found = DamagedIn(handle); found != nullptr)
            return found;
    return nullptr;
}

}  // namespace host

using host::FindWindowState;
using host::WindowPointer;

BOOL WINAPI RedrawWindow(HWND handle, const RECT* rectangle, HRGN, UINT flags) {
    const WindowPointer window = FindWindowState(handle);
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
    if ((flags & RDW_UPDATENOW) != 0 && IsWindowVisible(handle) != FALSE)
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
    const WindowPointer window = FindWindowState(handle);
    return window != nullptr && window->damaged ? TRUE : FALSE;
}

BOOL WINAPI UpdateWindow(HWND window) {
    return RedrawWindow(window, nullptr, nullptr, RDW_UPDATENOW);
}

HDC WINAPI BeginPaint(HWND handle, PAINTSTRUCT* paint) {
    const WindowPointer window = FindWindowState(handle);
    if (window == nullptr)
        return nullptr;
    *paint = PAINTSTRUCT{};
    paint->hdc = reinterpret_cast<HDC>(host::DEVICE_CONTEXT);
    if (window->damaged)
        GetClientRect(handle, &paint->rcPaint);
    const bool erase = window->unerased;
    window->damaged = false;
    window->unerased = false;
    if (erase) {
        const LRESULT erased = SendMessageW(handle, WM_ERASEBKGND, reinterpret_cast<WPARAM>(paint->hdc), 0);
        paint->fErase = erased == 0 ? TRUE : FALSE;
    }
    return paint->hdc;
}

BOOL WINAPI EndPaint(HWND, const PAINTSTRUCT*) {
    return TRUE;
}

HGDIOBJ WINAPI GetStockObject(int object) {
    if (object != ANSI_FIXED_FONT && object != DEFAULT_GUI_FONT)
        host::NotImplemented("GetStockObject", "this object");
    return reinterpret_cast<HGDIOBJ>(host::STOCK_OBJECTS + static_cast<std::uintptr_t>(object));
}

HCURSOR WINAPI LoadCursorW(HINSTANCE instance, LPCWSTR name) {
    if (instance != nullptr)
        host::NotImplemented("LoadCursorW", "cursors of the program's own");
    return reinterpret_cast<HCURSOR>(host::CURSORS + reinterpret_cast<std::uintptr_t>(name));
}
