#include "form/module_list.h"

#include <new>
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
    AdoptConfig(launcher, {std::move(config), launcher.config_path, launcher.run_directory, true},
                ReadContent(launcher));
}

// Returns the module of the selected row, or null. After a failed load, the list view can have more rows
// than the record has modules.
ModuleEntry* SelectedModule(Launcher& launcher) {
    const auto index = static_cast<std::size_t>(launcher.selected_module);
    if (launcher.selected_module < 0 || index >= launcher.config.modules.size())
        return nullptr;
    return &launcher.config.modules[index];
}

HWND ArgumentsField(const Launcher& launcher) {
    return GetDlgItem(launcher.main_window, IDC_MODULE_ARGS);
}

// Called when the arguments field refuses the arguments of the selected module. The field then still shows
// the arguments of another module, and an edit would store these in the selected module.
void SelectNothing(Launcher& launcher) {
    const FillingScope filling(launcher);
    LVITEMW item{};
    item.stateMask = LVIS_SELECTED;
    if (launcher.selected_module >= 0)  // the index -1 would mean all rows
        SendMessageW(launcher.module_list, LVM_SETITEMSTATE, static_cast<WPARAM>(launcher.selected_module),
                     reinterpret_cast<LPARAM>(&item));
    launcher.selected_module = -1;
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
    if (SelectedModule(launcher) == nullptr)
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
    ModuleEntry* module = SelectedModule(launcher);
    if (launcher.filling || module == nullptr)
        return;
    WideText arguments = GetControlText(ArgumentsField(launcher));
    SetModuleRowArguments(launcher.module_list, static_cast<std::size_t>(launcher.selected_module),
                          arguments);
    module->command = std::move(arguments);
    launcher.dirty = true;
    RefreshTitle(launcher);
}

void OnModuleSelectionChanged(Launcher& launcher) {
    launcher.selected_module = static_cast<std::int32_t>(SendMessageW(
        launcher.module_list, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), MAKELPARAM(LVNI_SELECTED, 0)));
    const ModuleEntry* module = SelectedModule(launcher);
    const WideText none;
    try {
        const FillingScope filling(launcher);
        SetControlText(ArgumentsField(launcher), module == nullptr ? none : module->command);
    } catch (const std::bad_alloc&) {
        SelectNothing(launcher);
        RefreshEnabling(launcher);
        throw;
    }
    RefreshEnabling(launcher);
}
