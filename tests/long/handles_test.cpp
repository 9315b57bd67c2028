// The used resources do not grow with the number of saves, launches and log windows.
#include <gtest/gtest.h>

#include <cstdlib>

#include "config/config_file.h"
#include "launch/engine_run.h"
#include "launch/log_window.h"
#include "launcher_run.h"
#include "shell/config_commands.h"

namespace {

void SaveLaunchAndShow(LauncherRun& run) {
    Launcher& launcher = run.launcher;
    SaveConfiguration(launcher, false);
    EXPECT_THROW(WriteConfigFile(run.folder.Of(TEXT("absent\\copie.config")), launcher.config),
                 std::runtime_error);
    LaunchEngine(launcher, true);
    WaitForSingleObject(launcher.engine_process, INFINITE);
    ShowLogWindow(launcher);
    PollEngine(launcher);
    const WideText engine_path = std::exchange(launcher.engine_path, run.folder.Of(TEXT("noyau.elf")));
    EXPECT_THROW(LaunchEngine(launcher, false), std::runtime_error) << "a kernel is not a program";
    launcher.engine_path = engine_path;
    DestroyWindow(launcher.log_window);
    EXPECT_FALSE(IsWindow(launcher.log_window));
}

TEST(Handles, DoNotIncreaseWithEachSaveAndLaunch) {
    constexpr std::size_t NOISE_BYTES = 100000;
    const int rounds = std::getenv("VELDRANE_LONG") == nullptr ? 30 : 1000;
    LauncherRun run;
    run.WriteConfig(TEXT("veldranevm.config"), "");
    run.Run([&] {
        user::WaitForStatus(TEXT("Configuration chargée."));
        user::OnProgramThread([&] {
            for (int round = 0; round < 3; ++round)
                SaveLaunchAndShow(run);
            const Resources before = UsedResources();
            for (int round = 0; round < rounds; ++round)
                SaveLaunchAndShow(run);
            const Resources after = UsedResources();
            EXPECT_EQ(after.counts, before.counts);
            EXPECT_LT(after.bytes, before.bytes + NOISE_BYTES);
        });
    });
}

}  // namespace
