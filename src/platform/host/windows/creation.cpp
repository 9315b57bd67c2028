// Creating and destroying windows, and the values of GetWindowLongPtrW.
#include <unistd.h>

#include <algorithm>
#include <cstring>

#include "platform/host/hooks/call_hooks.h"
#include "platform/host/windows/window.h"

namespace host {
namespace {

void SendDestroy(HWND handle) {
    SendMessageW(handle, WM_DESTROY, 0, 0);
    const WindowPointer window = FindWindowState(handle);
    for (const HWND child : window == nullptr ? std::vector<HWND>{} : window->children)
        SendDestroy(child);
}

// Removes the window, its children first. Each window gets WM_NCDESTROY.
void Remove(HWND handle) {
    const WindowPointer window = FindWindowState(handle);
    if (window == nullptr)
        return;
    const std::vector<HWND> children = window->children;
    for (const HWND child : children)
        Remove(child);
    SendMessageW(handle, WM_NCDESTROY, 0, 0);
    ForgetMessages(handle);
    ForgetTimers(handle);
    ForgetActivation(handle);
    RemoveWindow(handle);
}

void DestroyOwned(HWND owner) {
    const std::vector<HWND> top_levels = TopLevelWindows();
    for (const HWND handle : top_levels)
        if (IsWindow(handle) && FindWindowState(handle)->owner == owner)
            DestroyWindow(handle);
}

void SetInitialPlace(Window& window, CREATESTRUCTW& create) {
    if (create.cx == CW_USEDEFAULT)
        NotImplemented("CreateWindowExW", "a default size");
    if (create.x == CW_USEDEFAULT)
        create.x = create.y = 0;
    const SIZE size = WithinLimits(window, {create.cx, create.cy});
    create.cx = std::max(size.cx, 0);
    create.cy = std::max(size.cy, 0);
    window.outer = {create.x, create.y, create.x + create.cx, create.y + create.cy};
}

// Sends the messages from WM_NCCREATE to WM_CREATE. False: the window was destroyed, or it refused its
// creation and was removed.
bool SendCreation(const WindowPointer& window, CREATESTRUCTW& create) {
    const HWND handle = window->handle;
    SetInitialPlace(*window, create);
    const LPARAM parameter = reinterpret_cast<LPARAM>(&create);
    if (SendMessageW(handle, WM_NCCREATE, 0, parameter) != FALSE) {
        CalculateClient(*window);
        if (IsWindow(handle) && SendMessageW(handle, WM_CREATE, 0, parameter) != -1)
            return IsWindow(handle) != FALSE;
    }
    // No WM_DESTROY for the window and its children. The windows that it owns are destroyed as usual.
    DestroyOwned(handle);
    Remove(handle);
    return false;
}

WindowPointer MakeWindow(const CREATESTRUCTW& create, const ClassPointer& window_class) {
    auto window = std::make_shared<Window>();
    window->style = static_cast<DWORD>(create.style) & ~WS_VISIBLE;
    window->extended_style = create.dwExStyle;
    if (IsChildStyle(window->style)) {
        window->parent = create.hwndParent;
        window->id = reinterpret_cast<LONG_PTR>(create.hMenu);
    } else {
        window->owner = create.hwndParent == nullptr ? nullptr : RootOf(create.hwndParent);
        window->style |= WS_CLIPSIBLINGS | ((window->style & WS_POPUP) == 0 ? WS_CAPTION : 0);
    }
    window->window_class = window_class;
    window->procedure = window_class->procedure;
    window->extra.resize(static_cast<std::size_t>(window_class->extra_bytes));
    window->thread = static_cast<DWORD>(gettid());
    return window;
}

void CheckCreation(const CREATESTRUCTW& create, const ClassPointer& window_class) {
    if (window_class == nullptr)
        NotImplemented("CreateWindowExW", "a class that is not registered");
    const auto style = static_cast<DWORD>(create.style);
    if ((style & (WS_MINIMIZE | WS_MAXIMIZE)) != 0)
        NotImplemented("CreateWindowExW", "a window that is minimised or maximised from the start");
    if (create.hwndParent == nullptr && IsChildStyle(style))
        NotImplemented("CreateWindowExW", "a child without a parent");
}

// The extra bytes at an index that is not one of the platform's (negative) indices.
std::byte* ExtraBytes(Window& window, int index) {
    const auto offset = static_cast<std::size_t>(index);
    if (index < 0 || offset + sizeof(LONG_PTR) > window.extra.size())
        NotImplemented("GetWindowLongPtrW, SetWindowLongPtrW", "this index");
    return window.extra.data() + offset;
}

}  // namespace
}  // namespace host

