// A start in which one call fails.
#include <gtest/gtest.h>

#include "base/path_ops.h"
#include "form/form_ids.h"
#include "host/fault_sweep.h"
#include "launcher_run.h"

namespace {

struct StartFault {
    const char* name;
    const char* call;
    unsigned nth;
    std::vector<std::string> boxes;  // how their texts begin
};

void PrintTo(const StartFault& fault, std::ostream* out) {
    *out << fault.name;
}

class StartFaults : public testing::TestWithParam<StartFault> {};

TEST_P(StartFaults, ReachTheUserAndEndWithOne) {
    LauncherRun run;
    host::FailCall(GetParam().call, GetParam().nth, ERROR_ACCESS_DENIED);
    const int exit_code = run.Run([&] {
        for (const std::string& start : GetParam().boxes) {
            const std::string text = TakeErrorBox();
            EXPECT_TRUE(text.starts_with("Veldrane VM\n" + start)) << text;
        }
        EXPECT_TRUE(user::WaitForEnd());
    });
    EXPECT_EQ(exit_code, 1);
    EXPECT_EQ(host::ClearFaults(), 1U);
    EXPECT_EQ(host::OpenHandles(), 0U);
}

// The user's own timer is the first one; the main window is the first window and its controls follow.
INSTANTIATE_TEST_SUITE_P(
    RunLauncher, StartFaults,
    testing::Values(
        StartFault{"CurrentDirectory", "GetCurrentDirectoryW", 1, {"current_path(): "}},
        StartFault{"ModulePath", "GetModuleFileNameW", 1, {"Chemin du lanceur introuvable."}},
        StartFault{"CommonControls", "InitCommonControlsEx", 1, {"Contrôles Win32 indisponibles."}},
        StartFault{"MainClass", "RegisterClassW", 1, {"Enregistrement de la fenêtre impossible."}},
        StartFault{"LogClass", "RegisterClassW", 2, {"Enregistrement du journal impossible."}},
        StartFault{"MainWindow", "CreateWindowExW", 1, {"Création du lanceur impossible."}},
        StartFault{"FirstControl",
                   "CreateWindowExW",
                   2,
                   {"Création d'un contrôle impossible.", "Création du lanceur impossible."}},
        StartFault{"LastControl",
                   "CreateWindowExW",
                   57,
                   {"Création d'un contrôle impossible.", "Création du lanceur impossible."}},
        StartFault{"DefaultFile", "CreateFileW", 1, {"exists: "}},
        StartFault{"Timer", "SetTimer", 2, {"Initialisation du suivi VM impossible."}}),
    [](const auto& tested) { return tested.param.name; });

TEST(RunLauncher, TellsABrokenMessageLoop) {
    LauncherRun run;
    EXPECT_EQ(run.Run([&] {
        user::Do([] { host::FailCall("GetMessageW", 1, ERROR_ACCESS_DENIED); });
        EXPECT_EQ(TakeErrorBox(), "Veldrane VM\nBoucle de messages interrompue.");
        EXPECT_TRUE(user::WaitForEnd());
    }),
              1);
}

TEST(RunLauncher, TakesTheLongestPathOfItsOwnFileAndNoLongerOne) {
    for (const std::size_t length : {32767U, 32768U}) {
        LauncherRun run;
        std::u16string path = u"C:\\";
        while (path.size() < length)
            path += path.size() % 200 == 0 ? u'\\' : u'x';
        host::SetModuleFile(path);
        EXPECT_EQ(run.Run([&] {
            if (length == 32768U) {
                EXPECT_EQ(TakeErrorBox(), "Veldrane VM\nChemin du lanceur introuvable.");
            } else {
                EXPECT_EQ(run.launcher.engine_path, JoinPath(ParentPath(path), TEXT("tessarun.exe")));
                user::CloseMainWindow();
            }
            EXPECT_TRUE(user::WaitForEnd());
        }),
                  length == 32768U ? 1 : 0);
        host::SetModuleFile({});
        if (length == 32767U) {
            UnregisterClassW(TEXT("VeldraneVmLauncher"), nullptr);
            UnregisterClassW(TEXT("VeldraneVmLog"), nullptr);
        }
    }
}

TEST(RunLauncher, LeavesTheControlsWhereTheyAreWhenABatchIsRefused) {
    for (const char* call : {"BeginDeferWindowPos", "DeferWindowPos"}) {
        SCOPED_TRACE(call);
        LauncherRun run;
        run.Run([&] {
            RECT before{}, after{};
            const HWND button = user::Control(IDC_KERNEL_BROWSE);
            user::Do([&] {
                GetWindowRect(button, &before);
                host::FailCall(call, 3 - 2 * (call[0] == 'B'), ERROR_NOT_ENOUGH_MEMORY);
            });
            user::ResizeClient(1200, 800);
            user::Do([&] {
                GetWindowRect(button, &after);
                EXPECT_EQ(host::ClearFaults(), 1U);
                EXPECT_EQ(SendMessageW(run.launcher.module_list, LVM_GETCOLUMNWIDTH, 0, 0), 604)
                    << "the columns follow all the same";
            });
            EXPECT_EQ(after.left, before.left);
        });
        UnregisterClassW(TEXT("VeldraneVmLauncher"), nullptr);
        UnregisterClassW(TEXT("VeldraneVmLog"), nullptr);
    }
}

}  // namespace
