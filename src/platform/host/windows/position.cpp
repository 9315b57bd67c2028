// Moving, sizing and raising windows, one at a time or as a deferred batch.
#include <algorithm>
#include <map>

#include "platform/host/hooks/call_hooks.h"
#include "platform/host/windows/window.h"

namespace host {
namespace {

struct MoveBatches {
    std::map<HDWP, std::vector<WINDOWPOS>> by_handle;
    std::uintptr_t last_handle = 0x30000;
};

MoveBatches batches;

LONG WidthOf(const RECT& rectangle) {
    return rectangle.right - rectangle.left;
}

LONG HeightOf(const RECT& rectangle) {
    return rectangle.bottom - rectangle.top;
}

// Removes from the request what would change nothing.
void TrimFlags(const Window& window, WINDOWPOS& position) {
    position.cx = std::max(position.cx, 0);
    position.cy = std::max(position.cy, 0);
    position.flags &= (window.style & WS_VISIBLE) != 0 ? ~SWP_SHOWWINDOW : ~SWP_HIDEWINDOW;
    const RECT& outer = window.outer;
    if (position.cx == WidthOf(outer) && position.cy == HeightOf(outer))
        position.flags |= SWP_NOSIZE;
    if (position.x == outer.left && position.y == outer.top)
        position.flags |= SWP_NOMOVE;
    if (GetActiveWindow() == window.handle)
        position.flags |= SWP_NOACTIVATE;
}

bool ChangesNothing(const WINDOWPOS& position) {
    constexpr UINT NOTHING = SWP_NOSIZE | SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE;
    constexpr UINT SOMETHING = SWP_SHOWWINDOW | SWP_HIDEWINDOW | SWP_FRAMECHANGED;
    return (position.flags & (NOTHING | SOMETHING)) == NOTHING;
}

void SetRectangles(Window& window, WINDOWPOS& position) {
    const RECT old = window.client;
    RECT outer = window.outer;
    if ((position.flags & SWP_NOMOVE) == 0)
        outer = {position.x, position.y, position.x + WidthOf(outer), position.y + HeightOf(outer)};
    const LONG across = outer.left - window.outer.left;
    const LONG down = outer.top - window.outer.top;
    window.client = {old.left + across, old.top + down, old.right + across, old.bottom + down};
    if ((position.flags & SWP_NOSIZE) == 0) {
        outer.right = outer.left + position.cx;
        outer.bottom = outer.top + position.cy;
    }
    window.outer = outer;
    if ((position.flags & (SWP_NOSIZE | SWP_FRAMECHANGED)) != SWP_NOSIZE)
        CalculateClient(window);
    const RECT& client = window.client;
    if (client.left == old.left && client.top == old.top)
        position.flags |= SWP_NOCLIENTMOVE;
    if (WidthOf(client) == WidthOf(old) && HeightOf(client) == HeightOf(old))
        position.flags |= SWP_NOCLIENTSIZE;
}

void ShowOrHide(Window& window, UINT flags) {
    if ((flags & SWP_SHOWWINDOW) != 0)
        window.style |= WS_VISIBLE;
    else if ((flags & SWP_HIDEWINDOW) != 0)
        window.style &= ~WS_VISIBLE;
}

// A window that moves or changes its size is painted again without its children. A window that appears or
// gets another frame is painted again with its children.
void MarkChangeForPaint(Window& window, UINT flags) {
    const bool appears = (flags & (SWP_SHOWWINDOW | SWP_FRAMECHANGED)) != 0;
    if (appears || (flags & SWP_NOMOVE) == 0 || (flags & SWP_NOSIZE) == 0)
        MarkForPaint(window, appears, true);
}

void Change(Window& window, WINDOWPOS& position) {
    if ((position.flags & SWP_NOZORDER) == 0) {
        if (window.parent != nullptr || position.hwndInsertAfter != HWND_TOP)
            NotImplemented("SetWindowPos", "another order than a top-level window moved to the front");
        RaiseWindow(window.handle);
    }
    SetRectangles(window, position);
    ShowOrHide(window, position.flags);
    if ((position.flags & (SWP_NOACTIVATE | SWP_HIDEWINDOW)) == 0 && window.parent == nullptr)
        ActivateWindow(window.handle, WA_ACTIVE);
    MarkChangeForPaint(window, position.flags);
}

bool ApplyPosition(WINDOWPOS position) {
    const HWND handle = position.hwnd;
    const WindowPointer window = FindWindowState(handle);
    if (window == nullptr)
        return false;
    SendMessageW(handle, WM_WINDOWPOSCHANGING, 0, reinterpret_cast<LPARAM>(&position));
    TrimFlags(*window, position);
    if (!IsWindow(handle) || ChangesNothing(position))
        return IsWindow(handle) != FALSE;
    Change(*window, position);
    position.x = window->outer.left;
    position.y = window->outer.top;
    position.cx = WidthOf(window->outer);
    position.cy = HeightOf(window->outer);
    SendMessageW(handle, WM_WINDOWPOSCHANGED, 0, reinterpret_cast<LPARAM>(&position));
    return true;
}

}  // namespace

void ResetMoves() {
    batches = {};
}

}  // namespace host

BOOL WINAPI SetWindowPos(HWND window, HWND after, int x, int y, int width, int height, UINT flags) {
    return host::ApplyPosition({window, after, x, y, width, height, flags});
}

BOOL WINAPI MoveWindow(HWND window, int x, int y, int width, int height, BOOL repaint) {
    if (repaint == FALSE)
        host::NotImplemented("MoveWindow", "without repainting");
    return SetWindowPos(window, nullptr, x, y, width, height, SWP_NOZORDER | SWP_NOACTIVATE);
}

HDWP WINAPI BeginDeferWindowPos(int count) {
    if (host::CallFails("BeginDeferWindowPos"))
        return nullptr;
    const HDWP moves = reinterpret_cast<HDWP>(++host::batches.last_handle);
    host::batches.by_handle[moves].reserve(static_cast<std::size_t>(count));
    return moves;
}

HDWP WINAPI DeferWindowPos(HDWP moves, HWND window, HWND after, int x, int y, int width, int height,
                           UINT flags) {
    auto& by_handle = host::batches.by_handle;
    if (host::CallFails("DeferWindowPos")) {
        // A failure discards the whole batch.
        by_handle.erase(moves);
        return nullptr;
    }
    if (!by_handle.contains(moves) || host::FindWindowState(window) == nullptr)
        return nullptr;
    by_handle[moves].push_back({window, after, x, y, width, height, flags});
    return moves;
}

BOOL WINAPI EndDeferWindowPos(HDWP moves) {
    const auto batch = host::batches.by_handle.extract(moves);
    if (batch.empty()) {
        SetLastError(ERROR_INVALID_DWP_HANDLE);
        return FALSE;
    }
    bool placed = true;
    for (const WINDOWPOS& position : batch.mapped())
        placed = host::ApplyPosition(position) && placed;
    return placed;
}
