// The order in which what waits is given out.
#include <gtest/gtest.h>

#include "probe_windows.h"

namespace {

int WaitingTimerMessages(HWND window) {
    MSG message{};
    int count = 0;
    while (count < 100 && PeekMessageW(&message, window, WM_TIMER, WM_TIMER, PM_REMOVE))
        ++count;
    return count;
}

}  // namespace

TEST(PlatformMessage, PostedMessagesComeAheadOfTheEndOfInputOfPaintingAndOfTimers) {
    ProbeWindows probe;
    const HWND main = probe.MakeMain();
    SetTimer(main, 1, 10, nullptr);
    InvalidateRect(main, nullptr, TRUE);
    PressKey('B');
    Sleep(200);
    PostMessageW(main, WM_APP, 1, 0);
    std::vector<UINT> order;
    MSG message{};
    while (order.size() < 6 && PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        order.push_back(message.message);
        DispatchMessageW(&message);
    }
    const std::vector<UINT> expected = {WM_APP, WM_KEYDOWN, WM_KEYUP, WM_PAINT, WM_TIMER};
    EXPECT_EQ(order, expected);
    PostQuitMessage(7);
    PostMessageW(main, WM_APP, 2, 0);
    EXPECT_GT(GetMessageW(&message, nullptr, 0, 0), 0);
    EXPECT_EQ(message.wParam, WPARAM{2});
    EXPECT_EQ(GetMessageW(&message, nullptr, 0, 0), 0);
    EXPECT_EQ(message.wParam, WPARAM{7});
}

TEST(PlatformMessage, ATimerCountsOnceHoweverLongNobodyLooked) {
    ProbeWindows probe;
    const HWND main = probe.Make("main", WS_OVERLAPPEDWINDOW, {0, 0, 300, 300});
    EXPECT_EQ(SetTimer(main, 5, 100, nullptr), UINT_PTR{5});
    EXPECT_EQ(WaitingTimerMessages(main), 0);
    Sleep(450);
    EXPECT_EQ(WaitingTimerMessages(main), 1);
    EXPECT_TRUE(PumpUntil([&] { return probe.Take("TIMER") == "main TIMER 5"; }));
    // Setting it again begins its period anew, and two of them do not share.
    SetTimer(main, 5, 10, nullptr);
    SetTimer(main, 6, 10, nullptr);
    Sleep(100);
    EXPECT_EQ(WaitingTimerMessages(main), 2);
    EXPECT_TRUE(KillTimer(main, 5));
    EXPECT_FALSE(KillTimer(main, 5));
    Sleep(100);
    EXPECT_EQ(WaitingTimerMessages(main), 1);
}
