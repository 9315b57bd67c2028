#include "shell/run_launcher.h"

#include <exception>
#include <stdexcept>
#include <vector>

#include "base/file_system.h"
#include "base/path_ops.h"
#include "form/form_exchange.h"
#include "form/form_layout.h"
#include "form/title_text.h"
#include "launch/log_window.h"
#include "shell/config_commands.h"
#include "shell/dispatch.h"
#include "shell/focus_keeper.h"
#include "shell/show_error.h"

namespace {

constexpr UINT TICK_PERIOD_MS = 250;

WideText EnginePath() {
    constexpr DWORD capacity = 32768;
    std::vector<WCHAR> buffer(capacity);
    const DWORD length = GetModuleFileNameW(nullptr, buffer.data(), capacity);
    if (length == 0 || length >= capacity)
        throw std::runtime_error("Chemin du lanceur introuvable.");
    return JoinPath(ParentPath(WideView(buffer.data(), length)), TEXT("tessarun.exe"));
}

void InitControls() {
    INITCOMMONCONTROLSEX controls{};
    controls.dwSize = sizeof controls;
    controls.dwICC = ICC_LISTVIEW_CLASSES | ICC_TAB_CLASSES;
    if (InitCommonControlsEx(&controls) == FALSE)
        throw std::runtime_error("Contrôles Win32 indisponibles.");
}

void RegisterClasses(HINSTANCE instance) {
    WNDCLASSW window_class{};
    window_class.lpfnWndProc = LauncherWindowProc;
    window_class.hInstance = instance;
    window_class.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    window_class.hbrBackground = reinterpret_cast<HBRUSH>(UINT_PTR{COLOR_BTNFACE + 1});
    window_class.lpszClassName = MAIN_WINDOW_CLASS;
    if (RegisterClassW(&window_class) == 0)
        throw std::runtime_error("Enregistrement de la fenêtre impossible.");
    window_class.lpfnWndProc = LogWindowProc;
    window_class.lpszClassName = LOG_WINDOW_CLASS;
    if (RegisterClassW(&window_class) == 0)
        throw std::runtime_error("Enregistrement du journal impossible.");
}

void CreateMainWindow(Launcher& launcher) {
    const SIZE size = BaseWindowSize();
    launcher.main_window =
        CreateWindowExW(0, MAIN_WINDOW_CLASS, TitleText(false), MAIN_WINDOW_STYLE, CW_USEDEFAULT,
                        CW_USEDEFAULT, size.cx, size.cy, nullptr, nullptr, launcher.instance, &launcher);
    if (launcher.main_window == nullptr)
        throw std::runtime_error("Création du lanceur impossible.");
}

// Loads the default file if it exists. If loading fails, shows the reason to the user and returns. Throws
// when the platform cannot report whether the file exists.
void LoadDefaultFile(Launcher& launcher) {
    const WideText path = JoinPath(launcher.start_directory, DEFAULT_CONFIG_NAME);
    if (QueryFileType(path, "exists") == FileType::Missing)
        return;
    try {
        LoadConfiguration(launcher, path);
    } catch (const std::exception& error) {
        ShowError(launcher, error);
    }
}

int PumpMessages(const Launcher& launcher) {
    MSG message{};
    HWND last_control = nullptr;
    BOOL result = FALSE;
    while ((result = GetMessageW(&message, nullptr, 0, 0)) > 0) {
        KeepFocus(launcher.main_window, last_control, message);
        if (HandleLogKeys(launcher, message) || IsDialogMessageW(launcher.main_window, &message) != FALSE)
            continue;
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    if (result < 0)
        throw std::runtime_error("Boucle de messages interrompue.");
    return static_cast<int>(message.wParam);
}

// Windows sends WM_DESTROY after a failed WM_CREATE, and EndProgram then posts WM_QUIT. A message box that
// finds WM_QUIT in the queue closes before the user sees it.
void RemoveQuitMessage() {
    MSG quit{};
    PeekMessageW(&quit, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE);
}

int StartAndPump(Launcher& launcher, HINSTANCE instance, int show_command) {
    launcher.instance = instance;
    launcher.run_directory = CurrentDirectory();
    launcher.start_directory = launcher.run_directory;
    launcher.engine_path = EnginePath();
    InitControls();
    RegisterClasses(instance);
    CreateMainWindow(launcher);
    FillForm(launcher);
    LoadDefaultFile(launcher);
    if (SetTimer(launcher.main_window, TICK_TIMER_ID, TICK_PERIOD_MS, nullptr) == 0)
        throw std::runtime_error("Initialisation du suivi VM impossible.");
    ShowWindow(launcher.main_window, show_command);
    UpdateWindow(launcher.main_window);
    return PumpMessages(launcher);
}

}  // namespace

int RunLauncher(Launcher& launcher, HINSTANCE instance, int show_command) {
    try {
        return StartAndPump(launcher, instance, show_command);
    } catch (const std::exception& error) {
        RemoveQuitMessage();
        ShowErrorBox(launcher.main_window, error);
        return 1;
    }
}
