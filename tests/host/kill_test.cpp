// A save that is cut off: by a loss of power, at each of its system calls, at any moment. The file is the old
// one or the new one, whole.
#include <gtest/gtest.h>
#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <random>
#include <set>

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

struct Saves {
    ScratchFolder folder;
    WideText path = folder.Of(TEXT("a.config"));
    VmConfig configs[2] = {{}, LargeConfig()};
    std::string texts[2] = {ComposeConfigText(configs[0]), ComposeConfigText(configs[1])};

    bool IsWhole() const {
        const std::string bytes = ReadBytes(path);
        return bytes == texts[0] || bytes == texts[1];
    }
    // A kill may leave the temporary file.
    void TidyUp() const {
        for (const WideText& name : ListFolder(folder.path))
            if (name != TEXT("a.config"))
                Remove(folder.Of(name));
    }
};

TEST(Killed, ByALossOfPowerAfterAnyOfItsCallsASaveLeavesTheOldFileOrTheNewOne) {
    const Saves saves;
    for (const int from : {0, 1}) {
        std::string message = "cut off";
        for (unsigned calls = 0; !message.empty(); ++calls) {
            SCOPED_TRACE(testing::Message() << calls << " calls");
            ASSERT_LT(calls, 100U);
            WriteBytes(saves.path, saves.texts[from]);
            host::MakeDiskForgetful();
            for (unsigned lost = 1; lost <= 20; ++lost)
                host::FailNthCall(calls + lost, ERROR_IO_DEVICE);
            message = MessageOf([&] { WriteConfigFile(saves.path, saves.configs[1 - from]); });
            host::ClearFaults();
            host::LosePower();
            EXPECT_TRUE(saves.IsWhole());
            saves.TidyUp();
        }
        EXPECT_EQ(ReadBytes(saves.path), saves.texts[1 - from]) << "what was saved is there";
    }
}

// Lets the child go on to its next entry into a system call, or the way out of it; false once it has ended.
bool StepsOn(pid_t child) {
    int status = 0;
    ptrace(PTRACE_SYSCALL, child, nullptr, nullptr);
    return waitpid(child, &status, 0) == child && WIFSTOPPED(status);
}

TEST(Killed, AtAnyOfItsSystemCallsASaveLeavesTheOldFileOrTheNewOne) {
    const Saves saves;
    for (const int from : {0, 1}) {
        bool ended = false;
        for (unsigned stops = 1; !ended; ++stops) {
            ASSERT_LT(stops, 2000U);
            WriteBytes(saves.path, saves.texts[from]);
            const pid_t child = fork();
            if (child == 0) {
                if (ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0)
                    _exit(77);
                raise(SIGSTOP);
                WriteConfigFile(saves.path, saves.configs[1 - from]);
                _exit(0);
            }
            int status = 0;
            waitpid(child, &status, 0);
            if (WIFEXITED(status) && WEXITSTATUS(status) == 77)
                GTEST_SKIP() << "no process may be traced here";
            for (unsigned stop = 0; stop < stops && !ended; ++stop)
                ended = !StepsOn(child);
            if (!ended) {
                kill(child, SIGKILL);
                waitpid(child, &status, 0);
            }
            EXPECT_TRUE(saves.IsWhole()) << "after stop " << stops;
            saves.TidyUp();
        }
        EXPECT_EQ(ReadBytes(saves.path), saves.texts[1 - from]);
    }
}

TEST(Killed, AtAnyMomentAProcessThatSavesLeavesTheOldFileOrTheNewOne) {
    const Saves saves;
    const unsigned seed = std::random_device()();
    std::mt19937 random(seed);
    std::set<std::string> seen;
    const auto start = std::chrono::steady_clock::now();
    for (const VmConfig& config : saves.configs)
        WriteConfigFile(saves.path, config);
    const std::chrono::microseconds both =
        std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() - start);
    for (int kills = std::getenv("VELDRANE_LONG") != nullptr ? 3500 : 50; kills > 0; --kills) {
        int ends[2];
        ASSERT_EQ(pipe(ends), 0);
        const pid_t child = fork();
        if (child == 0) {
            for (unsigned save = 0;; ++save) {
                WriteConfigFile(saves.path, saves.configs[save % 2]);
                if (save == 0)
                    close(ends[1]);
            }
        }
        close(ends[1]);
        char none = 0;
        EXPECT_EQ(read(ends[0], &none, 1), 0) << "the first save is done";
        close(ends[0]);
        usleep(static_cast<useconds_t>(random() % (2 * static_cast<unsigned>(both.count()) + 1)));
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
        ASSERT_TRUE(saves.IsWhole()) << "seed " << seed;
        seen.insert(ReadBytes(saves.path));
        saves.TidyUp();
    }
    EXPECT_EQ(seen.size(), 2U) << "the kills came too early or too late";
}

}  // namespace
