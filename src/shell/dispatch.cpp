#include "shell/dispatch.h"

#include <exception>

#include "form/file_picker.h"
#include "form/form.h"
#include "form/form_ids.h"
#include "form/form_layout.h"
#include "form/module_list.h"
#include "form/title.h"
#include "launch/engine_run.h"
#include "launch/log_window.h"
#include "shell/command_decision.h"
#include "shell/config_commands.h"
#include "shell/show_error.h"

namespace {

void EndProgram(Launcher& launcher) {
    KillTimer(launcher.main_window, TICK_TIMER_ID);
    if (launcher.engine_process != nullptr) {
        CloseHandle(launcher.engine_process);
        launcher.engine_process = nullptr;
    }
    PostQuitMessage(0);
}

void MarkEdited(Launcher& launcher) {
    launcher.dirty = true;
    RefreshTitle(launcher);
}

void HandleCommand(Launcher& launcher, UINT code, UINT id) {
    switch (DecideCommand(launcher.filling, code, id)) {
        case Command::None:
            return;
        case Command::MarkEdited:
            return MarkEdited(launcher);
        case Command::MarkEditedAndEnable:
            RefreshEnabling(launcher);
            return MarkEdited(launcher);
        case Command::ModuleArgsChanged:
            return OnModuleArgsChanged(launcher);
        case Command::Load:
            return OnLoadCommand(launcher);
        case Command::Save:
            SaveConfiguration(launcher, false);
            return;
        case Command::SaveAs:
            SaveConfiguration(launcher, true);
            return;
        case Command::Reset:
            return ResetConfiguration(launcher);
        case Command::Launch:
            return LaunchEngine(launcher, false);
        case Command::Verify:
            return LaunchEngine(launcher, true);
        case Command::ShowLog:
            return ShowLogWindow(launcher);
        case Command::Browse:
            return BrowseForField(launcher, id);
        case Command::AddModule:
            return AddModule(launcher);
        case Command::RemoveModule:
            return RemoveModule(launcher);
        case Command::MoveModuleUp:
            return MoveModule(launcher, -1);
        case Command::MoveModuleDown:
            return MoveModule(launcher, +1);
    }
}

bool SelectionMoved(const NMLISTVIEW& change) {
    return (change.uChanged & LVIF_STATE) != 0 &&
           ((change.uOldState ^ change.uNewState) & LVIS_SELECTED) != 0;
}

void HandleNotify(Launcher& launcher, LPARAM lparam) {
    const auto& header = *reinterpret_cast<const NMHDR*>(lparam);
    if (header.idFrom == IDC_PAGE_TABS && header.code == static_cast<UINT>(TCN_SELCHANGE))
        ShowTabPage(launcher);
    if (header.idFrom == IDC_MODULE_LIST && header.code == static_cast<UINT>(LVN_ITEMCHANGED) &&
        SelectionMoved(*reinterpret_cast<const NMLISTVIEW*>(lparam)) && !launcher.filling)
        OnModuleSelectionChanged(launcher);
}

void LimitWindowSize(LPARAM lparam) {
    const SIZE smallest = BaseWindowSize();
    reinterpret_cast<MINMAXINFO*>(lparam)->ptMinTrackSize = {smallest.cx, smallest.cy};
}

}  // namespace

LRESULT CALLBACK LauncherWindowProc(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    auto* launcher = reinterpret_cast<Launcher*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (message == WM_NCCREATE) {
        launcher = static_cast<Launcher*>(reinterpret_cast<const CREATESTRUCTW*>(lparam)->lpCreateParams);
        launcher->main_window = window;
        SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(launcher));
    }
    if (launcher == nullptr)
        return DefWindowProcW(window, message, wparam, lparam);
    try {
        return HandleMainMessage(*launcher, message, wparam, lparam);
    } catch (const std::exception& error) {
        ShowError(*launcher, error);
        return message == WM_CREATE ? -1 : 0;
    }
}

LRESULT HandleMainMessage(Launcher& launcher, UINT message, WPARAM wparam, LPARAM lparam) {
    switch (message) {
        case WM_CREATE:
            BuildForm(launcher);
            return 0;
        case WM_DESTROY:
            EndProgram(launcher);
            return 0;
        case WM_SIZE:
            LayoutForm(launcher);
            return 0;
        case WM_CLOSE:
            if (ConfirmDiscard(launcher))
                DestroyWindow(launcher.main_window);
            return 0;
        case WM_GETMINMAXINFO:
            LimitWindowSize(lparam);
            return 0;
        case WM_NOTIFY:
            HandleNotify(launcher, lparam);
            return 0;
        case WM_COMMAND:
            HandleCommand(launcher, HIWORD(wparam), LOWORD(wparam));
            return 0;
        case WM_TIMER:
            PollEngine(launcher);
            RefreshLogWindow(launcher);
            return 0;
        case DM_GETDEFID:
            // The Enter key in an edit field presses this button.
            return MAKELRESULT(IDC_LAUNCH, DC_HASDEFID);
        default:
            return DefWindowProcW(launcher.main_window, message, wparam, lparam);
    }
}
