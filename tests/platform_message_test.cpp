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

TEST(PlatformMessage, KeysBecomeCharactersOfTheWindowWithTheFocus) {
    struct Case {
        const char* keys;
        std::function<void()> press;
        const char* told;
    };
    ProbeWindows probe;
    const HWND main = probe.MakeMain();
    const HWND child = probe.Make("child", WS_CHILD | WS_VISIBLE, {0, 0, 10, 10}, main);
    SetFocus(child);
    const Case cases[] = {
        {"letter", [] { PressKey('X'); }, "child KEYDOWN 88, child CHAR 120, child KEYUP 88"},
        {"digit", [] { PressKey('7'); }, "child KEYDOWN 55, child CHAR 55, child KEYUP 55"},
        {"accent", [] { TypeCharacter(0xE9); }, "child KEYDOWN 231, child CHAR 233, child KEYUP 231"},
        {"arrow", [] { PressKey(VK_DOWN); }, "child KEYDOWN 40, child KEYUP 40"},
        {"shifted letter",
         [] {
             HoldKey(VK_SHIFT);
             PressKey('X');
             ReleaseKey(VK_SHIFT);
         },
         "child KEYDOWN 16, child KEYDOWN 88, child CHAR 88, child KEYUP 88, child KEYUP 16"},
        {"control letter",
         [] {
             HoldKey(VK_CONTROL);
             PressKey('A');
             ReleaseKey(VK_CONTROL);
         },
         "child KEYDOWN 17, child KEYDOWN 65, child CHAR 1, child KEYUP 65, child KEYUP 17"},
        {"without a focus",
         [] {
             SetFocus(nullptr);
             PressKey(VK_DOWN);
         },
         "main SYSKEYDOWN 40"},
    };
    for (const Case& one : cases) {
        SCOPED_TRACE(one.keys);
        probe.log.clear();
        one.press();
        PumpFor(80);
        EXPECT_EQ(probe.Take("KEYDOWN KEYUP CHAR SYSKEYDOWN"), one.told);
    }
}
