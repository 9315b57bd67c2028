// Windows that write down what they are told.
#include "probe_windows.h"

namespace {

ProbeWindows* current = nullptr;

struct MessageName {
    UINT message;
    std::string_view name;
};
// clang-format off
constexpr MessageName MESSAGE_NAMES[] = {
    {WM_ACTIVATE, "ACTIVATE"}, {WM_SETFOCUS, "SETFOCUS"}, {WM_KILLFOCUS, "KILLFOCUS"}, {WM_ENABLE, "ENABLE"},
    {WM_CREATE, "CREATE"}, {WM_DESTROY, "DESTROY"}, {WM_NCDESTROY, "NCDESTROY"}, {WM_CLOSE, "CLOSE"},
    {WM_WINDOWPOSCHANGED, "POSCHANGED"}, {WM_TIMER, "TIMER"}, {WM_COMMAND, "COMMAND"}, {WM_NEXTDLGCTL, "NEXTDLGCTL"},
    {WM_KEYDOWN, "KEYDOWN"}, {WM_CHAR, "CHAR"},
};
// clang-format on

// What of the parameters a test compares.
std::string Details(UINT message, WPARAM wparam) {
    switch (message) {
        case WM_COMMAND:
        case WM_TIMER:
        case WM_KEYDOWN:
        case WM_CHAR:
        case WM_ENABLE:
        case WM_ACTIVATE:
            return " " + std::to_string(wparam);
        default:
            return "";
    }
}

LRESULT CALLBACK ProbeProc(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    for (const MessageName& known : MESSAGE_NAMES) {
        if (known.message == message) {
            current->log.push_back(current->NameOf(window) + " " + std::string(known.name) +
                                   Details(message, wparam));
        }
    }
    LRESULT answer = 0;
    if (current->answers && current->answers(window, message, wparam, answer))
        return answer;
    return DefWindowProcW(window, message, wparam, lparam);
}

void SendKey(WORD key, WORD scan, DWORD flags) {
    INPUT input{};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = key;
    input.ki.wScan = scan;
    input.ki.dwFlags = flags;
    SendInput(1, &input, sizeof(INPUT));
}

}  // namespace

ProbeWindows::ProbeWindows(UINT class_style) {
    current = this;
    WNDCLASSW window_class{};
    window_class.style = class_style;
    window_class.lpfnWndProc = ProbeProc;
    window_class.cbWndExtra = 2 * sizeof(LONG_PTR);
    window_class.hbrBackground = reinterpret_cast<HBRUSH>(UINT_PTR{COLOR_BTNFACE + 1});
    window_class.lpszClassName = TEXT("VeldraneProbe");
    RegisterClassW(&window_class);
}

ProbeWindows::~ProbeWindows() {
    answers = nullptr;
    for (const auto& [window, name] : std::map<HWND, std::string>(names))
        if (IsWindow(window))
            DestroyWindow(window);
    UnregisterClassW(TEXT("VeldraneProbe"), nullptr);
}

HWND ProbeWindows::Make(const char* name, DWORD style, RECT place, HWND parent, int id,
                        DWORD extended_style) {
    names[nullptr] = name;
    const HWND window =
        CreateWindowExW(extended_style, TEXT("VeldraneProbe"), TEXT("probe"), style, place.left, place.top,
                        place.right - place.left, place.bottom - place.top, parent,
                        reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), nullptr, nullptr);
    names.erase(nullptr);
    if (window != nullptr)
        names[window] = name;
    return window;
}

HWND ProbeWindows::MakeMain(DWORD more_styles) {
    const HWND main = Make("main", WS_OVERLAPPEDWINDOW | more_styles, {100, 100, 700, 500});
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

// A window that is still being made has the name that stands for no window.
std::string ProbeWindows::NameOf(HWND window) const {
    const auto found = names.find(window);
    if (found != names.end())
        return found->second;
    const auto unmade = names.find(nullptr);
    return window != nullptr && unmade != names.end() ? unmade->second : "none";
}

bool PumpUntil(const std::function<bool()>& condition, HWND dialog) {
    const ULONGLONG start = GetTickCount64();
    while (!condition()) {
        MSG message{};
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            if (dialog == nullptr || !IsDialogMessageW(dialog, &message)) {
                TranslateMessage(&message);
                DispatchMessageW(&message);
            }
        }
        if (GetTickCount64() - start > 5000)
            return false;
        Sleep(1);
    }
    return true;
}

void PumpFor(unsigned ms, HWND dialog) {
    const ULONGLONG start = GetTickCount64();
    PumpUntil([&] { return GetTickCount64() - start >= ms; }, dialog);
}

void HoldKey(int key) {
    SendKey(static_cast<WORD>(key), 0, 0);
}

void ReleaseKey(int key) {
    SendKey(static_cast<WORD>(key), 0, KEYEVENTF_KEYUP);
}

void PressKey(int key) {
    HoldKey(key);
    ReleaseKey(key);
}

void TypeCharacter(WCHAR character) {
    SendKey(0, character, KEYEVENTF_UNICODE);
    SendKey(0, character, KEYEVENTF_UNICODE | KEYEVENTF_KEYUP);
}
