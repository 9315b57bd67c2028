// How windows hang together: parents, owners, siblings, and what lies at a point of the screen.
#include <algorithm>

#include "platform/host/hooks.h"
#include "platform/host/windows/window.h"

namespace host {
namespace {

HWND Neighbour(const std::vector<HWND>& siblings, HWND handle, int step) {
    const auto found = std::find(siblings.begin(), siblings.end(), handle);
    const auto index = found - siblings.begin() + step;
    if (found == siblings.end() || index < 0 || index >= static_cast<std::ptrdiff_t>(siblings.size()))
        return nullptr;
    return siblings[static_cast<std::size_t>(index)];
}

HWND HitInside(HWND handle, POINT point, LRESULT& part);

HWND HitChildren(const Window& window, POINT point, LRESULT& part) {
    const std::vector<HWND> children = window.children;
    for (const HWND child : children)
        if (const HWND hit = HitInside(child, point, part); hit != nullptr)
            return hit;
    return nullptr;
}

HWND HitInside(HWND handle, POINT point, LRESULT& part) {
    const WindowPointer window = FindWindowState(handle);
    if (window == nullptr || (window->style & WS_VISIBLE) == 0 || !Contains(OuterOnScreen(*window), point))
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
    if ((window->style & WS_MINIMIZE) == 0 && Contains(client, inside)) {
        if (const HWND hit = HitChildren(*window, point, part); hit != nullptr)
            return hit;
    }
    part = SendMessageW(handle, WM_NCHITTEST, 0,
                        MAKELPARAM(static_cast<unsigned>(point.x), static_cast<unsigned>(point.y)));
    return part == HTTRANSPARENT ? nullptr : handle;
}

bool Matches(const Window& window, LPCWSTR class_name, LPCWSTR title) {
    return (class_name == nullptr || SameName(window.window_class->name, class_name)) &&
           (title == nullptr || window.text == title);
}

}  // namespace

HWND HitWindow(POINT point, LRESULT& part) {
    const std::vector<HWND> top_levels = TopLevelWindows();
    for (const HWND handle : top_levels)
        if (const HWND hit = HitInside(handle, point, part); hit != nullptr)
            return hit;
    part = HTNOWHERE;
    return nullptr;
}

// An owned window never lies beneath its owner: the owners rise first, and what a window owns rises behind
// it.
void RaiseWindow(HWND handle) {
    if (const HWND owner = FindWindowState(handle)->owner; owner != nullptr)
        RaiseWindow(owner);
    std::vector<HWND>& order = TopLevelWindows();
    const auto place = std::find(order.begin(), order.end(), handle);
    if (place == order.end())
        return;
    std::rotate(order.begin(), place, place + 1);
    std::stable_partition(order.begin(), order.end(),
                          [handle](HWND other) { return FindWindowState(other)->owner == handle; });
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

HWND WINAPI GetAncestor(HWND handle, UINT kind) {
    WindowPointer window = FindWindowState(handle);
    if (window == nullptr)
        return nullptr;
    if (kind == GA_ROOT)
        return host::RootOf(handle);
    // The owners of overlapped windows do not count here.
    HWND found = handle;
    for (HWND next = GetParent(found); next != nullptr; next = GetParent(found))
        found = next;
    return found;
}

HWND WINAPI GetWindow(HWND handle, UINT relation) {
    const WindowPointer window = FindWindowState(handle);
    if (window == nullptr)
        return nullptr;
    const std::vector<HWND>& siblings = host::SiblingsOf(*window);
    switch (relation) {
        case GW_HWNDFIRST:
            return siblings.front();
        case GW_HWNDLAST:
            return siblings.back();
        case GW_HWNDNEXT:
            return host::Neighbour(siblings, handle, 1);
        case GW_HWNDPREV:
            return host::Neighbour(siblings, handle, -1);
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

BOOL WINAPI EnumThreadWindows(DWORD thread, WNDENUMPROC procedure, LPARAM parameter) {
    const std::vector<HWND> top_levels = host::TopLevelWindows();
    for (const HWND handle : top_levels) {
        const bool counts = IsWindow(handle) && FindWindowState(handle)->thread == thread;
        if (counts && procedure(handle, parameter) == FALSE)
            return FALSE;
    }
    return TRUE;
}

HWND WINAPI FindWindowW(LPCWSTR class_name, LPCWSTR title) {
    return FindWindowExW(nullptr, nullptr, class_name, title);
}

HWND WINAPI FindWindowExW(HWND parent, HWND after, LPCWSTR class_name, LPCWSTR title) {
    if (parent != nullptr && FindWindowState(parent) == nullptr)
        return nullptr;
    const std::vector<HWND>& siblings =
        parent == nullptr ? host::TopLevelWindows() : FindWindowState(parent)->children;
    auto next = siblings.begin();
    if (after != nullptr) {
        const auto found = std::find(siblings.begin(), siblings.end(), after);
        next = found == siblings.end() ? found : found + 1;
    }
    const auto match = std::find_if(next, siblings.end(), [&](HWND handle) {
        return host::Matches(*FindWindowState(handle), class_name, title);
    });
    return match == siblings.end() ? nullptr : *match;
}

HWND WINAPI WindowFromPoint(POINT point) {
    LRESULT part = HTNOWHERE;
    return host::HitWindow(point, part);
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
