// The layer's own promise: faults come when they were asked for.
#include "platform/host/hooks.h"

#include <gtest/gtest.h>

#include "platform/win32.h"
#include "probe_windows.h"

TEST(PlatformHooks, AFaultComesAtItsCallAndOnlyThere) {
    host::FailCall("DeleteFileW", 2, ERROR_DISK_FULL);
    host::FailNthCall(4, ERROR_IO_DEVICE);
    host::StartTrace();
    const DWORD expected[] = {ERROR_FILE_NOT_FOUND, ERROR_DISK_FULL, ERROR_FILE_NOT_FOUND, ERROR_IO_DEVICE,
                              ERROR_FILE_NOT_FOUND};
    for (const DWORD error : expected) {
        EXPECT_FALSE(DeleteFileW(TEXT("C:\\no such file")));
        EXPECT_EQ(GetLastError(), error);
    }
    EXPECT_EQ(host::Trace(), std::vector<std::string>(5, "DeleteFileW"));
    EXPECT_EQ(host::ClearFaults(), 2U);
    EXPECT_EQ(host::ClearFaults(), 0U);
}

TEST(PlatformHooksDeathTest, SystemCommandsThatNobodyNeedsAreRefusedByName) {
    // The window is the thread's that dies.
    const auto command = [](WPARAM number) {
        ProbeWindows probe;
        SendMessageW(probe.Make("window", WS_OVERLAPPEDWINDOW, {}), WM_SYSCOMMAND, number, 0);
    };
    EXPECT_DEATH(command(0xF093), "WM_SYSCOMMAND: SC_MOUSEMENU");
    EXPECT_DEATH(command(0xF010), "WM_SYSCOMMAND: SC_MOVE");
}
