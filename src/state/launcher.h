// The state of the running program, except the data that the log window stores between two refreshes.
#pragma once

#include <cstdint>
#include <vector>

#include "config/vm_config.h"
#include "platform/win32.h"

// A control and the rectangle, in pixels, with which it was created. This rectangle never changes; the
// layout calculates each new place from it.
struct LayoutItem {
    HWND window = nullptr;
    std::int32_t x = 0;
    std::int32_t y = 0;
    std::int32_t width = 0;
    std::int32_t height = 0;
    bool stretch = false;
};

// There is one Launcher, from the entry point to the end of the program. The main window stores its
// address, so the Launcher is never copied or moved. The platform owns the windows and controls. The only
// handle to close is `engine_process`: PollEngine closes it when the engine has ended, or the handler of
// WM_DESTROY if the main window is destroyed before.
struct Launcher {
    Launcher() = default;
    Launcher(const Launcher&) = delete;
    Launcher& operator=(const Launcher&) = delete;

    HWND main_window = nullptr;
    HWND tab_control = nullptr;
    HWND module_list = nullptr;
    HWND path_label = nullptr;
    HWND status_label = nullptr;
    HWND log_window = nullptr;  // created on demand; use it only if IsWindow returns true
    HFONT gui_font = nullptr;   // a stock object, never freed
    HINSTANCE instance = nullptr;
    HANDLE engine_process = nullptr;    // process of the current run; null if there is none
    bool run_is_dry = false;            // the current or last run is a verification
    bool dirty = false;                 // the form has unsaved changes
    bool filling = false;               // the program itself is writing into the controls
    std::int32_t selected_module = -1;  // row selected in module_list, -1 for none
    VmConfig config;                    // set by a load, a save, a reset or a change of the module list
    WideText start_directory;           // current directory at start-up
    // The folder of `config_path`, or `start_directory` if `config_path` is empty. Working directory of
    // the engine, folder of the log, and base of relative paths.
    WideText run_directory;
    WideText config_path;  // full path of the current file; empty if there is none
    WideText engine_path;  // tessarun.exe in the launcher's folder
    WideText log_path;     // log of the last run; empty until a launch has passed its checks
    std::vector<HWND> disk_page_controls;
    std::vector<HWND> module_page_controls;
    std::vector<LayoutItem> layout_items;
};

// Sets `filling` during its lifetime. Do not nest: the end of the inner scope would clear `filling`.
class FillingScope {
public:
    explicit FillingScope(Launcher& launcher) : launcher_(launcher) {
        launcher_.filling = true;
    }
    ~FillingScope() {
        launcher_.filling = false;
    }
    FillingScope(const FillingScope&) = delete;
    FillingScope& operator=(const FillingScope&) = delete;

private:
    Launcher& launcher_;
};
