// A run of the whole program in a folder of its own.
#include "launcher_run.h"

#include <gtest/gtest.h>

#include <vector>

#include "base/path_ops.h"
#include "launch/log_window.h"
#include "shell/dispatch.h"

namespace {

WideText ModuleFolder() {
    std::vector<WCHAR> path(32768);
    const DWORD length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    return ParentPath(WideView(path.data(), length));
}

}  // namespace

LauncherRun::LauncherRun() {
    SetCurrentDirectoryW(folder.path.c_str());
    WriteBytes(folder.Of(TEXT("noyau.elf")), ReadBytes(JoinPath(ModuleFolder(), TEXT("demo_kernel.elf"))));
}

LauncherRun::~LauncherRun() {
    SetCurrentDirectoryW(ModuleFolder().c_str());
}

int LauncherRun::Run(const std::function<void()>& story) {
    return user::RunWithUser(launcher, story);
}

void LauncherRun::WriteConfig(WideView name, std::string_view lines) const {
    WriteBytes(folder.Of(name), "version=1\nkernel=noyau.elf\n" + std::string(lines));
}

std::string LauncherRun::Log() const {
    return ReadBytes(launcher.log_path);
}

void UnregisterWindowClasses() {
    for (const WCHAR* name : {MAIN_WINDOW_CLASS, LOG_WINDOW_CLASS})
        UnregisterClassW(name, GetModuleHandleW(nullptr));
}

std::string TakeErrorBox() {
    if (!user::WaitForBox()) {
        ADD_FAILURE() << "no error box";
        return {};
    }
    const std::string text = user::BoxText();
    user::AnswerBox(IDOK);
    return text;
}
