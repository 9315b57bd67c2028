#include "form/title.h"

#include "form/enabling.h"
#include "form/form_ids.h"
#include "form/title_text.h"

void RefreshTitle(Launcher& launcher) {
    SetWindowTextW(launcher.main_window, TitleText(launcher.dirty));
    SetWindowTextW(launcher.path_label, ConfigLineText(launcher.config_path, launcher.dirty).c_str());
}

void RefreshEnabling(Launcher& launcher) {
    const HWND window = launcher.main_window;
    const Enabling enabling = EnablingOf({
        .explicit_video = IsDlgButtonChecked(window, IDC_EXPLICIT_VIDEO) == BST_CHECKED,
        .headless = IsDlgButtonChecked(window, IDC_HEADLESS) == BST_CHECKED,
        .selected_module = launcher.selected_module,
        .module_count = launcher.config.modules.size(),
        .engine_runs = launcher.engine_process != nullptr,
    });
    const struct {
        UINT id;
        bool enabled;
    } controls[] = {
        {IDC_WIDTH, enabling.size_fields},
        {IDC_HEIGHT, enabling.size_fields},
        {IDC_ZOOM, enabling.zoom},
        {IDC_MODULE_ARGS, enabling.module_args_and_remove},
        {IDC_MODULE_REMOVE, enabling.module_args_and_remove},
        {IDC_MODULE_UP, enabling.module_up},
        {IDC_MODULE_DOWN, enabling.module_down},
        {IDC_LAUNCH, enabling.launch_and_verify},
        {IDC_VERIFY, enabling.launch_and_verify},
    };
    for (const auto& control : controls)
        EnableWindow(GetDlgItem(window, static_cast<int>(control.id)), control.enabled ? TRUE : FALSE);
}
