// Parents, owners and siblings of windows, and the window at a point of the screen.
#include <algorithm>

#include "platform/host/hooks/call_hooks.h"
#include "platform/host/windows/window.h"

namespace host {
namespace {

Hit HitInside(HWND handle, POINT point);

Hit HitAmong(const std::vector<HWND>& windows, POINT point) {
    // A copy, because the procedure of a window may change the list.
    const std::vector<HWND> asked(windows.begin(), windows.end());
    for (const HWND window : asked)
        if (const Hit hit = HitInside(window, point); hit.window != nullptr)
            return hit;
    return {nullptr, HTNOWHERE};
}

Hit HitInside(HWND handle, POINT point) {
    const WindowPointer window = FindWindowState(handle);
    RECT outer{};
    GetWindowRect(handle, &outer);
    if (window == nullptr || (window->style & WS_VISIBLE) == 0 || !Contains(outer, point))
        return {nullptr, HTNOWHERE};
    // Mouse input at a disabled child is for its parent. For a disabled top-level window the result is that
    // window with HTERROR.
    if ((window->style & WS_DISABLED) != 0)
        return {window->parent == nullptr ? handle : nullptr, HTERROR};
    RECT client{};
    GetClientRect(handle, &client);
    POINT inside = point;
    ScreenToClient(handle, &inside);
    if (Contains(client, inside))
        if (const Hit hit = HitAmong(window->children, point); hit.window != nullptr)
            return hit;
    const LRESULT part = SendMessageW(handle, WM_NCHITTEST, 0, MAKELPARAM(point.x, point.y));
    return {part == HTTRANSPARENT ? nullptr : handle, part};
}

// Whether `owner` is the window itself, its owner, the owner of its owner, and so on.
bool IsOwnedBy(HWND owner, HWND window) {
    while (window != nullptr && window != owner)
        window = FindWindowState(window)->owner;
    return window != nullptr;
}

}  // namespace

Hit HitWindow(POINT point) {
    return HitAmong(TopLevelWindows(), point);
}

// An owned window is never below its owner. So all windows with the same root owner move to the front, in
// their present order; then the window moves there with the windows that it owns.
void RaiseWindow(HWND handle) {
    HWND root_owner = handle;
    while (const HWND owner = FindWindowState(root_owner)->owner)
        root_owner = owner;
    for (const HWND raised : {root_owner, handle})
        std::stable_partition(TopLevelWindows().begin(), TopLevelWindows().end(),
                              [raised](HWND other) { return IsOwnedBy(raised, other); });
}

}  // namespace host

using host::FindWindowState;
using host::WindowPointer;

HWND WINAPI GetParent(HWND handle) {
    const WindowPointer window = FindWindowState(handle);
    if (window == nullptr)
        return nullptr;
    if (window->parent != nullptr)
        return window->parent;
    return (window->style & WS_POPUP) != 0 ? window->owner : nullptr;
}

HWND WINAPI GetWindow(HWND handle, UINT relation) {
    const WindowPointer window = FindWindowState(handle);
    if (window == nullptr)
        return nullptr;
    const std::vector<HWND>& siblings = host::SiblingsOf(*window);
    switch (relation) {
        case GW_HWNDNEXT: {
            const auto next = std::find(siblings.begin(), siblings.end(), handle) + 1;
            return next == siblings.end() ? nullptr : *next;
        }
        case GW_OWNER:
            return window->owner;
        case GW_CHILD:
            return window->children.empty() ? nullptr : window->children.front();
        default:
            host::NotImplemented("GetWindow", "this relation");
    }
}

BOOL WINAPI EnumWindows(WNDENUMPROC procedure, LPARAM parameter) {
    const std::vector<HWND> top_levels = host::TopLevelWindows();
    for (const HWND handle : top_levels)
        if (IsWindow(handle) && procedure(handle, parameter) == FALSE)
            return FALSE;
    return TRUE;
}

HWND WINAPI FindWindowW(LPCWSTR class_name, LPCWSTR title) {
    if (title != nullptr)
        host::NotImplemented("FindWindowW", "a title");
    const host::ClassPointer window_class = host::FindWindowClass(class_name);
    for (const HWND handle : host::TopLevelWindows())
        if (FindWindowState(handle)->window_class == window_class)
            return handle;
    return nullptr;
}

BOOL WINAPI IsWindowVisible(HWND handle) {
    WindowPointer window = FindWindowState(handle);
    while (window != nullptr && (window->style & WS_VISIBLE) != 0) {
        if (window->parent == nullptr)
            return TRUE;
        window = FindWindowState(window->parent);
    }
    return FALSE;
}
