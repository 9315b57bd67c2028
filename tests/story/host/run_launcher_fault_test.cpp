// The longest path of the program, and a layout that the platform refuses.
#include <gtest/gtest.h>

#include "base/path_ops.h"
#include "form/form_ids.h"
#include "launcher_run.h"
#include "platform/host/hooks/test_hooks.h"

TEST(RunLauncher, AcceptsTheLongestPathOfItsExecutableAndNoLongerOne) {
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
        if (length == 32767U)
            UnregisterWindowClasses();
    }
}

TEST(RunLauncher, DoesNotMoveTheControlsWhenDeferWindowPosFails) {
    for (const char* call : {"BeginDeferWindowPos", "DeferWindowPos"}) {
        SCOPED_TRACE(call);
        LauncherRun run;
        run.Run([&] {
            RECT before{}, after{};
            const HWND button = user::Control(IDC_KERNEL_BROWSE);
            user::OnProgramThread([&] {
                GetWindowRect(button, &before);
                host::FailCall(call, 3 - 2 * (call[0] == 'B'), ERROR_NOT_ENOUGH_MEMORY);
            });
            user::ResizeClient(1200, 800);
            user::OnProgramThread([&] {
                GetWindowRect(button, &after);
                EXPECT_EQ(host::ClearFaults(), 1U);
                EXPECT_EQ(SendMessageW(run.launcher.module_list, LVM_GETCOLUMNWIDTH, 0, 0), 604)
                    << "the columns are resized nevertheless";
            });
            EXPECT_EQ(after.left, before.left);
        });
        UnregisterWindowClasses();
    }
}
