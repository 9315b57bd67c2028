// Waiting for messages and dispatching them. What waits is given out in the platform's order: posted
// messages, the quit message, input, painting, timers.
#include <algorithm>
#include <chrono>
#include <thread>

#include "platform/host/hooks.h"
#include "platform/host/windows/window.h"

namespace host {
namespace {

bool TakePaint(MSG& message) {
    const HWND window = NextDamagedWindow();
    if (window == nullptr)
        return false;
    // It stays due until the window has painted.
    message = MakeMessage(window, WM_PAINT, 0, 0);
    return true;
}

// Of all that waits, or of the wanted kind where that is not 0.
bool Take(UINT wanted, MSG& message) {
    return TakePosted(wanted, message) || TakeQuit(message) ||
           (wanted == 0 && (TakeInput(message) || TakePaint(message))) ||
           (wanted != WM_QUIT && TakeTimer(message));
}

UINT WantedKind(const char* call, HWND window, UINT lowest, UINT highest) {
    const bool known = lowest == highest && (lowest == 0 || lowest == WM_QUIT || lowest == WM_TIMER);
    if (window != nullptr || !known)
        NotImplemented(call, "the messages of one window, or other kinds than all, WM_QUIT and WM_TIMER");
    return lowest;
}

// Sleeps a moment in real time, never past the next timer. The clock of a test may be moved by another of its
// threads.
void Pause(std::chrono::steady_clock::time_point idle_since) {
    constexpr std::int64_t LONGEST_MS = 10;
    constexpr std::chrono::seconds PATIENCE{60};
    const std::int64_t delay_ms = NextTimerDelay();
    const bool timer_comes = delay_ms >= 0 && !ClockIsTaken();
    if (!timer_comes && std::chrono::steady_clock::now() - idle_since > PATIENCE)
        NotImplemented("GetMessageW", "waiting for a message that nothing can bring any more");
    const std::int64_t pause_ms = timer_comes ? std::min(delay_ms, LONGEST_MS) : 1;
    std::this_thread::sleep_for(std::chrono::milliseconds(pause_ms));
}

}  // namespace
}  // namespace host

BOOL WINAPI GetMessageW(LPMSG message, HWND window, UINT lowest, UINT highest) {
    if (host::CallFails("GetMessageW"))
        return -1;
    const UINT wanted = host::WantedKind("GetMessageW", window, lowest, highest);
    const auto idle_since = std::chrono::steady_clock::now();
    while (!host::Take(wanted, *message))
        host::Pause(idle_since);
    return message->message != WM_QUIT;
}

BOOL WINAPI PeekMessageW(LPMSG message, HWND window, UINT lowest, UINT highest, UINT flags) {
    if (flags != PM_REMOVE)
        host::NotImplemented("PeekMessageW", "these flags");
    return host::Take(host::WantedKind("PeekMessageW", window, lowest, highest), *message);
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
