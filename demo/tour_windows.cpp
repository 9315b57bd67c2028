// The demonstration on Windows: starts veldranevm.exe from the current directory and acts as its user from
// this process, with real mouse and keyboard input. With `images` as the first argument, it requests
// pictures: for each one it prints a line "@NAME PLACE CAPTION", where PLACE is a part of the screen, and
// waits until the file NAME.fait exists. With `machine` as the second argument, plays the demonstration of a
// real machine.
#include <atomic>
#include <chrono>
#include <cstdio>
#include <exception>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>

#include "base/file_system.h"
#include "base/owned_handle.h"
#include "base/path_ops.h"
#include "base/text_convert.h"
#include "demo/tour.h"
#include "demo/user/user.h"
#include "form/placement.h"

namespace {

constexpr DWORD CHECK_PERIOD_MS = 30;
constexpr DWORD ACTION_PERIOD_MS = 10;
constexpr unsigned PAINT_MS = 400;
constexpr ULONGLONG ANSWER_LIMIT_MS = 60000;

HANDLE launcher_process = nullptr;
std::atomic<ULONGLONG> last_action_ms = 0;
bool takes_pictures = false;

OwnedHandle StartLauncher(const WideText& folder) {
    const WideText program = JoinPath(folder, TEXT("veldranevm.exe"));
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    // The middle of the screen, where the boxes open too.
    startup.dwFlags = STARTF_USEPOSITION;
    startup.dwX = (static_cast<DWORD>(GetSystemMetrics(SM_CXSCREEN)) - BASE_CLIENT_WIDTH) / 2;
    startup.dwY = (static_cast<DWORD>(GetSystemMetrics(SM_CYSCREEN)) - BASE_CLIENT_HEIGHT) / 2;
    PROCESS_INFORMATION process{};
    if (CreateProcessW(program.c_str(), nullptr, nullptr, nullptr, FALSE, 0, nullptr, folder.c_str(),
                       &startup, &process) == FALSE)
        throw std::runtime_error("veldranevm.exe cannot be started");
    CloseHandle(process.hThread);
    return OwnedHandle(process.hProcess);
}

// Ends the demonstration when the launcher hangs. Needs a thread of its own, because SendMessage to a
// launcher that hangs does not return.
void EndWhenLauncherHangs() {
    for (;;) {
        Sleep(1000);
        if (GetTickCount64() - last_action_ms > ANSWER_LIMIT_MS) {
            std::fputs("veldranevm.exe does not answer\n", stderr);
            TerminateProcess(launcher_process, 1);
            TerminateProcess(GetCurrentProcess(), 1);
        }
    }
}

}  // namespace

namespace user {

void OnProgramThread(const std::function<void()>& action) {
    last_action_ms = GetTickCount64();
    action();
    Sleep(ACTION_PERIOD_MS);
}

bool WaitUntil(const std::function<bool()>& condition, unsigned limit_ms) {
    const auto limit = std::chrono::steady_clock::now() + std::chrono::milliseconds(limit_ms);
    while (!condition()) {
        last_action_ms = GetTickCount64();
        if (WaitForSingleObject(launcher_process, 0) == WAIT_OBJECT_0)
            return false;
        if (std::chrono::steady_clock::now() > limit)
            throw std::runtime_error("timed out");
        Sleep(CHECK_PERIOD_MS);
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

void ShowPicture(HWND window, const std::string& name, const std::string& caption) {
    if (!takes_pictures)
        return;
    user::Pause(PAINT_MS);
    RECT place{};
    GetWindowRect(window, &place);
    std::printf("@%s %ldx%ld+%ld+%ld %s\n", name.c_str(), place.right - place.left, place.bottom - place.top,
                place.left, place.top, caption.c_str());
    std::fflush(stdout);
    const WideText taken = WideFromUtf8(name + ".fait");
    if (!user::WaitUntil([&] { return QueryFileType(taken, "status") == FileType::Regular; }))
        throw std::runtime_error("nobody takes the picture " + name);
}

int main(int count, char** arguments) {
    try {
        takes_pictures = count >= 2 && std::string_view(arguments[1]) == "images";
        const WideText folder = CurrentDirectory();
        const OwnedHandle process = StartLauncher(folder);
        launcher_process = process.Get();
        last_action_ms = GetTickCount64();
        std::thread(EndWhenLauncherHangs).detach();
        const bool is_machine = count == 3 && std::string_view(arguments[2]) == "machine";
        const bool is_correct = is_machine ? MachineTour(folder) : Tour(folder);
        DWORD exit_code = 1;
        GetExitCodeProcess(process.Get(), &exit_code);
        if (exit_code == STILL_ACTIVE)
            TerminateProcess(process.Get(), 1);
        return is_correct && exit_code == 0 ? 0 : 1;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
