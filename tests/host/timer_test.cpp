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

TEST(Timer, FollowsTheClockThatATestHasTaken) {
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

TEST(Timer, FailsWhereATestWantsItAndOnlyThere) {
    ProbeWindows probe;
    const HWND main = probe.Make("main", WS_OVERLAPPEDWINDOW, {0, 0, 300, 300});
    host::FailCall("SetTimer", 2, 8);
    EXPECT_EQ(SetTimer(main, 1, 250, nullptr), UINT_PTR{1});
    EXPECT_EQ(SetTimer(main, 2, 250, nullptr), UINT_PTR{0});
    EXPECT_EQ(GetLastError(), DWORD{8});
    EXPECT_FALSE(KillTimer(main, 2));
    EXPECT_TRUE(KillTimer(main, 1));
}

TEST(DeferredMoves, AFailedStepMovesNothingAtAll) {
    ProbeWindows probe;
    const HWND main = probe.Make("main", WS_OVERLAPPEDWINDOW, {0, 0, 300, 300});
    const HWND child = probe.Make("child", WS_CHILD, {0, 0, 10, 10}, main);
    probe.log.clear();
    host::FailCall("DeferWindowPos", 2, 8);
    HDWP moves = BeginDeferWindowPos(2);
    moves = DeferWindowPos(moves, child, nullptr, 5, 5, 20, 20, SWP_NOZORDER);
    ASSERT_NE(moves, nullptr);
    EXPECT_EQ(DeferWindowPos(moves, main, nullptr, 5, 5, 400, 400, SWP_NOZORDER), nullptr);
    EXPECT_FALSE(EndDeferWindowPos(moves));
    EXPECT_EQ(probe.Take("SIZE MOVE"), "");
}

TEST(WindowClass, FaultsSpareTheWindowsOfTheLayerItself) {
    WNDCLASSW window_class{};
    window_class.lpfnWndProc = DefWindowProcW;
    window_class.lpszClassName = TEXT("First");
    host::StartTrace();
    EXPECT_NE(RegisterClassW(&window_class), 0);
    EXPECT_EQ(host::Trace(), std::vector<std::string>{"RegisterClassW"});
}
