// Windows that log the messages they receive.
#include "probe_windows.h"

namespace {

ProbeWindows* current = nullptr;

struct LoggedMessage {
    UINT message;
    const char* name;
    bool has_wparam;
};
constexpr LoggedMessage LOGGED_MESSAGES[] = {
    {WM_ACTIVATE, "ACTIVATE", true},
    {WM_SETFOCUS, "SETFOCUS", false},
    {WM_KILLFOCUS, "KILLFOCUS", false},
    {WM_ENABLE, "ENABLE", true},
    {WM_WINDOWPOSCHANGED, "POSCHANGED", false},
};

LRESULT CALLBACK ProbeProc(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    for (const LoggedMessage& logged : LOGGED_MESSAGES) {
        if (logged.message != message || !current->names.contains(window))
            continue;
        current->log.push_back(current->names.at(window) + " " + logged.name +
                               (logged.has_wparam ? " " + std::to_string(wparam) : ""));
    }
    return DefWindowProcW(window, message, wparam, lparam);
}

void SendKey(int key, DWORD flags) {
    INPUT input{};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = static_cast<WORD>(key);
    input.ki.dwFlags = flags;
    SendInput(1, &input, sizeof(INPUT));
}

}  // namespace

ProbeWindows::ProbeWindows() {
    current = this;
    WNDCLASSW window_class{};
    window_class.lpfnWndProc = ProbeProc;
    window_class.hbrBackground = reinterpret_cast<HBRUSH>(UINT_PTR{COLOR_BTNFACE + 1});
    window_class.lpszClassName = TEXT("VeldraneProbe");
    RegisterClassW(&window_class);
}

ProbeWindows::~ProbeWindows() {
    for (const auto& [window, name] : names)
        if (IsWindow(window))
            DestroyWindow(window);
    UnregisterClassW(TEXT("VeldraneProbe"), nullptr);
}

HWND ProbeWindows::Make(const char* name, DWORD style, RECT place, HWND parent) {
    const HWND window = CreateWindowExW(0, TEXT("VeldraneProbe"), TEXT("probe"), style, place.left, place.top,
                                        place.right - place.left, place.bottom - place.top, parent, nullptr,
                                        nullptr, nullptr);
    names[window] = name;
    return window;
}

HWND ProbeWindows::MakeMain() {
    const HWND main = Make("main", WS_OVERLAPPEDWINDOW, {100, 100, 700, 500});
    ShowWindow(main, SW_SHOW);
    SetForegroundWindow(main);
    PumpFor(200);
    log.clear();
    return main;
}

std::string ProbeWindows::Take(std::string_view messages) {
    const std::string wanted = " " + std::string(messages) + " ";
    std::string taken;
    for (const std::string& line : log) {
        const std::size_t start = line.find(' ') + 1;
        const std::string message = line.substr(start, line.find(' ', start) - start);
        if (wanted.find(" " + message + " ") != std::string::npos)
            taken += (taken.empty() ? "" : ", ") + line;
    }
    log.clear();
    return taken;
}

void PumpFor(unsigned ms) {
    for (const ULONGLONG start = GetTickCount64(); GetTickCount64() - start < ms; Sleep(1)) {
        MSG message{};
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
    }
}

void HoldKey(int key) {
    SendKey(key, 0);
}

void ReleaseKey(int key) {
    SendKey(key, KEYEVENTF_KEYUP);
}

void PressKey(int key) {
    HoldKey(key);
    ReleaseKey(key);
}
