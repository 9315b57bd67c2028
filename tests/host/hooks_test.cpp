// The layer's own promises: faults come when they were asked for, and what is open is counted.
#include "platform/host/hooks.h"
#include "platform/host/system/inspect.h"

#include <gtest/gtest.h>

#include "platform/win32.h"
#include "scratch.h"

namespace {

HANDLE OpenLog(const ScratchFolder& scratch, BOOL is_inheritable) {
    SECURITY_ATTRIBUTES security = {sizeof(SECURITY_ATTRIBUTES), nullptr, is_inheritable};
    return CreateFileW(scratch.Of(TEXT("out")).c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                       &security, CREATE_ALWAYS, 0, nullptr);
}

}  // namespace

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

TEST(PlatformHooks, OpenHandlesAreCountedAndAFailingCloseClosesThemToo) {
    const ScratchFolder scratch;
    const HANDLE log = OpenLog(scratch, FALSE);
    EXPECT_EQ(host::OpenHandles(), 1U);
    host::FailCall("CloseHandle", 1, ERROR_INVALID_HANDLE);
    EXPECT_FALSE(CloseHandle(log));
    EXPECT_EQ(host::OpenHandles(), 0U);
}
