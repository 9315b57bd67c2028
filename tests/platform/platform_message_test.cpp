// The order of queued messages.
#include <gtest/gtest.h>

#include "probe_windows.h"

TEST(PlatformMessage, APostedMessageComesBeforeInputPaintingTimersAndQuit) {
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
    EXPECT_EQ(order, (std::vector<UINT>{WM_APP, WM_KEYDOWN, WM_KEYUP, WM_PAINT, WM_TIMER}));
    PostQuitMessage(7);
    PostMessageW(main, WM_APP, 2, 0);
    EXPECT_GT(GetMessageW(&message, nullptr, 0, 0), 0);
    EXPECT_EQ(message.wParam, WPARAM{2});
    EXPECT_EQ(GetMessageW(&message, nullptr, 0, 0), 0);
    EXPECT_EQ(message.wParam, WPARAM{7});
}
