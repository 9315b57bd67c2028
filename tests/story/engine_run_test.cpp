// An engine that outlives its launcher.
#include <gtest/gtest.h>

#include "form/form_ids.h"
#include "launch/run_result.h"
#include "launcher_run.h"

namespace {

bool Contains(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

TEST(EngineRun, ShowsZeroBytesThatAnEarlierEngineCausesInTheLogAndKeepsTheSelection) {
    LauncherRun run;
    run.WriteConfig(TEXT("veldranevm.config"), "command=demo.attend=feu demo.octets=3000\n");
    run.Run([&] {
        user::Click(IDC_LAUNCH);
        user::WaitUntil([&] { return Contains(run.Log(), "Ligne 3"); });
        user::CloseMainWindow();
        user::WaitForEnd();
    });
    EXPECT_EQ(run.launcher.engine_process, nullptr);
    EXPECT_EQ(Narrow(RunResultText(0xC0000005, false)), "Échec (code 3221225477). Consultez le journal.");
    EXPECT_FALSE(Contains(run.Log(), "Machine arrêtée"))
        << "closing the program neither waits for the engine nor stops it";
    UnregisterWindowClasses();
    run.WriteConfig(TEXT("veldranevm.config"), "command=demo.attend=feu\n");
    Launcher next;
    user::RunWithUserThread(next, [&] {
        user::Click(IDC_VERIFY);
        user::WaitForStatus(TEXT("Configuration vérifiée. Vous pouvez lancer la VM."));
        user::Click(IDC_KERNEL_COMMAND);
        user::Press(VK_RETURN);
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
        user::OnProgramThread([&] { SendMessageW(GetDlgItem(next.log_window, 1), EM_SETSEL, 5, 9); });
        user::Pause(600);
        user::OnProgramThread([&] {
            EXPECT_EQ(SendMessageW(GetDlgItem(next.log_window, 1), EM_GETSEL, 0, 0), MAKELPARAM(5, 9))
                << "the text was set again without a change";
        });
    });
}

}  // namespace
