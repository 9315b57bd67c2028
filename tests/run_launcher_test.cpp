// Starting and closing the program.
#include "shell/run_launcher.h"

#include <gtest/gtest.h>

#include "form/form_ids.h"
#include "launcher_run.h"

namespace {

TEST(RunLauncher, ShowsItsFailureThoughTheEndOfTheLoopHasBeenAskedFor) {
    LauncherRun run;
    WNDCLASSW taken{};
    taken.lpfnWndProc = DefWindowProcW;
    taken.lpszClassName = TEXT("VeldraneVmLauncher");
    ASSERT_NE(RegisterClassW(&taken), 0);
    PostQuitMessage(0);
    const int exit_code = run.Run([&] {
        EXPECT_TRUE(user::WaitForBox());
        user::Pause(200);
        EXPECT_EQ(TakeErrorBox(), "Veldrane VM\nEnregistrement de la fenêtre impossible.");
        EXPECT_TRUE(user::WaitForEnd());
    });
    EXPECT_EQ(exit_code, 1);
}

TEST(RunLauncher, TakesAFolderOfTheDefaultNameForAFileThatCannotBeLoaded) {
    LauncherRun run;
    MakeFolder(run.folder.Of(TEXT("veldranevm.config")));
    run.Run([&] {
        EXPECT_EQ(TakeErrorBox(), "Veldrane VM\nImpossible d'ouvrir la configuration.");
        EXPECT_TRUE(user::WaitUntil([] { return user::IsVisible(IDC_LAUNCH); }));
        EXPECT_EQ(Narrow(user::Status()), "Impossible d'ouvrir la configuration.");
        EXPECT_FALSE(run.launcher.dirty);
    });
}

}  // namespace
