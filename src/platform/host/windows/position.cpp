// Moving, sizing and stacking windows, one at a time or as a deferred batch.
#include <algorithm>
#include <map>

#include "platform/host/hooks.h"
#include "platform/host/windows/window.h"

namespace host {
namespace {

struct DeferredMoves {
    std::map<HDWP, std::vector<WINDOWPOS>> batches;
    std::uintptr_t last_handle = 0x30000;
};

DeferredMoves& Deferred() {
    return Lasting<DeferredMoves>();
}

LONG WidthOf(const RECT& rectangle) {
    return rectangle.right - rectangle.left;
}

LONG HeightOf(const RECT& rectangle) {
    return rectangle.bottom - rectangle.top;
}

// Drops what would change nothing.
void TrimFlags(const Window& window, WINDOWPOS& position) {
    position.cx = std::max(position.cx, 0);
    position.cy = std::max(position.cy, 0);
    const bool visible = (window.style & WS_VISIBLE) != 0;
    if (visible) {
        position.flags &= ~SWP_SHOWWINDOW;
    } else {
        position.flags &= ~SWP_HIDEWINDOW;
        if ((position.flags & SWP_SHOWWINDOW) == 0)
            position.flags |= SWP_NOREDRAW;
    }
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

void Stack(Window& window, HWND after) {
    if (window.parent == nullptr && after == HWND_TOP) {
        RaiseWindow(window.handle);
        return;
    }
    std::vector<HWND>& siblings = SiblingsOf(window);
    siblings.erase(std::remove(siblings.begin(), siblings.end(), window.handle), siblings.end());
    auto place = siblings.begin();
    if (after == HWND_BOTTOM) {
        place = siblings.end();
    } else if (after != HWND_TOP) {
        const auto found = std::find(siblings.begin(), siblings.end(), after);
        place = found == siblings.end() ? found : found + 1;
    }
    siblings.insert(place, window.handle);
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
        CalculateClient(window, TRUE);
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

// What has become of a window is drawn anew.
void Damage(Window& window, UINT flags) {
    constexpr UINT STILL = SWP_NOMOVE | SWP_NOSIZE;
    const bool changed = (flags & STILL) != STILL || (flags & (SWP_SHOWWINDOW | SWP_FRAMECHANGED)) != 0;
    if (changed && (flags & SWP_NOREDRAW) == 0)
        DamageWindow(window, true, true);
}

bool Place(WINDOWPOS position) {
    const HWND handle = position.hwnd;
    const WindowPointer window = FindWindowState(handle);
    if (window == nullptr)
        return false;
    if ((position.flags & SWP_NOSENDCHANGING) == 0)
        SendMessageW(handle, WM_WINDOWPOSCHANGING, 0, reinterpret_cast<LPARAM>(&position));
    TrimFlags(*window, position);
    if (!IsWindow(handle) || ChangesNothing(position))
        return IsWindow(handle) != FALSE;
    if ((position.flags & SWP_NOZORDER) == 0)
        Stack(*window, position.hwndInsertAfter);
    SetRectangles(*window, position);
    ShowOrHide(*window, position.flags);
    if ((position.flags & (SWP_NOACTIVATE | SWP_HIDEWINDOW)) == 0) {
        if (!IsChildStyle(window->style))
            ActivateWindow(handle, WA_ACTIVE);
    }
    Damage(*window, position.flags);
    position.x = window->outer.left;
    position.y = window->outer.top;
    position.cx = WidthOf(window->outer);
    position.cy = HeightOf(window->outer);
    SendMessageW(handle, WM_WINDOWPOSCHANGED, 0, reinterpret_cast<LPARAM>(&position));
    return true;
}

WINDOWPOS Position(HWND window, HWND after, int x, int y, int width, int height, UINT flags) {
    return {window, after, x, y, width, height, flags};
}

}  // namespace

}  // namespace host

using host::FindWindowState;

BOOL WINAPI SetWindowPos(HWND window, HWND after, int x, int y, int width, int height, UINT flags) {
    if (after == HWND_TOPMOST || after == HWND_NOTOPMOST)
        host::NotImplemented("SetWindowPos", "windows that stay in front of all others");
    return host::Place(host::Position(window, after, x, y, width, height, flags)) ? TRUE : FALSE;
}

BOOL WINAPI MoveWindow(HWND window, int x, int y, int width, int height, BOOL repaint) {
    UINT flags = SWP_NOZORDER | SWP_NOACTIVATE;
    if (repaint == FALSE)
        flags |= SWP_NOREDRAW;
    return SetWindowPos(window, nullptr, x, y, width, height, flags);
}

HDWP WINAPI BeginDeferWindowPos(int count) {
    if (host::CallFails("BeginDeferWindowPos"))
        return nullptr;
    if (count < 0) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return nullptr;
    }
    const HDWP moves = reinterpret_cast<HDWP>(++host::Deferred().last_handle);
    host::Deferred().batches[moves].reserve(static_cast<std::size_t>(count));
    return moves;
}

HDWP WINAPI DeferWindowPos(HDWP moves, HWND window, HWND after, int x, int y, int width, int height,
                           UINT flags) {
    auto& batches = host::Deferred().batches;
    const auto batch = batches.find(moves);
    if (host::CallFails("DeferWindowPos")) {
        // A batch that could not grow is given up.
        batches.erase(moves);
        return nullptr;
    }
    if (batch == batches.end()) {
        SetLastError(ERROR_INVALID_DWP_HANDLE);
        return nullptr;
    }
    if (FindWindowState(window) == nullptr)
        return nullptr;
    batch->second.push_back(host::Position(window, after, x, y, width, height, flags));
    return moves;
}

BOOL WINAPI EndDeferWindowPos(HDWP moves) {
    auto& batches = host::Deferred().batches;
    const auto batch = batches.find(moves);
    if (batch == batches.end()) {
        SetLastError(ERROR_INVALID_DWP_HANDLE);
        return FALSE;
    }
    const std::vector<WINDOWPOS> positions = std::move(batch->second);
    batches.erase(batch);
    bool placed = true;
    for (const WINDOWPOS& position : positions)
        placed = host::Place(position) && placed;
    return placed ? TRUE : FALSE;
}
