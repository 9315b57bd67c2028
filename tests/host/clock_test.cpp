// Timers on a clock that a test has taken over.
#include <gtest/gtest.h>

#include "platform/host/hooks.h"
#include "probe_windows.h"

namespace {

std::size_t TimerMessages() {
    MSG message{};
    std::size_t count = 0;
    while (PeekMessageW(&message, nullptr, WM_TIMER, WM_TIMER, PM_REMOVE))
        ++count;
    return count;
}

}  // namespace

TEST(PlatformClock, FollowsTheClockThatATestHasTaken) {
    struct Case {
        std::uint64_t moved_ms;
        std::size_t messages;
    };
    host::TakeClock();
    ProbeWindows probe;
    SetTimer(probe.Make("main", WS_OVERLAPPEDWINDOW, {0, 0, 300, 300}), 1, 250, nullptr);
    // The rhythm stays that of the start, however late a tick was taken.
    for (const Case& one : {Case{249, 0}, Case{1, 1}, Case{0, 0}, Case{1100, 1}, Case{149, 0}, Case{1, 1}}) {
        SCOPED_TRACE(one.moved_ms);
        host::MoveClock(one.moved_ms);
        EXPECT_EQ(TimerMessages(), one.messages);
    }
}
