// The demonstration on Windows: starts veldranevm.exe from the current directory and acts as its user from
// this process, with real mouse and keyboard input.
#include <chrono>
#include <cstdio>
#include <exception>
#include <stdexcept>

#include "base/file_system.h"
#include "base/owned_handle.h"
#include "base/path_ops.h"
#include "demo/tour.h"
#include "demo/user/user.h"

namespace {

constexpr DWORD SETTLE_MS = 30;  // between two actions of a user; input is handled in its order

HANDLE launcher_process = nullptr;

OwnedHandle StartLauncher(const WideText& folder) {
    const WideText program = JoinPath(folder, TEXT("veldranevm.exe"));
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    if (CreateProcessW(program.c_str(), nullptr, nullptr, nullptr, FALSE, 0, nullptr, folder.c_str(),
                       &startup, &process) == FALSE)
        throw std::runtime_error("veldranevm.exe cannot be started");
    CloseHandle(process.hThread);
    return OwnedHandle(process.hProcess);
}

}  // namespace

namespace user {

void Do(const std::function<void()>& action) {
    action();
    Sleep(SETTLE_MS / 3);
}

bool WaitUntil(const std::function<bool()>& condition, unsigned limit_ms) {
    const auto limit = std::chrono::steady_clock::now() + std::chrono::milliseconds(limit_ms);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > limit)
            return false;
        Sleep(SETTLE_MS);
    }
    return true;
}

void Pause(unsigned ms) {
    Sleep(ms);
}

bool WaitForEnd(unsigned limit_ms) {
    return WaitForSingleObject(launcher_process, limit_ms) == WAIT_OBJECT_0;
}

}  // namespace user

int main() {
    try {
        const WideText folder = CurrentDirectory();
        const OwnedHandle process = StartLauncher(folder);
        launcher_process = process.Get();
        const bool right = Tour(folder);
        DWORD exit_code = 1;
        GetExitCodeProcess(process.Get(), &exit_code);
        if (exit_code == STILL_ACTIVE)
            TerminateProcess(process.Get(), 1);
        return right && exit_code == 0 ? 0 : 1;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
