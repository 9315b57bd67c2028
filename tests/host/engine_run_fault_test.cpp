// What only the layer shows of a run: that its handle is closed.
#include <gtest/gtest.h>

#include "form/form_ids.h"
#include "launcher_run.h"
#include "platform/host/system/inspect.h"

namespace {

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
