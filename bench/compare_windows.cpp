// Measures the Windows build: a tick on an unchanged log, the start beside a bare program with the same
// controls, the size of the executable. Writes into the current folder.
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

#include "base/owned_handle.h"
#include "base/path_ops.h"
#include "launch/log_window.h"
#include "shell/dispatch.h"
#include "spread.h"

namespace {

constexpr int TICKS = 101;
constexpr int STARTS = 41;
constexpr UINT TICK_PERIOD_MS = 250;
constexpr double WATCHED_MS = 20000;
constexpr double START_LIMIT_MS = 30000;

[[noreturn]] void Fail(const char* what) {
    std::fprintf(stderr, "compare: %s\n", what);
    std::exit(1);
}

double NowMs() {
    LARGE_INTEGER count{};
    LARGE_INTEGER per_second{};
    QueryPerformanceCounter(&count);
    QueryPerformanceFrequency(&per_second);
    return 1e3 * static_cast<double>(count.QuadPart) / static_cast<double>(per_second.QuadPart);
}

WideText BesideThis(WideView name) {
    std::vector<WCHAR> path(32768);
    const DWORD length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    return JoinPath(ParentPath(WideView(path.data(), length)), name);
}

// --- the tick ---

Launcher& TheLauncher() {
    static Launcher launcher;
    return launcher;
}

void ShowLog() {
    constexpr std::string_view LINE = "un noyau qui parle\n";
    std::ofstream file("veldranevm.log", std::ios::binary);
    for (std::size_t size = 0; size + LINE.size() <= LOG_TAIL_LIMIT; size += LINE.size())
        file << LINE;
    file.close();
    WNDCLASSW window_class{};
    window_class.lpfnWndProc = LogWindowProc;
    window_class.lpszClassName = LOG_WINDOW_CLASS;
    RegisterClassW(&window_class);
    TheLauncher().log_path = TEXT("veldranevm.log");
    ShowLogWindow(TheLauncher());
    if (GetWindowTextLengthW(GetWindow(TheLauncher().log_window, GW_CHILD)) < 1000000)
        Fail("the log is not shown");
}

void CALLBACK Tick(HWND, UINT, UINT_PTR, DWORD) {
    RefreshLogWindow(TheLauncher());
}

// Runs a timer and a message loop as the program does.
void RunTimer(double milliseconds) {
    const UINT_PTR timer = SetTimer(nullptr, 0, TICK_PERIOD_MS, Tick);
    const double end = NowMs() + milliseconds;
    for (MSG message{}; NowMs() < end && GetMessageW(&message, nullptr, 0, 0) > 0;)
        DispatchMessageW(&message);
    KillTimer(nullptr, timer);
}

double Milliseconds(const FILETIME& time) {
    return (4294967296.0 * time.dwHighDateTime + time.dwLowDateTime) / 1e4;
}

// The processor time of this process.
double UsedMs() {
    FILETIME created{}, ended{}, kernel{}, user{};
    GetProcessTimes(GetCurrentProcess(), &created, &ended, &kernel, &user);
    return Milliseconds(kernel) + Milliseconds(user);
}

void PrintTick(const char* state) {
    RunTimer(1000);  // until all is painted and the log was read twice
    std::vector<double> times;
    for (int tick = 0; tick < TICKS; ++tick) {
        const double start = NowMs();
        RefreshLogWindow(TheLauncher());
        times.push_back(NowMs() - start);
    }
    std::printf("| tick on an unchanged log of 1 MiB, %s | - | %.2f ms | %.2f to %.2f |\n", state,
                Quantile(times, 0.5), Quantile(times, 0.1), Quantile(times, 0.9));
    const double used = UsedMs();
    const double start = NowMs();
    RunTimer(WATCHED_MS);
    std::printf("| its processor time every %u ms | - | %.2f %% of a core | |\n", TICK_PERIOD_MS,
                100 * (UsedMs() - used) / (NowMs() - start));
}

// --- the start ---

BOOL CALLBACK StopAtUnpainted(HWND window, LPARAM is_painted) {
    if (IsWindowVisible(window) == FALSE || GetUpdateRect(window, nullptr, FALSE) == FALSE)
        return TRUE;
    *reinterpret_cast<bool*>(is_painted) = false;
    return FALSE;
}

// True if the window is visible and no part of it waits to be painted. Works from another process.
bool IsFullyPainted(HWND window) {
    bool is_painted = window != nullptr && IsWindowVisible(window) != FALSE;
    if (is_painted)
        StopAtUnpainted(window, reinterpret_cast<LPARAM>(&is_painted));
    if (is_painted)
        EnumChildWindows(window, StopAtUnpainted, reinterpret_cast<LPARAM>(&is_painted));
    return is_painted;
}

double StartMs(const WCHAR* name, const WCHAR* window_class) {
    WideText command = TEXT('"') + BesideThis(name) + TEXT('"');
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    const double start = NowMs();
    if (CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                       &process) == FALSE)
        Fail("a program does not start");
    const OwnedHandle thread(process.hThread);
    const OwnedHandle started(process.hProcess);
    HWND window = nullptr;
    while (!IsFullyPainted(window = FindWindowW(window_class, nullptr))) {
        if (NowMs() - start > START_LIMIT_MS)
            Fail("a window does not come");
        Sleep(1);
    }
    SendMessageW(window, WM_NULL, 0, 0);  // it answers when its last painting is done
    const double needed = NowMs() - start;
    PostMessageW(window, WM_CLOSE, 0, 0);
    WaitForSingleObject(process.hProcess, INFINITE);
    return needed;
}

void PrintStart() {
    const auto ours = [] { return StartMs(TEXT("veldranevm.exe"), MAIN_WINDOW_CLASS); };
    const auto theirs = [] { return StartMs(TEXT("bare_form.exe"), TEXT("BareForm")); };
    std::vector<double> our_times, their_times, ratios;
    ours();
    theirs();
    for (int round = 0; round < STARTS; ++round) {
        their_times.push_back(theirs());
        our_times.push_back(ours());
        ratios.push_back(our_times.back() / their_times.back());
    }
    std::printf("| start to fully painted, %.0f ms | the same 56 controls, %.0f ms | %.2f | %.2f to %.2f |\n",
                Quantile(our_times, 0.5), Quantile(their_times, 0.5),
                Quantile(our_times, 0.5) / Quantile(their_times, 0.5), Quantile(ratios, 0.1),
                Quantile(ratios, 0.9));
}

void PrintSize() {
    WIN32_FILE_ATTRIBUTE_DATA data{};
    if (GetFileAttributesExW(BesideThis(TEXT("veldranevm.exe")).c_str(), GetFileExInfoStandard, &data) ==
        FALSE)
        Fail("there is no executable");
    std::printf("| executable | - | %lu bytes | |\n", data.nFileSizeLow);
}

}  // namespace

int wmain() {
    std::puts("| on the Windows build | beside | figure | 10 % to 90 % |\n|---|---|---|---|");
    ShowLog();
    PrintTick("shown");
    ShowWindow(TheLauncher().log_window, SW_HIDE);
    PrintTick("hidden");
    DestroyWindow(TheLauncher().log_window);
    PrintStart();
    PrintSize();
    return 0;
}
