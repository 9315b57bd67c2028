// Waiting for messages and dispatching them. What waits is given out in the platform's order:
// posted messages, the quit message, input, painting, timers.
#include <algorithm>
#include <chrono>
#include <thread>

#include "platform/host/hooks.h"
#include "platform/host/windows/window.h"

namespace host {
namespace {

bool TakePaint(const MessageFilter& filter, MSG& message) {
    const HWND window = NextDamagedWindow(filter.window);
    if (window == nullptr || !PassesFilter(filter, window, WM_PAINT))
        return false;
    // It stays due until the window has painted.
    message = MakeMessage(window, WM_PAINT, 0, 0);
    return true;
}

bool Take(const MessageFilter& filter, MSG& message) {
    return TakePosted(filter, message) || TakeQuit(message) || TakeInput(filter, message) ||
           TakePaint(filter, message) || TakeTimer(filter, message);
}

// Sleeps a moment in real time, never past the next timer. The clock of a test may be moved by another of its
// threads.
void Pause(std::chrono::steady_clock::time_point idle_since) {
    constexpr std::int64_t LONGEST_MS = 10;
    constexpr std::chrono::seconds PATIENCE{60};
    const std::int64_t delay = NextTimerDelay();
    const bool timer_comes = delay >= 0 && !ClockIsTaken();
    if (!timer_comes && std::chrono::steady_clock::now() - idle_since > PATIENCE)
        NotImplemented("GetMessageW", "waiting for a message that nothing can bring any more");
    const std::int64_t pause = timer_comes ? std::min(delay, LONGEST_MS) : 1;
    std::this_thread::sleep_for(std::chrono::milliseconds(pause));
}

}  // namespace

}  // namespace host

BOOL WINAPI GetMessageW(LPMSG message, HWND window, UINT lowest, UINT highest) {
    if (host::CallFails("GetMessageW") || !host::IsKnownOrNull(window))
        return -1;
    const host::MessageFilter filter{window, lowest, highest};
    const auto idle_since = std::chrono::steady_clock::now();
    while (!host::Take(filter, *message))
        host::Pause(idle_since);
    return message->message == WM_QUIT ? FALSE : TRUE;
}

BOOL WINAPI PeekMessageW(LPMSG message, HWND window, UINT lowest, UINT highest, UINT flags) {
    if (flags != PM_REMOVE)
        host::NotImplemented("PeekMessageW", "these flags");
    return host::IsKnownOrNull(window) && host::Take({window, lowest, highest}, *message) ? TRUE : FALSE;
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
