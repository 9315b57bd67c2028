// Whole runs of the engine, from the button to the end.
#include "launch/engine_run.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "form/form_ids.h"
#include "launcher_run.h"

namespace {

bool Contains(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

TEST(EngineRun, VerifiesAndThenRunsAConfigurationToItsEnd) {
    LauncherRun run;
    run.WriteConfig(TEXT("veldranevm.config"), "command=demo.duree=600 mode=\"é\"\nram_mib=256\n");
    const int exit_code = run.Run([&] {
        EXPECT_TRUE(user::WaitForStatus(TEXT("Configuration chargée.")));
        EXPECT_EQ(user::ControlText(IDC_CONFIG_LINE), run.folder.Of(TEXT("veldranevm.config")));
        // Pressed and looked at in one go: a dry run can be over at the next tick.
        user::Do([&] {
            SendMessageW(GetDlgItem(run.launcher.main_window, IDC_VERIFY), BM_CLICK, 0, 0);
            EXPECT_EQ(Narrow(user::Status()), "Vérification en cours...");
            EXPECT_FALSE(user::IsEnabled(IDC_VERIFY));
        });
        EXPECT_TRUE(user::WaitForStatus(TEXT("Configuration vérifiée. Vous pouvez lancer la VM.")));
        EXPECT_TRUE(Contains(run.Log(), "--dry-run"));
        user::Click(IDC_LAUNCH);
        EXPECT_TRUE(
            user::WaitForStatus(TEXT("VM démarrée. Les réglages s'appliquent au prochain lancement.")));
        const HANDLE process = run.launcher.engine_process;
        user::Do([&] { LaunchEngine(run.launcher, true); });
        EXPECT_EQ(run.launcher.engine_process, process) << "one engine at a time";
        EXPECT_FALSE(run.launcher.run_is_dry);
        EXPECT_FALSE(user::IsEnabled(IDC_LAUNCH));
        EXPECT_FALSE(user::IsEnabled(IDC_VERIFY));
        EXPECT_TRUE(user::IsEnabled(IDC_KERNEL_PATH));
        EXPECT_TRUE(user::WaitForStatus(TEXT("VM terminée.")));
        EXPECT_TRUE(user::IsEnabled(IDC_LAUNCH));
        EXPECT_EQ(user::LogWindow(), nullptr) << "a success does not open the log";
        EXPECT_FALSE(run.launcher.dirty);
        user::CloseMainWindow();
        user::WaitForEnd();
    });
    EXPECT_EQ(exit_code, 0);
    const std::string log = run.Log();
    EXPECT_TRUE(Contains(log, "--ram\n256\n")) << log;
    EXPECT_TRUE(Contains(log, "demo.duree=600 mode=\"é\"")) << log;
    EXPECT_FALSE(Contains(log, "--dry-run")) << "each launch starts a new log";
    EXPECT_TRUE(Contains(log, Narrow(run.folder.path)))
        << "the engine works in the folder of the configuration";
}

TEST(EngineRun, NamesTheLogThatCannotBeMadeAndTheEngineThatCannotBeStarted) {
    LauncherRun run;
    run.WriteConfig(TEXT("veldranevm.config"), "");
    run.Run([&] {
        MakeFolder(run.folder.Of(TEXT("veldranevm.log")));
        user::Click(IDC_LAUNCH);
        EXPECT_EQ(TakeErrorBox(), "Veldrane VM\nImpossible de créer veldranevm.log.");
        Remove(run.folder.Of(TEXT("veldranevm.log")));
        WriteBytes(run.folder.Of(TEXT("tessarun.exe")), "no program at all");
        user::Do([&] { run.launcher.engine_path = run.folder.Of(TEXT("tessarun.exe")); });
        user::Click(IDC_LAUNCH);
        const std::string box = TakeErrorBox();
        const std::string start = "Veldrane VM\nLancement impossible : ";
        EXPECT_EQ(box.substr(0, start.size()), start);
        EXPECT_GT(box.size(), start.size() + 5) << "the system's own words follow";
        EXPECT_EQ(run.launcher.engine_process, nullptr);
        EXPECT_EQ(run.Log(), "") << "the log of a launch that failed late is there and empty";
    });
}

TEST(EngineRun, GoesOnWhenTheLauncherIsClosed) {
    LauncherRun run;
    run.WriteConfig(TEXT("veldranevm.config"), "command=demo.attend=feu\n");
    const int exit_code = run.Run([&] {
        user::Click(IDC_LAUNCH);
        EXPECT_TRUE(
            user::WaitForStatus(TEXT("VM démarrée. Les réglages s'appliquent au prochain lancement.")));
        user::CloseMainWindow();
        EXPECT_TRUE(user::WaitForEnd());
    });
    EXPECT_EQ(exit_code, 0);
    EXPECT_EQ(run.launcher.engine_process, nullptr);
    EXPECT_FALSE(Contains(run.Log(), "Machine arrêtée")) << "closing waits for nothing";
    WriteBytes(run.folder.Of(TEXT("feu")), "");
    for (int wait = 0; wait < 150 && !Contains(run.Log(), "Machine arrêtée"); ++wait)
        Sleep(100);
    EXPECT_TRUE(Contains(run.Log(), "Machine arrêtée"));
}

TEST(EngineRun, ShowsTheGapThatAnEarlierEngineLeavesInTheLogAndLeavesItAlone) {
    LauncherRun run;
    run.WriteConfig(TEXT("veldranevm.config"), "command=demo.attend=feu demo.octets=3000\n");
    run.Run([&] {
        user::Click(IDC_LAUNCH);
        user::WaitUntil([&] { return Contains(run.Log(), "Ligne 3"); });
        user::CloseMainWindow();
        user::WaitForEnd();
    });
    UnregisterClassW(TEXT("VeldraneVmLauncher"), nullptr);
    UnregisterClassW(TEXT("VeldraneVmLog"), nullptr);
    run.WriteConfig(TEXT("veldranevm.config"), "command=demo.attend=feu\n");
    Launcher next;
    user::RunWithUser(next, [&] {
        user::Click(IDC_LAUNCH);
        user::WaitForStatus(TEXT("VM démarrée. Les réglages s'appliquent au prochain lancement."));
        WriteBytes(run.folder.Of(TEXT("feu")), "");
        user::WaitForStatus(TEXT("VM terminée."));
        user::Click(IDC_SHOW_LOG);
        user::WaitUntil([&] {
            const std::string text = Narrow(user::TextOf(GetDlgItem(next.log_window, 1)));
            const std::size_t gap = text.find("code 0.\r\n··········");
            return gap != std::string::npos &&
                   text.find("··Machine arrêtée, code 0.", gap) != std::string::npos;
        });
        user::Do([&] { SendMessageW(GetDlgItem(next.log_window, 1), EM_SETSEL, 5, 9); });
        user::Pause(600);
        user::Do([&] {
            EXPECT_EQ(SendMessageW(GetDlgItem(next.log_window, 1), EM_GETSEL, 0, 0), MAKELPARAM(5, 9))
                << "the text was set again";
        });
    });
}

}  // namespace
