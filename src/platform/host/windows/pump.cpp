// Waits for messages and dispatches them. The order is the platform's: posted messages, the quit message,
// input, painting, timers.
#include <algorithm>
#include <chrono>
#include <thread>

#include "platform/host/hooks/call_hooks.h"
#include "platform/host/windows/window.h"

namespace host {
namespace {

// The window still needs to be painted until it handles the message.
std::optional<MSG> PaintMessage() {
    const HWND window = NextWindowToPaint();
    return window == nullptr ? std::nullopt : std::optional(MakeMessage(window, WM_PAINT, 0, 0));
}

// The next message. If `wanted` is not 0, only one with that number or WM_QUIT.
std::optional<MSG> TakeMessage(UINT wanted) {
    std::optional<MSG> message = TakePosted(wanted);
    if (!message)
        message = TakeQuit();
    if (!message && wanted == 0)
        message = TakeInput();
    if (!message && wanted == 0)
        message = PaintMessage();
    if (!message && wanted != WM_QUIT)
        message = TakeTimer();
    return message;
}

UINT WantedKind(const char* call, HWND window, UINT lowest, UINT highest) {
    const bool known = lowest == highest && (lowest == 0 || lowest == WM_QUIT || lowest == WM_TIMER);
    if (window != nullptr || !known)
        NotImplemented(call, "the messages of one window, or other kinds than all, WM_QUIT and WM_TIMER");
    return lowest;
}

// Sleeps for a few milliseconds of real time, but at most until the next timer is due. The sleep is short
// because another thread of a test may advance the test clock meanwhile.
void Pause(std::chrono::steady_clock::time_point idle_since) {
    constexpr std::uint64_t LONGEST_MS = 10;
    constexpr std::chrono::seconds LONGEST_WAIT{60};
    const std::optional<std::uint64_t> delay_ms = NextTimerDelay();
    const bool timer_comes = delay_ms && !IsTestClock();
    if (!timer_comes && std::chrono::steady_clock::now() - idle_since > LONGEST_WAIT)
        NotImplemented("GetMessageW", "waiting for a message that cannot come any more");
    const std::uint64_t pause_ms = timer_comes ? std::min(*delay_ms, LONGEST_MS) : 1;
    std::this_thread::sleep_for(std::chrono::milliseconds(pause_ms));
}

}  // namespace
}  // namespace host

BOOL WINAPI GetMessageW(LPMSG message, HWND window, UINT lowest, UINT highest) {
    if (host::CallFails("GetMessageW"))
        return -1;
    const UINT wanted = host::WantedKind("GetMessageW", window, lowest, highest);
    const auto idle_since = std::chrono::steady_clock::now();
    std::optional<MSG> taken = host::TakeMessage(wanted);
    for (; !taken; taken = host::TakeMessage(wanted))
        host::Pause(idle_since);
    *message = *taken;
    return message->message != WM_QUIT;
}

BOOL WINAPI PeekMessageW(LPMSG message, HWND window, UINT lowest, UINT highest, UINT flags) {
    if (flags != PM_REMOVE)
        host::NotImplemented("PeekMessageW", "these flags");
    const std::optional<MSG> taken =
        host::TakeMessage(host::WantedKind("PeekMessageW", window, lowest, highest));
    if (taken)
        *message = *taken;
    return taken.has_value();
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
