// What the layer does not have, it refuses by name.
#include <gtest/gtest.h>

#include "probe_windows.h"

TEST(PlatformHooksDeathTest, SystemCommandsThatNobodyNeedsAreRefusedByName) {
    // The window is the thread's that dies.
    const auto command = [](WPARAM number) {
        ProbeWindows probe;
        SendMessageW(probe.Make("window", WS_OVERLAPPEDWINDOW, {}), WM_SYSCOMMAND, number, 0);
    };
    EXPECT_DEATH(command(0xF093), "WM_SYSCOMMAND: SC_MOUSEMENU");
    EXPECT_DEATH(command(0xF010), "WM_SYSCOMMAND: SC_MOVE");
}