using host::FindWindowState;
using host::WindowPointer;

HWND WINAPI CreateWindowExW(DWORD extended_style, LPCWSTR class_name, LPCWSTR title, DWORD style, int x,
                            int y, int width, int height, HWND parent, HMENU menu, HINSTANCE instance,
                            LPVOID parameter) {
    if (host::CallFails("CreateWindowExW") || (parent != nullptr && FindWindowState(parent) == nullptr))
        return nullptr;
    const host::ClassPointer window_class = host::FindWindowClass(class_name);
    CREATESTRUCTW create{
        parameter, instance,   menu,          parent, height, width, y, x, static_cast<LONG>(style),
        title,     class_name, extended_style};
    host::CheckCreation(create, window_class);
    const WindowPointer window = host::MakeWindow(create, window_class);
    const HWND handle = host::AddWindow(window);
    if (!host::SendCreation(window, create))
        return nullptr;
    if ((style & (WS_CHILD | WS_POPUP)) == 0)
        window->size_on_show = true;
    else
        host::SendSizeAndMove(handle);
    if ((style & WS_VISIBLE) != 0)
        ShowWindow(handle, SW_SHOW);
    return IsWindow(handle) ? handle : nullptr;
}

BOOL WINAPI DestroyWindow(HWND handle) {
    const WindowPointer window = FindWindowState(handle);
    if (window == nullptr)
        return FALSE;
    if (host::IsChildStyle(window->style)) {
        ShowWindow(handle, SW_HIDE);
    } else if ((window->style & WS_VISIBLE) != 0) {
        SetWindowPos(handle, nullptr, 0, 0, 0, 0,
                     SWP_NOSIZE | SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_HIDEWINDOW);
    }
    host::DestroyOwned(handle);
    host::PassActivationOn(*window);
    host::SendDestroy(handle);
    host::Remove(handle);
    return TRUE;
}

LONG_PTR WINAPI GetWindowLongPtrW(HWND handle, int index) {
    const WindowPointer window = FindWindowState(handle);
    if (window == nullptr)
        return 0;
    switch (index) {
        case GWLP_WNDPROC:
            return reinterpret_cast<LONG_PTR>(window->procedure);
        case GWL_STYLE:
            return window->style;
        case GWL_EXSTYLE:
            return window->extended_style;
        case GWLP_USERDATA:
            return window->user_data;
        default: {
            LONG_PTR value = 0;
            std::memcpy(&value, host::ExtraBytes(*window, index), sizeof(value));
            return value;
        }
    }
}

LONG_PTR WINAPI SetWindowLongPtrW(HWND handle, int index, LONG_PTR value) {
    const WindowPointer window = FindWindowState(handle);
    if (window == nullptr)
        return 0;
    const LONG_PTR previous = GetWindowLongPtrW(handle, index);
    switch (index) {
        case GWLP_WNDPROC:
            window->procedure = reinterpret_cast<WNDPROC>(value);
            break;
        case GWL_STYLE: {
            STYLESTRUCT change{window->style, static_cast<DWORD>(value)};
            SendMessageW(handle, WM_STYLECHANGING, static_cast<WPARAM>(index),
                         reinterpret_cast<LPARAM>(&change));
            window->style = change.styleNew;
            SendMessageW(handle, WM_STYLECHANGED, static_cast<WPARAM>(index),
                         reinterpret_cast<LPARAM>(&change));
            break;
        }
        case GWLP_USERDATA:
            window->user_data = value;
            break;
        default:
            std::memcpy(host::ExtraBytes(*window, index), &value, sizeof(value));
    }
    return previous;
}
