// All windows by handle, their siblings and roots, and sending a message to a window's procedure.
#include <unistd.h>

#include <algorithm>
#include <unordered_map>

#include "platform/host/hooks/call_hooks.h"
#include "platform/host/windows/window.h"

namespace host {
namespace {

struct WindowRegistry {
    std::unordered_map<HWND, WindowPointer> by_handle;
    std::vector<HWND> top_levels;
    std::uintptr_t last_handle = 0x10010;
};

WindowRegistry registry;

}  // namespace

WindowPointer FindWindowState(HWND handle) {
    const auto found = registry.by_handle.find(handle);
    if (found == registry.by_handle.end()) {
        SetLastError(ERROR_INVALID_WINDOW_HANDLE);
        return nullptr;
    }
    if (found->second->thread != static_cast<DWORD>(gettid()))
        NotImplemented("a window call", "from a thread that did not create the window");
    return found->second;
}

std::vector<HWND>& SiblingsOf(const Window& window) {
    const auto parent = registry.by_handle.find(window.parent);
    return parent == registry.by_handle.end() ? registry.top_levels : parent->second->children;
}

std::vector<HWND>& TopLevelWindows() {
    return registry.top_levels;
}

HWND RootOf(HWND handle) {
    WindowPointer window = FindWindowState(handle);
    while (window != nullptr && window->parent != nullptr)
        window = FindWindowState(window->parent);
    return window == nullptr ? nullptr : window->handle;
}

HWND AddWindow(const WindowPointer& window) {
    registry.last_handle += 2;
    window->handle = reinterpret_cast<HWND>(registry.last_handle);
    registry.by_handle.emplace(window->handle, window);
    // A new child is below its siblings. A new top-level window is above the other top-level windows.
    std::vector<HWND>& siblings = SiblingsOf(*window);
    siblings.insert(window->parent != nullptr ? siblings.end() : siblings.begin(), window->handle);
    return window->handle;
}

void RemoveWindow(HWND handle) {
    if (const WindowPointer window = FindWindowState(handle); window != nullptr) {
        std::erase(SiblingsOf(*window), handle);
        registry.by_handle.erase(handle);
    }
}

void ResetWindows() {
    registry = {};
}

}  // namespace host

using host::FindWindowState;
using host::WindowPointer;

BOOL WINAPI IsWindow(HWND handle) {
    return host::registry.by_handle.contains(handle);
}

BOOL WINAPI IsChild(HWND parent, HWND handle) {
    WindowPointer window = FindWindowState(handle);
    while (window != nullptr && window->parent != nullptr) {
        if (window->parent == parent)
            return TRUE;
        window = FindWindowState(window->parent);
    }
    return FALSE;
}

LRESULT WINAPI SendMessageW(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    const WindowPointer found = FindWindowState(window);
    return found == nullptr ? 0 : found->procedure(window, message, wparam, lparam);
}

LRESULT WINAPI CallWindowProcW(WNDPROC procedure, HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    return procedure(window, message, wparam, lparam);
}

DWORD WINAPI GetWindowThreadProcessId(HWND handle, LPDWORD process) {
    const WindowPointer window = FindWindowState(handle);
    if (window == nullptr)
        return 0;
    if (process != nullptr)
        *process = static_cast<DWORD>(getpid());
    return window->thread;
}
