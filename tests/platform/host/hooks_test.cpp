// The layer aborts with a message when a call is not implemented.
#include <gtest/gtest.h>

#include "probe_windows.h"

TEST(PlatformHooksDeathTest, AnUnimplementedSystemCommandAbortsWithItsNumber) {
    // The death test runs this in a child process, so the window must be created here.
    const auto move = [] {
        ProbeWindows probe;
        SendMessageW(probe.Make("window", WS_OVERLAPPEDWINDOW, {}), WM_SYSCOMMAND, 0xF012, 0);
    };
    EXPECT_DEATH(move(), "WM_SYSCOMMAND: command 0xF010");
}
