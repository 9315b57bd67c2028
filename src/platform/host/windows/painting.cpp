// Painting without a picture: which windows are due, in which order they are told, and the stock objects. A
// window is damaged as a whole; what it would draw is not kept.
#include <algorithm>
#include <array>

#include "platform/host/hooks.h"
#include "platform/host/windows/window.h"

namespace host {
namespace {

// Stands for every device context, with the count of those that are out.
struct Contexts {
    int in_use = 0;
};

Contexts& State() {
    static Contexts state;
    return state;
}

HDC Context() {
    return reinterpret_cast<HDC>(&State());
}

template <typename Handle>
Handle StockHandle(std::uintptr_t kind, int index) {
    return reinterpret_cast<Handle>(kind + static_cast<std::uintptr_t>(index));
}

constexpr std::uintptr_t STOCK_OBJECTS = 0x40000;
constexpr std::uintptr_t COLOUR_BRUSHES = 0x50000;
constexpr std::uintptr_t CURSORS = 0x60000;

struct SystemColour {
    int index;
    COLORREF value;
};
constexpr std::array<SystemColour, 7> COLOURS = {{{COLOR_SCROLLBAR, RGB(212, 208, 200)},
                                                  {COLOR_WINDOW, RGB(255, 255, 255)},
                                                  {COLOR_WINDOWTEXT, RGB(0, 0, 0)},
                                                  {COLOR_HIGHLIGHT, RGB(8, 36, 107)},
                                                  {COLOR_BTNFACE, RGB(212, 208, 200)},
                                                  {COLOR_GRAYTEXT, RGB(128, 128, 128)},
                                                  {COLOR_BTNTEXT, RGB(0, 0, 0)}}};

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

void Mend(Window& window, bool with_children) {
    window.damaged = false;
    window.unerased = false;
    for (const HWND child : with_children ? window.children : std::vector<HWND>{})
        Mend(*FindWindowState(child), true);
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

BOOL WINAPI RedrawWindow(HWND handle, const RECT*, HRGN, UINT flags) {
    const WindowPointer window = FindWindowState(handle);
    if (window == nullptr)
        return FALSE;
    constexpr UINT KNOWN = RDW_INVALIDATE | RDW_ERASE | RDW_VALIDATE | RDW_NOCHILDREN | RDW_ALLCHILDREN |
                           RDW_UPDATENOW | RDW_FRAME | RDW_NOERASE | RDW_NOFRAME;
    if ((flags & ~KNOWN) != 0)
        host::NotImplemented("RedrawWindow", "these flags");
    const bool clips = (window->style & WS_CLIPCHILDREN) != 0 || (flags & RDW_NOCHILDREN) != 0;
    const bool with_children = (flags & RDW_ALLCHILDREN) != 0 || !clips;
    if ((flags & RDW_INVALIDATE) != 0)
        host::DamageWindow(*window, with_children, (flags & RDW_ERASE) != 0);
    else if ((flags & RDW_VALIDATE) != 0)
        host::Mend(*window, with_children);
    if ((flags & RDW_UPDATENOW) != 0 && IsWindowVisible(handle) != FALSE)
        host::PaintNow(handle);
    return TRUE;
}

BOOL WINAPI InvalidateRect(HWND window, const RECT* rectangle, BOOL erase) {
    if (window == nullptr)
        host::NotImplemented("InvalidateRect", "all windows at once");
    return RedrawWindow(window, rectangle, nullptr, RDW_INVALIDATE | (erase != FALSE ? RDW_ERASE : 0));
}

BOOL WINAPI UpdateWindow(HWND window) {
    return RedrawWindow(window, nullptr, nullptr, RDW_UPDATENOW);
}

HDC WINAPI BeginPaint(HWND handle, PAINTSTRUCT* paint) {
    const WindowPointer window = FindWindowState(handle);
    if (window == nullptr)
        return nullptr;
    *paint = PAINTSTRUCT{};
    paint->hdc = GetDC(handle);
    if (window->damaged)
        GetClientRect(handle, &paint->rcPaint);
    const bool erase = window->unerased;
    host::Mend(*window, false);
    if (erase) {
        const LRESULT erased = SendMessageW(handle, WM_ERASEBKGND, reinterpret_cast<WPARAM>(paint->hdc), 0);
        paint->fErase = erased == 0 ? TRUE : FALSE;
    }
    return paint->hdc;
}

BOOL WINAPI EndPaint(HWND window, const PAINTSTRUCT* paint) {
    ReleaseDC(window, paint->hdc);
    return TRUE;
}

HDC WINAPI GetDC(HWND) {
    ++host::State().in_use;
    return host::Context();
}

int WINAPI ReleaseDC(HWND, HDC dc) {
    if (dc != host::Context() || host::State().in_use == 0)
        return 0;
    --host::State().in_use;
    return 1;
}

int WINAPI FillRect(HDC dc, const RECT* rectangle, HBRUSH brush) {
    return dc == host::Context() && rectangle != nullptr && brush != nullptr ? 1 : 0;
}

HGDIOBJ WINAPI GetStockObject(int object) {
    switch (object) {
        case WHITE_BRUSH:
        case NULL_BRUSH:
        case ANSI_FIXED_FONT:
        case ANSI_VAR_FONT:
        case SYSTEM_FONT:
        case DEFAULT_GUI_FONT:
            return host::StockHandle<HGDIOBJ>(host::STOCK_OBJECTS, object);
        default:
            host::NotImplemented("GetStockObject", "this object");
    }
}

COLORREF WINAPI GetSysColor(int index) {
    const auto* const found =
        std::find_if(host::COLOURS.begin(), host::COLOURS.end(),
                     [index](const host::SystemColour& colour) { return colour.index == index; });
    if (found == host::COLOURS.end())
        host::NotImplemented("GetSysColor", "this colour");
    return found->value;
}

HBRUSH WINAPI GetSysColorBrush(int index) {
    GetSysColor(index);
    return host::StockHandle<HBRUSH>(host::COLOUR_BRUSHES, index);
}

HCURSOR WINAPI LoadCursorW(HINSTANCE instance, LPCWSTR name) {
    if (instance != nullptr)
        host::NotImplemented("LoadCursorW", "cursors of the program's own");
    return reinterpret_cast<HCURSOR>(host::CURSORS + reinterpret_cast<std::uintptr_t>(name));
}
