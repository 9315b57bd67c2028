// A launch or a log in which one call fails.
#include <gtest/gtest.h>

#include "form/form_exchange.h"
#include "form/form_ids.h"
#include "host/fault_sweep.h"
#include "launch/engine_run.h"
#include "launch/log_window.h"
#include "launcher_run.h"

namespace {

constexpr const char* NO_START = "Lancement impossible : ";

// The end of a run that a sweep has let through: its handle is not the sweep's.
void EndRun(Launcher& launcher) {
    if (launcher.engine_process == nullptr)
        return;
    WaitForSingleObject(launcher.engine_process, INFINITE);
    CloseHandle(launcher.engine_process);
    launcher.engine_process = nullptr;
}

TEST(EngineRunFaults, LeaveNoHandleAndNoRun) {
    LauncherRun run;
    run.WriteConfig(TEXT("veldranevm.config"), "command=demo.duree=0\n");
    const Steps steps{{"GetFullPathNameW", "absolute: "},
                      {"CreateFileW", "status: "},  // the kernel
                      {"GetFileType", "status: "},
                      {"GetFileInformationByHandle", "status: "},
                      {"CloseHandle", ""},
                      {"CreateFileW", "status: "},  // the engine
                      {"GetFileType", "status: "},
                      {"GetFileInformationByHandle", "status: "},
                      {"CloseHandle", ""},
                      {"CreateFileW", "Impossible de créer veldranevm.log."},
                      {"CreateFileW", "Initialisation de l'entrée standard impossible."},
                      {"InitializeProcThreadAttributeList", "Initialisation du lancement impossible."},
                      {"InitializeProcThreadAttributeList", "Initialisation du lancement impossible."},
                      {"UpdateProcThreadAttribute", NO_START},
                      {"CreateProcessW", "Lancement impossible : Access is denied."},
                      {"CloseHandle", ""},   // the input
                      {"CloseHandle", ""},   // the log
                      {"CloseHandle", ""}};  // the thread
    run.Run([&] {
        user::WaitForStatus(TEXT("Configuration chargée."));
        user::Do([&] {
            Launcher& launcher = run.launcher;
            const std::string status = Narrow(user::Status());
            Sweep(
                steps, [&] { LaunchEngine(launcher, false); },
                [&](bool failed) {
                    EXPECT_EQ(launcher.engine_process == nullptr, failed);
                    EXPECT_EQ(user::IsEnabled(IDC_LAUNCH), failed);
                    EXPECT_EQ(Narrow(user::Status()) == status, failed);
                    EXPECT_EQ(host::OpenAttributeLists(), 0U);
                    EndRun(launcher);
                    SetWindowTextW(launcher.status_label, Wide(status).c_str());
                    EnableWindow(GetDlgItem(launcher.main_window, IDC_LAUNCH), TRUE);
                });
            constexpr DWORD SHARED = FILE_SHARE_READ | FILE_SHARE_WRITE;
            EXPECT_EQ(host::TracedArguments("CreateFileW"),
                      (std::vector<DWORD>{GENERIC_READ, SHARED, OPEN_EXISTING}));
            EXPECT_EQ(host::TracedArguments("CreateProcessW"),
                      (std::vector<DWORD>{CREATE_NO_WINDOW | EXTENDED_STARTUPINFO_PRESENT}));
        });
    });
}

TEST(EngineRunFaults, OfALookAtTheEngineAreTriedAgainAndOfItsCodeAreTakenForSuccess) {
    LauncherRun run;
    run.WriteConfig(TEXT("veldranevm.config"), "command=demo.duree=0 demo.code=1\n");
    run.Run([&] {
        user::WaitForStatus(TEXT("Configuration chargée."));
        user::Do([&] {
            Launcher& launcher = run.launcher;
            LaunchEngine(launcher, false);
            ShowLogWindow(launcher);
            WaitForSingleObject(launcher.engine_process, INFINITE);
            host::FailCall("WaitForSingleObject", 1, ERROR_ACCESS_DENIED);
            PollEngine(launcher);
            EXPECT_NE(launcher.engine_process, nullptr);
            host::FailCall("GetExitCodeProcess", 1, ERROR_ACCESS_DENIED);
            PollEngine(launcher);
            EXPECT_EQ(launcher.engine_process, nullptr);
            EXPECT_EQ(Narrow(user::Status()), "VM terminée.");
            EXPECT_NE(Narrow(GetControlText(GetDlgItem(launcher.log_window, 1))).find("Machine arrêtée"),
                      std::string::npos);
            EXPECT_EQ(host::ClearFaults(), 2U);
        });
    });
}

TEST(EngineRun, ClosesTheProcessHandleAtTheEndOfTheRunOrOfTheWindow) {
    LauncherRun run;
    run.WriteConfig(TEXT("veldranevm.config"), "command=demo.duree=400\n");
    run.Run([&] {
        user::Click(IDC_LAUNCH);
        EXPECT_TRUE(user::WaitUntil([] { return host::OpenHandles() == 1; }));
        EXPECT_TRUE(user::WaitForStatus(TEXT("VM terminée.")));
        EXPECT_EQ(host::OpenHandles(), 0U);
        user::Click(IDC_LAUNCH);
        EXPECT_TRUE(user::WaitUntil([] { return host::OpenHandles() == 1; }));
        user::CloseMainWindow();
        EXPECT_TRUE(user::WaitForEnd());
    });
    EXPECT_EQ(host::OpenHandles(), 0U);
}

TEST(EngineRunFaults, OfALogWindowThatCannotBeMadeAreToldAfterTheRunHasEnded) {
    LauncherRun run;
    run.WriteConfig(TEXT("veldranevm.config"), "command=demo.code=1\n");
    run.Run([&] {
        user::Do([] { host::FailCall("CreateWindowExW", 1, ERROR_NOT_ENOUGH_MEMORY); });
        user::Click(IDC_LAUNCH);
        EXPECT_EQ(TakeErrorBox(), "Veldrane VM\nCréation du journal impossible.");
        EXPECT_TRUE(user::IsEnabled(IDC_LAUNCH));
        EXPECT_EQ(run.launcher.engine_process, nullptr);
        EXPECT_EQ(run.launcher.log_window, nullptr);
    });
}

}  // namespace
