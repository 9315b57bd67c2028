// The file boxes where their library cannot be loaded.
#include <gtest/gtest.h>

#include "form/form_ids.h"
#include "launcher_run.h"

#include <delayimp.h>

namespace {

FARPROC WINAPI LookElsewhere(unsigned what, DelayLoadInfo* wanted) {
    if (what == dliNotePreLoadLibrary)
        wanted->szDll = "absent.dll";
    return nullptr;
}

TEST(FileBoxes, FailInWordsWithoutTheirLibrary) {
    __pfnDliNotifyHook2 = LookElsewhere;
    LauncherRun run;
    const int exit_code = run.Run([&] {
        for (const UINT id : {IDC_LOAD, IDC_SAVE_AS, IDC_LOAD}) {
            user::Click(id);
            EXPECT_EQ(TakeErrorBox(), "Veldrane VM\nBoîte de sélection de fichier indisponible.");
            user::WaitForNoBox();
        }
    });
    EXPECT_EQ(exit_code, 0);
}

}  // namespace
