// The real platform's count of this process's handles; the layer's is looked at in the fault sweeps.
#include <gtest/gtest.h>

#include "config/config_file.h"
#include "launch/engine_run.h"
#include "launcher_run.h"

namespace {

DWORD HandleCount() {
    DWORD count = 0;
    GetProcessHandleCount(GetCurrentProcess(), &count);
    return count;
}

void SaveAndLaunch(LauncherRun& run) {
    Launcher& launcher = run.launcher;
    WriteConfigFile(run.folder.Of(TEXT("copie.config")), launcher.config);
    EXPECT_THROW(WriteConfigFile(run.folder.Of(TEXT("absent\\copie.config")), launcher.config),
                 std::runtime_error);
    LaunchEngine(launcher, true);
    WaitForSingleObject(launcher.engine_process, INFINITE);
    PollEngine(launcher);
    const WideText engine_path = std::exchange(launcher.engine_path, run.folder.Of(TEXT("noyau.elf")));
    EXPECT_THROW(LaunchEngine(launcher, false), std::runtime_error) << "a kernel is no program";
    launcher.engine_path = engine_path;
}

TEST(Handles, StayAsManyHoweverOftenOneSavesAndLaunches) {
    LauncherRun run;
    run.WriteConfig(TEXT("veldranevm.config"), "");
    run.Run([&] {
        user::WaitForStatus(TEXT("Configuration chargée."));
        user::Do([&] {
            SaveAndLaunch(run);
            const DWORD before = HandleCount();
            for (int round = 0; round < 5; ++round)
                SaveAndLaunch(run);
            EXPECT_EQ(HandleCount(), before);
        });
    });
}

}  // namespace
