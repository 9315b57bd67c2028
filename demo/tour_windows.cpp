// The demonstration on Windows: starts veldranevm.exe from the current directory and acts as its user from
// this process, with real mouse and keyboard input. With the argument `images` it says on standard output, in
// a line that starts with @, when a picture can be taken and of which part of the screen, and waits until a
// file says that it has been. With `machine` behind that the demonstration is that of a real machine.
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

constexpr DWORD SETTLE_MS = 30;  // between two actions of a user; input is handled in its order

constexpr unsigned PAINT_MS = 400;
constexpr ULONGLONG ANSWER_LIMIT_MS = 60000;

HANDLE launcher_process = nullptr;
std::atomic<ULONGLONG> last_action_ms = 0;
bool pictures_wanted = false;

OwnedHandle StartLauncher(const WideText& folder) {
    const WideText program = JoinPath(folder, TEXT("veldranevm.exe"));
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags =
        STARTF_USEPOSITION;  // boxes come up in the middle of the screen: about that of the window
    startup.dwX = (static_cast<DWORD>(GetSystemMetrics(SM_CXSCREEN)) - BASE_CLIENT_WIDTH) / 2;
    startup.dwY = (static_cast<DWORD>(GetSystemMetrics(SM_CYSCREEN)) - BASE_CLIENT_HEIGHT) / 2;
    PROCESS_INFORMATION process{};
    if (CreateProcessW(program.c_str(), nullptr, nullptr, nullptr, FALSE, 0, nullptr, folder.c_str(),
                       &startup, &process) == FALSE)
        throw std::runtime_error("veldranevm.exe cannot be started");
    CloseHandle(process.hThread);
    return OwnedHandle(process.hProcess);
}

// A message to a launcher that hangs does not return: the demonstration ends without a last word.
void EndWhenNothingHappens() {
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

void Do(const std::function<void()>& action) {
    last_action_ms = GetTickCount64();
    action();
    Sleep(SETTLE_MS / 3);
}

bool WaitUntil(const std::function<bool()>& condition, unsigned limit_ms) {
    const auto limit = std::chrono::steady_clock::now() + std::chrono::milliseconds(limit_ms);
    while (!condition()) {
        last_action_ms = GetTickCount64();
        if (WaitForSingleObject(launcher_process, 0) == WAIT_OBJECT_0)
            throw std::runtime_error("veldranevm.exe has ended");
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

void ShowPicture(HWND window, const std::string& name, const std::string& caption) {
    if (!pictures_wanted)
        return;
    user::Pause(PAINT_MS);
    RECT place{};
    GetWindowRect(window, &place);
    std::printf("@%s %ldx%ld+%ld+%ld %s\n", name.c_str(), place.right - place.left, place.bottom - place.top,
                place.left, place.top, caption.c_str());
    std::fflush(stdout);
    const WideText done = WideFromUtf8(name + ".fait");
    if (!user::WaitUntil([&] { return QueryFileType(done, "status") == FileType::Regular; }))
        throw std::runtime_error("nobody takes the picture " + name);
}

int main(int count, char** arguments) {
    try {
        pictures_wanted = count >= 2 && std::string_view(arguments[1]) == "images";
        const WideText folder = CurrentDirectory();
        const OwnedHandle process = StartLauncher(folder);
        launcher_process = process.Get();
        last_action_ms = GetTickCount64();
        std::thread(EndWhenNothingHappens).detach();
        const bool is_machine = count == 3 && std::string_view(arguments[2]) == "machine";
        const bool right = is_machine ? MachineTour(folder) : Tour(folder);
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
