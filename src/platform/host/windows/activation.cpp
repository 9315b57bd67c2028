// Which window is active, which has the keyboard, which has the mouse to itself, and which are enabled.
#include "platform/host/hooks.h"
#include "platform/host/windows/window.h"

namespace host {
namespace {

struct KeyboardState {
    HWND active = nullptr;
    HWND focus = nullptr;
    HWND capture = nullptr;
};

KeyboardState& Keyboard() {
    return Lasting<KeyboardState>();
}

WPARAM AsWparam(HWND window) {
    return reinterpret_cast<WPARAM>(window);
}

LPARAM AsLparam(HWND window) {
    return reinterpret_cast<LPARAM>(window);
}

bool IsInside(HWND outer, HWND inner) {
    return inner != nullptr && (outer == inner || IsChild(outer, inner) != FALSE);
}

void MoveFocus(HWND next) {
    const HWND previous = Keyboard().focus;
    if (previous == next)
        return;
    Keyboard().focus = next;
    if (previous != nullptr && IsWindow(previous))
        SendMessageW(previous, WM_KILLFOCUS, AsWparam(next), 0);
    if (next != nullptr && Keyboard().focus == next && IsWindow(next))
        SendMessageW(next, WM_SETFOCUS, AsWparam(previous), 0);
}

bool TakesFocus(HWND handle) {
    for (HWND next = handle; next != nullptr; next = FindWindowState(next)->parent) {
        const WindowPointer window = FindWindowState(next);
        if (window == nullptr || (window->style & (WS_MINIMIZE | WS_DISABLED)) != 0)
            return false;
    }
    return true;
}

bool CanBeActive(const Window& window) {
    return window.parent == nullptr && (window.style & WS_VISIBLE) != 0 &&
           (window.style & (WS_DISABLED | WS_MINIMIZE)) == 0;
}

HWND NextActive(HWND leaving) {
    const WindowPointer window = FindWindowState(leaving);
    if (window->owner != nullptr && CanBeActive(*FindWindowState(window->owner)))
        return window->owner;
    for (const HWND other : TopLevelWindows())
        if (other != leaving && CanBeActive(*FindWindowState(other)))
            return other;
    return nullptr;
}

void Disable(Window& window) {
    const HWND handle = window.handle;
    const bool was_enabled = (window.style & WS_DISABLED) == 0;
    if (!was_enabled)
        return;
    window.style |= WS_DISABLED;
    if (Keyboard().focus == handle)
        MoveFocus(nullptr);
    if (Keyboard().capture == handle)
        ReleaseCapture();
    SendMessageW(handle, WM_ENABLE, FALSE, 0);
}

}  // namespace

void ActivateWindow(HWND handle, int how) {
    const HWND previous = Keyboard().active;
    if (previous == handle)
        return;
    if (previous != nullptr && IsWindow(previous))
        SendMessageW(previous, WM_ACTIVATE, WA_INACTIVE, AsLparam(handle));
    Keyboard().active = handle;
    if (handle == nullptr) {
        MoveFocus(nullptr);
        return;
    }
    RaiseWindow(handle);
    SendMessageW(handle, WM_ACTIVATE, static_cast<WPARAM>(how), AsLparam(previous));
}

void PassActivationOn(HWND handle) {
    const WindowPointer window = FindWindowState(handle);
    if (window == nullptr)
        return;
    if (Keyboard().capture != nullptr && IsInside(handle, Keyboard().capture))
        ReleaseCapture();
    if (window->parent != nullptr) {
        if (IsInside(handle, Keyboard().focus))
            SetFocus(window->parent);
        return;
    }
    if (Keyboard().active == handle)
        ActivateWindow(NextActive(handle), WA_ACTIVE);
}

void ForgetInput(HWND handle) {
    KeyboardState& state = Keyboard();
    for (HWND* const held : {&state.active, &state.focus, &state.capture})
        if (*held == handle)
            *held = nullptr;
}

}  // namespace host

using host::FindWindowState;
using host::WindowPointer;

HWND WINAPI SetFocus(HWND handle) {
    const HWND previous = host::Keyboard().focus;
    if (handle == previous)
        return previous;
    if (handle == nullptr) {
        host::MoveFocus(nullptr);
        return previous;
    }
    if (FindWindowState(handle) == nullptr || !host::TakesFocus(handle))
        return nullptr;
    const HWND root = host::RootOf(handle);
    if (root != host::Keyboard().active)
        host::ActivateWindow(root, WA_ACTIVE);
    if (IsWindow(handle))
        host::MoveFocus(handle);
    return previous;
}

HWND WINAPI GetFocus() {
    return host::Keyboard().focus;
}

HWND WINAPI SetActiveWindow(HWND handle) {
    const HWND previous = host::Keyboard().active;
    const WindowPointer window = handle == nullptr ? nullptr : FindWindowState(handle);
    if (window == nullptr || window->parent != nullptr || (window->style & WS_DISABLED) != 0)
        return nullptr;
    host::ActivateWindow(handle, WA_ACTIVE);
    return previous;
}

HWND WINAPI GetActiveWindow() {
    return host::Keyboard().active;
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
    if (enable == FALSE) {
        host::Disable(*window);
    } else if (was_disabled) {
        window->style &= ~WS_DISABLED;
        SendMessageW(handle, WM_ENABLE, TRUE, 0);
    }
    return was_disabled ? TRUE : FALSE;
}

BOOL WINAPI IsWindowEnabled(HWND handle) {
    const WindowPointer window = FindWindowState(handle);
    return window != nullptr && (window->style & WS_DISABLED) == 0 ? TRUE : FALSE;
}

HWND WINAPI SetCapture(HWND handle) {
    if (handle != nullptr && FindWindowState(handle) == nullptr)
        return nullptr;
    const HWND previous = host::Keyboard().capture;
    host::Keyboard().capture = handle;
    if (previous != nullptr && previous != handle)
        SendMessageW(previous, WM_CAPTURECHANGED, 0, host::AsLparam(handle));
    return previous;
}

BOOL WINAPI ReleaseCapture() {
    SetCapture(nullptr);
    return TRUE;
}

HWND WINAPI GetCapture() {
    return host::Keyboard().capture;
}
