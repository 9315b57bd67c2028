// The layer's own promises: faults come when they were asked for, nothing leaks, a child gets nothing but its
// streams.
#include "platform/host/hooks.h"
#include "platform/host/system/inspect.h"

#include <gtest/gtest.h>

#include "platform/win32.h"
#include "scratch.h"

namespace {

HANDLE OpenLog(const ScratchFolder& scratch, BOOL is_inheritable) {
    SECURITY_ATTRIBUTES security = {sizeof(SECURITY_ATTRIBUTES), nullptr, is_inheritable};
    return CreateFileW(scratch.Of(TEXT("out")).c_str(), GENERIC_WRITE, 3, &security, CREATE_ALWAYS, 0,
                       nullptr);
}

// Runs ls on the child's own descriptors, its output into the handle.
void RunLs(HANDLE out) {
    STARTUPINFOW startup = {};
    startup.cb = sizeof(startup);
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = GetStdHandle(STD_INPUT_HANDLE);
    startup.hStdOutput = out;
    startup.hStdError = out;
    PROCESS_INFORMATION process = {};
    WideText line = TEXT("ls -m /proc/self/fd");
    ASSERT_TRUE(CreateProcessW(TEXT("C:\\bin\\ls"), line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr,
                               &startup, &process));
    EXPECT_EQ(WaitForSingleObject(process.hProcess, INFINITE), WAIT_OBJECT_0);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
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

TEST(PlatformHooks, AChildHasItsStreamsAndNoOtherDescriptor) {
    const ScratchFolder scratch;
    const HANDLE log = OpenLog(scratch, TRUE);
    const HANDLE other =
        CreateFileW(scratch.Of(TEXT("other")).c_str(), GENERIC_WRITE, 3, nullptr, CREATE_NEW, 0, nullptr);
    RunLs(log);
    EXPECT_EQ(ReadBytes(scratch.Of(TEXT("out"))), "0, 1, 2, 3\n") << "3 is the folder that ls reads";
    CloseHandle(other);
    CloseHandle(log);
    EXPECT_EQ(host::OpenHandles(), 0U);
}

TEST(PlatformHooks, AStreamThatMayNotBeInheritedStaysHere) {
    const ScratchFolder scratch;
    const HANDLE log = OpenLog(scratch, FALSE);
    RunLs(log);
    EXPECT_EQ(ReadBytes(scratch.Of(TEXT("out"))), "");
    CloseHandle(log);
}
