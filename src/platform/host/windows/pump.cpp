// Sending, posting, waiting for and dispatching messages. What waits is given out in the platform's order:
// posted messages, the quit message, input, painting, timers.
#include <algorithm>
#include <chrono>
#include <deque>
#include <thread>

#include "platform/host/hooks.h"
#include "platform/host/windows/window.h"

namespace host {
namespace {

struct Queue {
    std::deque<MSG> posted;
    bool quits = false;
    int exit_code = 0;
};

Queue& State() {
    static Queue state;
    return state;
}

MSG MakeMessage(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    return {window, message, wparam, lparam, static_cast<DWORD>(Now()), CursorPosition()};
}

bool TakePosted(const MessageFilter& filter, bool remove, MSG& message) {
    std::deque<MSG>& posted = State().posted;
    const auto found = std::find_if(posted.begin(), posted.end(), [&](const MSG& waiting) {
        return PassesFilter(filter, waiting.hwnd, waiting.message);
    });
    if (found == posted.end()) {
        return false;
    }
    message = *found;
    if (remove) {
        posted.erase(found);
    }
    return true;
}

bool TakeQuit(bool remove, MSG& message) {
    if (!State().quits || !State().posted.empty()) {
        return false;
    }
    message = MakeMessage(nullptr, WM_QUIT, static_cast<WPARAM>(State().exit_code), 0);
    State().quits = !remove;
    return true;
}

bool TakePaint(const MessageFilter& filter, MSG& message) {
    const HWND window = NextDamagedWindow(filter.window);
    if (window == nullptr || !PassesFilter(filter, window, WM_PAINT)) {
        return false;
    }
    // It stays due until the window has painted.
    message = MakeMessage(window, WM_PAINT, 0, 0);
    return true;
}

bool Take(const MessageFilter& filter, bool remove, MSG& message) {
    return TakePosted(filter, remove, message) || TakeQuit(remove, message) ||
           TakeInput(filter, remove, message) || TakePaint(filter, message) ||
           TakeTimer(filter, remove, message);
}

// Sleeps a moment in real time, never past the next timer. The clock of a test may be moved by another of its
// threads.
void Pause(std::chrono::steady_clock::time_point idle_since) {
    constexpr std::int64_t LONGEST_MS = 10;
    constexpr std::chrono::seconds PATIENCE{60};
    const std::int64_t delay = NextTimerDelay();
    const bool timer_comes = delay >= 0 && !ClockIsTaken();
    if (!timer_comes && std::chrono::steady_clock::now() - idle_since > PATIENCE) {
        NotImplemented("GetMessageW", "waiting for a message that nothing can bring any more");
    }
    const std::int64_t pause = timer_comes ? std::min(delay, LONGEST_MS) : 1;
    std::this_thread::sleep_for(std::chrono::milliseconds(pause));
}

bool KnownOrNull(HWND window) {
    return window == nullptr || FindWindowState(window) != nullptr;
}

}  // namespace

bool PassesFilter(const MessageFilter& filter, HWND window, UINT message) {
    const bool in_range = (filter.lowest == 0 && filter.highest == 0) ||
                          (message >= filter.lowest && message <= filter.highest);
    return in_range && (filter.window == nullptr || filter.window == window ||
                        (window != nullptr && IsChild(filter.window, window) != FALSE));
}

void ForgetMessages(HWND handle) {
    std::deque<MSG>& posted = State().posted;
    posted.erase(std::remove_if(posted.begin(), posted.end(),
                                [handle](const MSG& message) { return message.hwnd == handle; }),
                 posted.end());
}

}  // namespace host

LRESULT WINAPI SendMessageW(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    const host::WindowPointer found = host::FindWindowState(window);
    return found == nullptr ? 0 : found->procedure(window, message, wparam, lparam);
}

LRESULT WINAPI CallWindowProcW(WNDPROC procedure, HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    return procedure(window, message, wparam, lparam);
}

BOOL WINAPI PostMessageW(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    if (!host::KnownOrNull(window)) {
        return FALSE;
    }
    host::State().posted.push_back(host::MakeMessage(window, message, wparam, lparam));
    return TRUE;
}

void WINAPI PostQuitMessage(int exit_code) {
    host::State().quits = true;
    host::State().exit_code = exit_code;
}

BOOL WINAPI GetMessageW(LPMSG message, HWND window, UINT lowest, UINT highest) {
    if (host::WindowCallFails("GetMessageW") || !host::KnownOrNull(window)) {
        return -1;
    }
    const host::MessageFilter filter{window, lowest, highest};
    const auto idle_since = std::chrono::steady_clock::now();
    while (!host::Take(filter, true, *message)) {
        host::Pause(idle_since);
    }
    return message->message == WM_QUIT ? FALSE : TRUE;
}

BOOL WINAPI PeekMessageW(LPMSG message, HWND window, UINT lowest, UINT highest, UINT flags) {
    if ((flags & ~(PM_REMOVE | PM_NOYIELD)) != 0) {
        host::NotImplemented("PeekMessageW", "these flags");
    }
    if (!host::KnownOrNull(window)) {
        return FALSE;
    }
    const bool remove = (flags & PM_REMOVE) != 0;
    return host::Take({window, lowest, highest}, remove, *message) ? TRUE : FALSE;
}

LRESULT WINAPI DispatchMessageW(const MSG* message) {
    if (message->message == WM_TIMER && message->lParam != 0) {
        const auto procedure = reinterpret_cast<TIMERPROC>(message->lParam);
        procedure(message->hwnd, WM_TIMER, message->wParam, static_cast<DWORD>(host::Now()));
        return 0;
    }
    return message->hwnd == nullptr
               ? 0
               : SendMessageW(message->hwnd, message->message, message->wParam, message->lParam);
}
