// Runs the program in a temporary folder.
#include "launcher_run.h"

#include <gtest/gtest.h>

#include "launch/log_window.h"
#include "shell/dispatch.h"

LauncherRun::LauncherRun() {
    SetCurrentDirectoryW(folder.path.c_str());
    WriteBytes(folder.Of(TEXT("noyau.elf")), ReadBytes(BuildFile(TEXT("demo_kernel.elf"))));
}

LauncherRun::~LauncherRun() {
    SetCurrentDirectoryW(BuildFile({}).c_str());
}

int LauncherRun::Run(const std::function<void()>& story) {
    return user::RunWithUserThread(launcher, story);
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
    std::string text = user::BoxText();
    user::AnswerBox(IDOK);
    return text;
}
