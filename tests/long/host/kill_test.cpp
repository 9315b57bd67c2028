// A save that is interrupted by a loss of power or a kill, at each of its calls, leaves the complete old file
// or the complete new one.
#include <gtest/gtest.h>
#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

#include "cases.h"
#include "config/config_file.h"
#include "config/config_text.h"
#include "platform/host/hooks/test_hooks.h"
#include "scratch.h"

namespace {

VmConfig LargeConfig() {
    VmConfig config;
    config.command.assign(400000, WCHAR{'c'});
    return config;
}

struct SavedFile {
    ScratchFolder folder;
    WideText path = folder.Of(TEXT("a.config"));
    VmConfig configs[2] = {{}, LargeConfig()};
    std::string texts[2] = {ComposeConfigText(configs[0]), ComposeConfigText(configs[1])};

    bool IsComplete() const {
        const std::string bytes = ReadBytes(path);
        return bytes == texts[0] || bytes == texts[1];
    }
    // A killed process may leave the temporary file.
    void RemoveTemporaryFiles() const {
        for (const WideText& name : ListFolder(folder.path))
            if (name != TEXT("a.config"))
                Remove(folder.Of(name));
    }
};

TEST(Killed, ALossOfPowerAfterAnyCallOfASaveLeavesTheOldOrTheNewFile) {
    const SavedFile file;
    for (const int from : {0, 1}) {
        std::string message = "interrupted";
        for (unsigned calls = 0; !message.empty(); ++calls) {
            SCOPED_TRACE(testing::Message() << calls << " calls");
            ASSERT_LT(calls, 100U);
            WriteBytes(file.path, file.texts[from]);
            host::MakeDiskForgetful();
            for (unsigned failed = 1; failed <= 20; ++failed)
                host::FailNthCall(calls + failed, ERROR_IO_DEVICE);
            message = MessageOf([&] { WriteConfigFile(file.path, file.configs[1 - from]); });
            host::ClearFaults();
            host::LosePower();
            EXPECT_TRUE(file.IsComplete());
            file.RemoveTemporaryFiles();
        }
        EXPECT_EQ(ReadBytes(file.path), file.texts[1 - from]) << "a completed save is on the disk";
    }
}

// Continues the child until it enters or leaves a system call; false when it has ended.
bool Step(pid_t child) {
    int status = 0;
    ptrace(PTRACE_SYSCALL, child, nullptr, nullptr);
    return waitpid(child, &status, 0) == child && WIFSTOPPED(status);
}

TEST(Killed, AKillAtAnySystemCallOfASaveLeavesTheOldOrTheNewFile) {
    const SavedFile file;
    for (const int from : {0, 1}) {
        bool ended = false;
        for (unsigned stops = 1; !ended; ++stops) {
            ASSERT_LT(stops, 2000U);
            WriteBytes(file.path, file.texts[from]);
            const pid_t child = fork();
            if (child == 0) {
                if (ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0)
                    _exit(77);
                raise(SIGSTOP);
                WriteConfigFile(file.path, file.configs[1 - from]);
                _exit(0);
            }
            int status = 0;
            waitpid(child, &status, 0);
            if (WIFEXITED(status) && WEXITSTATUS(status) == 77)
                GTEST_SKIP() << "tracing of processes is not permitted";
            for (unsigned stop = 0; stop < stops && !ended; ++stop)
                ended = !Step(child);
            if (!ended) {
                kill(child, SIGKILL);
                waitpid(child, &status, 0);
            }
            EXPECT_TRUE(file.IsComplete()) << "after stop " << stops;
            file.RemoveTemporaryFiles();
        }
        EXPECT_EQ(ReadBytes(file.path), file.texts[1 - from]);
    }
}

}  // namespace
