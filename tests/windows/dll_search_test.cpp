// Planted DLLs: beside the program and in the current folder.
#include "shell/dll_search.h"

#include <gtest/gtest.h>

#include "launcher_run.h"

namespace {

// The folder of the tests holds planted.dll.
WideText Beside(WideView name) {
    WCHAR path[MAX_PATH]{};
    const DWORD length = GetModuleFileNameW(nullptr, path, MAX_PATH);
    const WideView module(path, length);
    return WideText(module.substr(0, module.find_last_of(TEXT('\\')) + 1)) + WideText(name);
}

bool IsFound(const WCHAR* name) {
    const HMODULE module = LoadLibraryW(name);
    if (module != nullptr)
        FreeLibrary(module);
    return module != nullptr;
}

TEST(DllSearch, EndsBesideTheProgramAndInTheCurrentFolder) {
    const LauncherRun run;
    WriteBytes(run.folder.Of(TEXT("here.dll")), ReadBytes(Beside(TEXT("planted.dll"))));
    EXPECT_TRUE(IsFound(TEXT("planted.dll")) && IsFound(TEXT("here.dll")));
    LimitDllSearch();
    EXPECT_FALSE(IsFound(TEXT("planted.dll")));
    EXPECT_FALSE(IsFound(TEXT("here.dll")));
    EXPECT_TRUE(IsFound(TEXT("version.dll"))) << "the system's own";
}

}  // namespace
