// Timers. A timer whose time has come counts once, however many periods have gone by.
#include <algorithm>

#include "platform/host/hooks.h"
#include "platform/host/windows/window.h"

namespace host {
namespace {

struct Timer {
    HWND window;
    UINT_PTR id;
    std::uint64_t period_ms;
    std::uint64_t due_ms;
    TIMERPROC procedure;
};

struct TimerList {
    std::vector<Timer> timers;
    // The identifiers that timers without a window get.
    UINT_PTR next_id = 0x7FFF;
};

TimerList& Running() {
    return Lasting<TimerList>();
}

Timer* FindTimer(HWND window, UINT_PTR id) {
    std::vector<Timer>& running = Running().timers;
    const auto found = std::find_if(running.begin(), running.end(), [&](const Timer& timer) {
        return timer.window == window && timer.id == id;
    });
    return found == running.end() ? nullptr : &*found;
}

// The timer that has waited longest; null when none is due.
Timer* DueTimer(const MessageFilter& filter, std::uint64_t now) {
    Timer* longest = nullptr;
    for (Timer& timer : Running().timers) {
        const bool due = timer.due_ms <= now && PassesFilter(filter, timer.window, WM_TIMER);
        if (due && (longest == nullptr || timer.due_ms < longest->due_ms))
            longest = &timer;
    }
    return longest;
}

}  // namespace

bool TakeTimer(const MessageFilter& filter, MSG& message) {
    const std::uint64_t now = Now();
    Timer* const timer = DueTimer(filter, now);
    if (timer == nullptr)
        return false;
    message = {
        timer->window,           WM_TIMER,         timer->id, reinterpret_cast<LPARAM>(timer->procedure),
        static_cast<DWORD>(now), PointerPosition()};
    timer->due_ms += ((now - timer->due_ms) / timer->period_ms + 1) * timer->period_ms;
    return true;
}

std::int64_t NextTimerDelay() {
    const std::uint64_t now = Now();
    std::int64_t shortest = -1;
    for (const Timer& timer : Running().timers) {
        const std::int64_t delay = timer.due_ms <= now ? 0 : static_cast<std::int64_t>(timer.due_ms - now);
        shortest = shortest < 0 ? delay : std::min(shortest, delay);
    }
    return shortest;
}

void ForgetTimers(HWND handle) {
    std::vector<Timer>& running = Running().timers;
    running.erase(std::remove_if(running.begin(), running.end(),
                                 [handle](const Timer& timer) { return timer.window == handle; }),
                  running.end());
}

}  // namespace host

UINT_PTR WINAPI SetTimer(HWND window, UINT_PTR id, UINT period_ms, TIMERPROC procedure) {
    if (host::CallFails("SetTimer", {period_ms}) ||
        (window != nullptr && host::FindWindowState(window) == nullptr))
        return 0;
    const std::uint64_t period = std::clamp(period_ms, USER_TIMER_MINIMUM, USER_TIMER_MAXIMUM);
    host::Timer* timer = host::FindTimer(window, id);
    if (timer == nullptr) {
        const UINT_PTR new_id = window == nullptr ? host::Running().next_id-- : id;
        timer = &host::Running().timers.emplace_back(host::Timer{window, new_id, 0, 0, nullptr});
    }
    timer->period_ms = period;
    timer->due_ms = host::Now() + period;
    timer->procedure = procedure;
    return timer->id == 0 ? 1 : timer->id;
}

BOOL WINAPI KillTimer(HWND window, UINT_PTR id) {
    std::vector<host::Timer>& running = host::Running().timers;
    const host::Timer* const timer = host::FindTimer(window, id);
    if (timer == nullptr) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return FALSE;
    }
    running.erase(running.begin() + (timer - running.data()));
    return TRUE;
}
