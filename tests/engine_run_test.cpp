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

struct Failure {
    const char* what;
    const char* lines;
    UINT button;
    const char* code;
};

void PrintTo(const Failure& failure, std::ostream* out) {
    *out << failure.what;
}

class FailedRun : public testing::TestWithParam<Failure> {};

TEST_P(FailedRun, IsToldByItsCodeAndOpensTheLog) {
    LauncherRun run;
    WriteBytes(run.folder.Of(TEXT("disque.img")), "no whole sector");
    run.WriteConfig(TEXT("veldranevm.config"), GetParam().lines);
    run.Run([&] {
        user::Click(GetParam().button);
        const std::string text = std::string("Échec (code ") + GetParam().code + "). Consultez le journal.";
        EXPECT_TRUE(user::WaitForStatus(Wide(text))) << Narrow(user::Status());
        EXPECT_TRUE(user::WaitUntil([] { return IsWindowVisible(user::LogWindow()) != FALSE; }));
        EXPECT_TRUE(user::IsEnabled(IDC_LAUNCH));
        EXPECT_TRUE(user::IsEnabled(IDC_VERIFY));
    });
}

INSTANTIATE_TEST_SUITE_P(EngineRun, FailedRun,
                         testing::Values(Failure{"dry", "ide_primary_master=disque.img\n", IDC_VERIFY, "1"},
                                         Failure{"run", "command=demo.code=1\n", IDC_LAUNCH, "1"},
                                         Failure{"crash", "command=demo.code=3221225477\n", IDC_LAUNCH,
                                                 "3221225477"}),
                         [](const auto& tested) { return tested.param.what; });

struct Refusal {
    const char* what;
    const char* lines;
    const char* message;  // a path in the folder stands for %
};

void PrintTo(const Refusal& refusal, std::ostream* out) {
    *out << refusal.what;
}

class RefusedRun : public testing::TestWithParam<Refusal> {};

TEST_P(RefusedRun, LeavesEverythingAsItWas) {
    LauncherRun run;
    MakeFolder(run.folder.Of(TEXT("dossier")));
    WriteBytes(run.folder.Of(TEXT("veldranevm.log")), "ancien");
    WriteBytes(run.folder.Of(TEXT("veldranevm.config")), "version=1\n" + std::string(GetParam().lines));
    std::string expected = GetParam().message;
    if (const std::size_t mark = expected.find('%'); mark != std::string::npos)
        expected.replace(mark, 1, Narrow(run.folder.Of(TEXT(""))));
    run.Run([&] {
        user::WaitForStatus(TEXT("Configuration chargée."));
        user::Do([&] { run.launcher.engine_path = run.folder.Of(TEXT("tessarun.exe")); });
        user::Click(IDC_LAUNCH);
        EXPECT_EQ(TakeErrorBox(), "Veldrane VM\n" + expected);
        EXPECT_EQ(Narrow(user::Status()), expected);
        EXPECT_TRUE(user::IsEnabled(IDC_LAUNCH));
        EXPECT_TRUE(run.launcher.log_path.empty());
        EXPECT_EQ(ReadBytes(run.folder.Of(TEXT("veldranevm.log"))), "ancien");
    });
}

INSTANTIATE_TEST_SUITE_P(
    EngineRun, RefusedRun,
    testing::Values(Refusal{"NoKernel", "", "Choisissez un noyau ELF."},
                    Refusal{"MissingKernel", "kernel=absent.elf\n", "Fichier introuvable : %absent.elf"},
                    Refusal{"FolderAsKernel", "kernel=dossier\n", "Fichier introuvable : %dossier"},
                    Refusal{"MissingDisk", "kernel=noyau.elf\nide_secondary_slave=d.img\n",
                            "Fichier introuvable : %d.img"},
                    Refusal{"MissingModule", "kernel=noyau.elf\nmodule_count=1\nmodule.0.path=m\n",
                            "Fichier introuvable : %m"},
                    Refusal{"KernelBeforeDisk", "kernel=absent.elf\nide_primary_master=d.img\n",
                            "Fichier introuvable : %absent.elf"},
                    // The export file is the engine's to write: it is not looked for.
                    Refusal{"MissingEngine", "kernel=noyau.elf\ndump=absent.ppm\n",
                            "tessarun.exe doit être placé à côté du lanceur."}),
    [](const auto& tested) { return tested.param.what; });

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

TEST(EngineRun, TakesWhatTheFormHoldsSavedOrNotAndFollowsItsLog) {
    LauncherRun run;
    run.WriteConfig(TEXT("veldranevm.config"), "");
    const std::string file = ReadBytes(run.folder.Of(TEXT("veldranevm.config")));
    WriteBytes(run.folder.Of(TEXT("veldranevm.log")), "d'avant");
    run.Run([&] {
        user::Click(IDC_SHOW_LOG);
        EXPECT_TRUE(user::WaitForStatus(TEXT("Aucun journal. Lancez une vérification ou la VM.")))
            << "the log of an earlier program is not looked for";
        user::Fill(IDC_KERNEL_COMMAND, TEXT("demo.duree=900 demo.texte=vivant"));
        user::Click(IDC_LAUNCH);
        user::Click(IDC_SHOW_LOG);
        const auto log_shows = [&](const WCHAR* text) {
            return user::WaitUntil([&] {
                return user::TextOf(GetDlgItem(run.launcher.log_window, 1)).find(text) != WideText::npos;
            });
        };
        EXPECT_TRUE(log_shows(TEXT("Machine démarrée")));
        EXPECT_NE(run.launcher.engine_process, nullptr) << "the log follows while the engine runs";
        EXPECT_TRUE(user::WaitForStatus(TEXT("VM terminée.")));
        EXPECT_TRUE(log_shows(TEXT("Machine arrêtée")));
        EXPECT_TRUE(run.launcher.dirty);
        EXPECT_TRUE(run.launcher.config.command.empty());

        // A refusal leaves the last run's log and its name alone.
        user::Do([&] { SendMessageW(run.launcher.log_window, WM_CLOSE, 0, 0); });
        user::Fill(IDC_KERNEL_PATH, TEXT("absent.elf"));
        user::Click(IDC_VERIFY);
        EXPECT_TRUE(Contains(TakeErrorBox(), "Fichier introuvable : "));
        EXPECT_TRUE(Contains(run.Log(), "vivant"));
        EXPECT_FALSE(run.launcher.run_is_dry);
        user::Do([&] {
            SetDlgItemTextW(run.launcher.main_window, IDC_KERNEL_PATH, TEXT(""));
            EXPECT_THROW(LaunchEngine(run.launcher, false), std::runtime_error);
            EXPECT_EQ(GetDlgCtrlID(GetFocus()), IDC_KERNEL_PATH);
        });
    });
    EXPECT_EQ(ReadBytes(run.folder.Of(TEXT("veldranevm.config"))), file);
}

TEST(EngineRun, SaysThatThereIsNoLogWhenAFailedRunHasLostIt) {
    LauncherRun run;
    run.WriteConfig(TEXT("veldranevm.config"), "command=demo.code=1\n");
    run.Run([&] {
        user::Click(IDC_LAUNCH);
        user::Do([&] { run.launcher.log_path = run.folder.Of(TEXT("perdu.log")); });
        EXPECT_TRUE(user::WaitForStatus(TEXT("Aucun journal. Lancez une vérification ou la VM.")));
        EXPECT_EQ(run.launcher.engine_process, nullptr);
        EXPECT_EQ(run.launcher.log_window, nullptr);
    });
}

}  // namespace
