// DLLs planted in the folder of the program and in the current directory.
#include "shell/dll_search.h"

#include <gtest/gtest.h>

#include "launcher_run.h"

namespace {

bool CanLoad(const WCHAR* name) {
    const HMODULE module = LoadLibraryW(name);
    if (module != nullptr)
        FreeLibrary(module);
    return module != nullptr;
}

TEST(DllSearch, DoesNotLoadFromTheFoldersOfTheProgramAndTheUser) {
    const LauncherRun run;
    WriteBytes(run.folder.Of(TEXT("here.dll")), ReadBytes(BuildFile(TEXT("planted.dll"))));
    EXPECT_TRUE(CanLoad(TEXT("planted.dll")) && CanLoad(TEXT("here.dll")));
    LimitDllSearch();
    EXPECT_FALSE(CanLoad(TEXT("planted.dll")));
    EXPECT_FALSE(CanLoad(TEXT("here.dll")));
    EXPECT_TRUE(CanLoad(TEXT("version.dll"))) << "a DLL of the system";
}

}  // namespace
