// The whole state of the running program in one record, and the small types that it holds.
#pragma once

#include <cstdint>
#include <vector>

#include "config/vm_config.h"
#include "platform/win32.h"

// One control as it was made: the layout places it anew from this rectangle, which never changes.
struct LayoutItem {
    HWND window = nullptr;
    std::int32_t x = 0;
    std::int32_t y = 0;
    std::int32_t width = 0;
    std::int32_t height = 0;
    bool stretch = false;
};

// Exactly one exists, from the entry point to the end. The main window holds its address, so it is never
// copied or moved. Windows and controls belong to the platform; `engine_process` is the one handle that must
// be closed, by whoever sees the end of the run or of the main window.
struct Launcher {
    Launcher() = default;
    Launcher(const Launcher&) = delete;
    Launcher& operator=(const Launcher&) = delete;

    HWND main_window = nullptr;
    HWND tab_control = nullptr;
    HWND module_list = nullptr;
    HWND path_label = nullptr;
    HWND status_label = nullptr;
    HWND log_window = nullptr;  // made on demand, never cleared: ask IsWindow
    HFONT gui_font = nullptr;   // a stock object
    HINSTANCE instance = nullptr;
    HANDLE engine_process = nullptr;    // null: no engine is followed
    bool run_is_dry = false;            // the run in progress, or the last one, is a verification
    bool dirty = false;                 // the form holds changes that no file holds
    bool filling = false;               // the program itself is writing into the controls
    std::int32_t selected_module = -1;  // row selected in module_list, -1 for none
    VmConfig config;                    // of the last load, save, reset or module list edit
    WideText start_directory;           // current directory at start-up
    WideText
        run_directory;  // folder of config_path, or start_directory: the engine's, the log's, base of paths
    WideText config_path;  // full path of the current file; empty: none yet
    WideText engine_path;  // tessarun.exe beside the launcher
    WideText log_path;     // log of the last run; empty until one has passed its checks
    std::vector<HWND> disk_page_controls;
    std::vector<HWND> module_page_controls;
    std::vector<LayoutItem> layout_items;
};

// While one stands, the program itself is writing into the controls. It does not nest.
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
