// The active window, the focus, the mouse capture, and enabling.
#include <utility>

#include "platform/host/hooks/call_hooks.h"
#include "platform/host/windows/window.h"

namespace host {
namespace {

struct InputHolders {
    HWND active = nullptr;
    HWND focus = nullptr;
    HWND capture = nullptr;
};

InputHolders holders;

bool IsInside(HWND outer, HWND inner) {
    return inner != nullptr && (outer == inner || IsChild(outer, inner) != FALSE);
}

void MoveFocus(HWND next) {
    const HWND previous = holders.focus;
    if (previous == next)
        return;
    holders.focus = next;
    if (previous != nullptr)
        SendMessageW(previous, WM_KILLFOCUS, reinterpret_cast<WPARAM>(next), 0);
    if (next != nullptr && holders.focus == next)
        SendMessageW(next, WM_SETFOCUS, reinterpret_cast<WPARAM>(previous), 0);
}

bool TakesFocus(HWND handle) {
    for (WindowPointer window = FindWindowState(handle);; window = FindWindowState(window->parent)) {
        if (window == nullptr || (window->style & (WS_MINIMIZE | WS_DISABLED)) != 0)
            return false;
        if (window->parent == nullptr)
            return true;
    }
}

bool CanBeActive(HWND top_level) {
    constexpr DWORD ASKED = WS_VISIBLE | WS_DISABLED | WS_MINIMIZE;
    return (FindWindowState(top_level)->style & ASKED) == WS_VISIBLE;
}

HWND NextActive(const Window& leaving) {
    if (leaving.owner != nullptr && CanBeActive(leaving.owner))
        return leaving.owner;
    for (const HWND other : TopLevelWindows())
        if (other != leaving.handle && CanBeActive(other))
            return other;
    return nullptr;
}

void Disable(Window& window) {
    window.style |= WS_DISABLED;
    if (holders.focus == window.handle)
        MoveFocus(nullptr);
    if (holders.capture == window.handle)
        ReleaseCapture();
    SendMessageW(window.handle, WM_ENABLE, FALSE, 0);
}

}  // namespace

void ActivateWindow(HWND handle, int how) {
    const HWND previous = holders.active;
    if (previous == handle)
        return;
    if (previous != nullptr)
        SendMessageW(previous, WM_ACTIVATE, WA_INACTIVE, reinterpret_cast<LPARAM>(handle));
    holders.active = handle;
    if (handle == nullptr) {
        MoveFocus(nullptr);
        return;
    }
    RaiseWindow(handle);
    SendMessageW(handle, WM_ACTIVATE, static_cast<WPARAM>(how), reinterpret_cast<LPARAM>(previous));
}

void PassActivationOn(const Window& window) {
    const HWND handle = window.handle;
    if (IsInside(handle, holders.capture))
        ReleaseCapture();
    if (window.parent != nullptr) {
        if (IsInside(handle, holders.focus))
            SetFocus(window.parent);
    } else if (holders.active == handle) {
        ActivateWindow(NextActive(window), WA_ACTIVE);
    }
}

void ForgetActivation(HWND handle) {
    for (HWND* const held : {&holders.active, &holders.focus, &holders.capture})
        if (*held == handle)
            *held = nullptr;
}

void ResetActivation() {
    holders = {};
}

}  // namespace host

using host::FindWindowState;
using host::WindowPointer;

HWND WINAPI SetFocus(HWND handle) {
    const HWND previous = host::holders.focus;
    if (handle == previous)
        return previous;
    if (handle == nullptr) {
        host::MoveFocus(nullptr);
        return previous;
    }
    if (!host::TakesFocus(handle))
        return nullptr;
    host::ActivateWindow(host::RootOf(handle), WA_ACTIVE);
    if (IsWindow(handle))
        host::MoveFocus(handle);
    return previous;
}

HWND WINAPI GetFocus() {
    return host::holders.focus;
}

HWND WINAPI SetActiveWindow(HWND handle) {
    const HWND previous = host::holders.active;
    const WindowPointer window = FindWindowState(handle);
    if (window == nullptr || window->parent != nullptr || (window->style & WS_DISABLED) != 0)
        return nullptr;
    host::ActivateWindow(handle, WA_ACTIVE);
    return previous;
}

HWND WINAPI GetActiveWindow() {
    return host::holders.active;
}

BOOL WINAPI SetForegroundWindow(HWND handle) {
    if (FindWindowState(handle) == nullptr)
        return FALSE;
    host::ActivateWindow(host::RootOf(handle), WA_ACTIVE);
    return TRUE;
}

BOOL WINAPI EnableWindow(HWND handle, BOOL enable) {
    const WindowPointer window = FindWindowState(handle);
    if (window == nullptr)
        return FALSE;
    const bool was_disabled = (window->style & WS_DISABLED) != 0;
    if (enable == FALSE && !was_disabled) {
        host::Disable(*window);
    } else if (enable != FALSE && was_disabled) {
        window->style &= ~WS_DISABLED;
        SendMessageW(handle, WM_ENABLE, TRUE, 0);
    }
    return was_disabled;
}

BOOL WINAPI IsWindowEnabled(HWND handle) {
    const WindowPointer window = FindWindowState(handle);
    return window != nullptr && (window->style & WS_DISABLED) == 0;
}

HWND WINAPI SetCapture(HWND handle) {
    if (handle != nullptr && !IsWindow(handle))
        return nullptr;
    const HWND previous = std::exchange(host::holders.capture, handle);
    if (previous != nullptr && previous != handle)
        SendMessageW(previous, WM_CAPTURECHANGED, 0, reinterpret_cast<LPARAM>(handle));
    return previous;
}

BOOL WINAPI ReleaseCapture() {
    SetCapture(nullptr);
    return TRUE;
}

HWND WINAPI GetCapture() {
    return host::holders.capture;
}
