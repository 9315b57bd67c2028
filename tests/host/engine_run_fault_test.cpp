// What only the layer shows of a run: how the engine is started, and that its handle is closed.
#include <gtest/gtest.h>

#include "form/form_ids.h"
#include "launch/engine_run.h"
#include "launcher_run.h"
#include "platform/host/hooks.h"
#include "platform/host/system/inspect.h"

namespace {

TEST(EngineRun, GivesTheEngineItsInputForReadingAndNoConsole) {
    LauncherRun run;
    run.WriteConfig(TEXT("veldranevm.config"), "command=demo.duree=0\n");
    run.Run([&] {
        user::WaitForStatus(TEXT("Configuration chargée."));
        user::Do([&] {
            host::StartTrace();
            LaunchEngine(run.launcher, false);
            constexpr DWORD SHARED = FILE_SHARE_READ | FILE_SHARE_WRITE;
            EXPECT_EQ(host::TracedArguments("CreateFileW"),
                      (std::vector<DWORD>{GENERIC_READ, SHARED, OPEN_EXISTING}));
            EXPECT_EQ(host::TracedArguments("CreateProcessW"),
                      (std::vector<DWORD>{CREATE_NO_WINDOW | EXTENDED_STARTUPINFO_PRESENT}));
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

}  // namespace
