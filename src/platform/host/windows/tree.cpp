// How windows hang together: parents, owners, siblings, and what lies at a point of the screen.
#include <algorithm>

#include "platform/host/hooks.h"
#include "platform/host/windows/window.h"

namespace host {
namespace {

HWND HitInside(HWND handle, POINT point, LRESULT& part);

HWND HitAmong(const std::vector<HWND>& windows, POINT point, LRESULT& part) {
    // A window that is asked may change the list.
    const std::vector<HWND> asked(windows.begin(), windows.end());
    for (const HWND window : asked)
        if (const HWND hit = HitInside(window, point, part); hit != nullptr)
            return hit;
    return nullptr;
}

HWND HitInside(HWND handle, POINT point, LRESULT& part) {
    const WindowPointer window = FindWindowState(handle);
    RECT outer{};
    GetWindowRect(handle, &outer);
    if (window == nullptr || (window->style & WS_VISIBLE) == 0 || !Contains(outer, point))
        return nullptr;
    if ((window->style & WS_DISABLED) != 0) {
        // A disabled child lets its parent have the mouse; a disabled top-level window swallows it.
        part = HTERROR;
        return window->parent == nullptr ? handle : nullptr;
    }
    RECT client{};
    GetClientRect(handle, &client);
    POINT inside = point;
    ScreenToClient(handle, &inside);
    if (Contains(client, inside))
        if (const HWND hit = HitAmong(window->children, point, part); hit != nullptr)
            return hit;
    part = SendMessageW(handle, WM_NCHITTEST, 0, MAKELPARAM(point.x, point.y));
    return part == HTTRANSPARENT ? nullptr : handle;
}

// Whether the window is the other one's owner, or its owner's, and so on; or the same.
bool GoesBackTo(HWND owner, HWND window) {
    while (window != nullptr && window != owner)
        window = FindWindowState(window)->owner;
    return window != nullptr;
}

}  // namespace

HWND HitWindow(POINT point, LRESULT& part) {
    const HWND hit = HitAmong(TopLevelWindows(), point, part);
    if (hit == nullptr)
        part = HTNOWHERE;
    return hit;
}

// An owned window never lies beneath its owner: everything that goes back to the same owner rises together,
// in its order, and then the window with what it owns.
void RaiseWindow(HWND handle) {
    HWND first_owner = handle;
    while (const HWND owner = FindWindowState(first_owner)->owner)
        first_owner = owner;
    for (const HWND raised : {first_owner, handle})
        std::stable_partition(TopLevelWindows().begin(), TopLevelWindows().end(),
                              [raised](HWND other) { return GoesBackTo(raised, other); });
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
        host::NotImplemented("FindWindowW", "looking for a title");
    for (const HWND handle : host::TopLevelWindows())
        if (host::SameName(FindWindowState(handle)->window_class->name, class_name))
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
