// Reads the windows and the record of the launcher.
#include "host/snapshot.h"

#include "base/text_convert.h"
#include "controls.h"
#include "demo/user/user.h"
#include "form/form_exchange.h"

namespace {

using namespace control;

constexpr WPARAM CELL_CHARACTERS = 512;

const char* YesOrNo(bool is_true) {
    return is_true ? "yes" : "no";
}

HWND ControlOf(const Launcher& launcher, UINT id) {
    return GetDlgItem(launcher.main_window, static_cast<int>(id));
}

std::string TextIn(HWND window) {
    return Utf8ForDisplay(GetControlText(window));
}

std::string CellText(HWND list, WPARAM row, int column) {
    WCHAR text[CELL_CHARACTERS]{};
    LVITEMW item{};
    item.iSubItem = column;
    item.pszText = text;
    item.cchTextMax = CELL_CHARACTERS;
    SendMessageW(list, LVM_GETITEMTEXTW, row, reinterpret_cast<LPARAM>(&item));
    return Utf8ForDisplay(text);
}

bool HasRow(HWND list, WPARAM row) {
    RECT place{};
    place.left = LVIR_BOUNDS;
    return SendMessageW(list, LVM_GETITEMRECT, row, reinterpret_cast<LPARAM>(&place)) != FALSE;
}

void AddModuleList(HWND list, Snapshot& snapshot) {
    for (WPARAM row = 0; HasRow(list, row); ++row)
        snapshot["rows"] += CellText(list, row, 0) + " : " + CellText(list, row, 1) + "\n";
    snapshot["selected row"] = std::to_string(
        SendMessageW(list, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), MAKELPARAM(LVNI_SELECTED, 0)));
}

void AddForm(const Launcher& launcher, Snapshot& snapshot) {
    for (const UINT id : {KERNEL, ARGUMENTS, PICTURE, RAM, TIME_LIMIT, WIDTH, HEIGHT, MODULE_ARGUMENTS,
                          DISK_0, DISK_1, DISK_2, DISK_3})
        snapshot[FieldName(id)] = TextIn(ControlOf(launcher, id));
    for (const UINT id : {WITHOUT_HEADER, OWN_SIZE, WITHOUT_WINDOWS})
        snapshot[FieldName(id)] =
            std::to_string(IsDlgButtonChecked(launcher.main_window, static_cast<int>(id)));
    snapshot[FieldName(ZOOM)] =
        std::to_string(SendMessageW(ControlOf(launcher, ZOOM), CB_GETCURSEL, 0, 0) + 1);
    for (const UINT id : {LAUNCH, VERIFY, WIDTH, HEIGHT, ZOOM, REMOVE, UP, DOWN, MODULE_ARGUMENTS})
        snapshot[EnabledName(id)] = YesOrNo(IsWindowEnabled(ControlOf(launcher, id)) != FALSE);
    AddModuleList(launcher.module_list, snapshot);
}

void AddRecord(const VmConfig& config, Snapshot& snapshot) {
    const std::pair<const char*, WideView> texts[] = {{"kernel", config.kernel},
                                                      {"command", config.command},
                                                      {"dump", config.dump},
                                                      {"ide_primary_master", config.ide[0]},
                                                      {"ide_primary_slave", config.ide[1]},
                                                      {"ide_secondary_master", config.ide[2]},
                                                      {"ide_secondary_slave", config.ide[3]}};
    const std::pair<const char*, std::uint32_t> numbers[] = {
        {"ram_mib", config.ram_mib},       {"width", config.width},
        {"height", config.height},         {"zoom", config.zoom},
        {"timeout_ms", config.timeout_ms}, {"explicit_video", config.explicit_video},
        {"headless", config.headless},     {"force_no_header", config.force_no_header}};
    for (const auto& [key, text] : texts)
        snapshot[key] = Utf8ForDisplay(text);
    for (const auto& [key, number] : numbers)
        snapshot[key] = NumberText(number);
    for (const ModuleEntry& module : config.modules)
        snapshot["modules"] += Utf8ForDisplay(module.path) + " : " + Utf8ForDisplay(module.command) + "\n";
}

std::string BoxName(HWND owner) {
    const HWND box = user::Box();
    if (box == nullptr)
        return {};
    if (GetWindow(box, GW_OWNER) != owner)
        return "a question of the file box";
    return user::FileNameField() != nullptr ? "a file box" : user::BoxText();
}

}  // namespace

std::string FieldName(UINT id) {
    return "field " + std::to_string(id);
}

std::string EnabledName(UINT id) {
    return "enabled " + std::to_string(id);
}

Snapshot TakeSnapshot(const Launcher& launcher) {
    Snapshot snapshot;
    snapshot["title"] = TextIn(launcher.main_window);
    snapshot["line"] = TextIn(launcher.path_label);
    snapshot["status"] = TextIn(launcher.status_label);
    snapshot["box"] = BoxName(launcher.main_window);
    snapshot["dirty"] = YesOrNo(launcher.dirty);
    snapshot["config_path"] = Utf8ForDisplay(launcher.config_path);
    snapshot["run_directory"] = Utf8ForDisplay(launcher.run_directory);
    snapshot["selected_module"] = std::to_string(launcher.selected_module);
    snapshot["engine runs"] = YesOrNo(launcher.engine_process != nullptr);
    snapshot["log_path"] = Utf8ForDisplay(launcher.log_path);
    if (launcher.log_window != nullptr) {
        snapshot["log"] = IsWindowVisible(launcher.log_window) != FALSE ? "visible" : "hidden";
        snapshot["log text"] = TextIn(GetDlgItem(launcher.log_window, 1));
    }
    AddForm(launcher, snapshot);
    AddRecord(launcher.config, snapshot);
    return snapshot;
}
