// The layer aborts with a report at what it does not implement.
#include <gtest/gtest.h>

#include "probe_windows.h"

TEST(PlatformHooksDeathTest, AnUnknownSystemCommandIsReportedWithItsNumber) {
    // The window must be created in the process that aborts.
    const auto move = [] {
        ProbeWindows probe;
        SendMessageW(probe.Make("window", WS_OVERLAPPEDWINDOW, {}), WM_SYSCOMMAND, 0xF012, 0);
    };
    EXPECT_DEATH(move(), "WM_SYSCOMMAND: command 0xF010");
}
