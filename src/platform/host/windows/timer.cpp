// Timers. A timer that is due sends one message, however many periods have passed.
#include <algorithm>

#include "platform/host/hooks/call_hooks.h"
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
    std::vector<Timer> running;
    UINT_PTR next_id = 0x7FFF;  // for a timer without a window
};

TimerList timers;

Timer* FindTimer(HWND window, UINT_PTR id) {
    std::vector<Timer>& running = timers.running;
    const auto found = std::find_if(running.begin(), running.end(), [&](const Timer& timer) {
        return timer.window == window && timer.id == id;
    });
    return found == running.end() ? nullptr : &*found;
}

}  // namespace

// When several timers are due, takes the one that has been due for the longest time.
std::optional<MSG> TakeTimer() {
    std::vector<Timer>& running = timers.running;
    const auto timer =
        std::min_element(running.begin(), running.end(),
                         [](const Timer& one, const Timer& other) { return one.due_ms < other.due_ms; });
    const std::uint64_t now = Now();
    if (timer == running.end() || timer->due_ms > now)
        return std::nullopt;
    timer->due_ms += ((now - timer->due_ms) / timer->period_ms + 1) * timer->period_ms;
    return MakeMessage(timer->window, WM_TIMER, timer->id, reinterpret_cast<LPARAM>(timer->procedure));
}

std::optional<std::uint64_t> NextTimerDelay() {
    const std::uint64_t now = Now();
    std::optional<std::uint64_t> shortest;
    for (const Timer& timer : timers.running) {
        const std::uint64_t delay = timer.due_ms <= now ? 0 : timer.due_ms - now;
        shortest = std::min(shortest.value_or(delay), delay);
    }
    return shortest;
}

void ForgetTimers(HWND handle) {
    const auto is_of_window = [handle](const Timer& timer) { return timer.window == handle; };
    std::erase_if(timers.running, is_of_window);
}

void ResetTimers() {
    timers = {};
}

}  // namespace host

UINT_PTR WINAPI SetTimer(HWND window, UINT_PTR id, UINT period_ms, TIMERPROC procedure) {
    if (host::CallFails("SetTimer", {period_ms}) ||
        (window != nullptr && host::FindWindowState(window) == nullptr))
        return 0;
    const std::uint64_t period = std::clamp(period_ms, USER_TIMER_MINIMUM, USER_TIMER_MAXIMUM);
    host::Timer* timer = host::FindTimer(window, id);
    if (timer == nullptr) {
        const UINT_PTR new_id = window == nullptr ? host::timers.next_id-- : id;
        timer = &host::timers.running.emplace_back(host::Timer{window, new_id, 0, 0, nullptr});
    }
    timer->period_ms = period;
    timer->due_ms = host::Now() + period;
    timer->procedure = procedure;
    return timer->id == 0 ? 1 : timer->id;
}

BOOL WINAPI KillTimer(HWND window, UINT_PTR id) {
    std::vector<host::Timer>& running = host::timers.running;
    const host::Timer* const timer = host::FindTimer(window, id);
    if (timer == nullptr) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return FALSE;
    }
    running.erase(running.begin() + (timer - running.data()));
    return TRUE;
}
