#include "form/module_list.h"

#include <optional>
#include <stdexcept>
#include <utility>

#include "form/file_picker.h"
#include "form/form_exchange.h"
#include "form/form_ids.h"
#include "form/module_edit.h"
#include "form/title.h"

namespace {

void AdoptEditedList(Launcher& launcher, VmConfig config) {
    launcher.config = std::move(config);
    launcher.dirty = true;
    FillForm(launcher);
}

ModuleEntry& SelectedModule(Launcher& launcher) {
    return launcher.config.modules[static_cast<std::size_t>(launcher.selected_module)];
}

}  // namespace

void AddModule(Launcher& launcher) {
    const WideText path = PickFile(launcher, false, FILTER_ANY, nullptr, {});
    if (path.empty())
        return;
    if (launcher.config.modules.size() >= MAX_MODULES)
        throw std::runtime_error("Maximum : 128 modules.");
    VmConfig config = ReadForm(launcher);
    AppendModule(config, path);
    AdoptEditedList(launcher, std::move(config));
    SelectModuleRow(launcher, static_cast<std::int32_t>(launcher.config.modules.size()) - 1);
}

void RemoveModule(Launcher& launcher) {
    if (launcher.selected_module < 0)
        return;
    VmConfig config = ReadForm(launcher);
    EraseModule(config, launcher.selected_module);
    AdoptEditedList(launcher, std::move(config));
}

void MoveModule(Launcher& launcher, std::int32_t delta) {
    const std::optional<std::int32_t> target = MoveTarget(launcher.config, launcher.selected_module, delta);
    if (!target)
        return;
    VmConfig config = ReadForm(launcher);
    SwapModules(config, launcher.selected_module, *target);
    AdoptEditedList(launcher, std::move(config));
    SelectModuleRow(launcher, *target);
}

void OnModuleArgsChanged(Launcher& launcher) {
    if (launcher.filling || launcher.selected_module < 0)
        return;
    ModuleEntry& module = SelectedModule(launcher);
    module.command = GetControlText(GetDlgItem(launcher.main_window, IDC_MODULE_ARGS));
    SetModuleRowArguments(launcher.module_list, static_cast<std::size_t>(launcher.selected_module),
                          module.command);
    launcher.dirty = true;
    RefreshTitle(launcher);
}

void OnModuleSelectionChanged(Launcher& launcher) {
    launcher.selected_module = static_cast<std::int32_t>(SendMessageW(
        launcher.module_list, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), MAKELPARAM(LVNI_SELECTED, 0)));
    {
        const FillingScope filling(launcher);
        SetDlgItemTextW(launcher.main_window, IDC_MODULE_ARGS,
                        launcher.selected_module < 0 ? TEXT("") : SelectedModule(launcher).command.c_str());
    }
    RefreshEnabling(launcher);
}
