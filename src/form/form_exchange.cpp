#include "form/form_exchange.h"

#include <array>
#include <new>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>

#include "base/file_system.h"
#include "base/path_ops.h"
#include "base/text_convert.h"
#include "form/form_ids.h"
#include "form/title.h"

namespace {

struct TextField {
    UINT id;
    TextMember field;
};
struct NumberField {
    UINT id;
    NumberMember field;
    std::uint32_t lowest;
    std::uint32_t highest;
    const char* label;
};
struct CheckBox {
    UINT id;
    FlagMember field;
};

// The fields are read and filled in the order of the tables and of the rows in each table.
constexpr std::array<TextField, 3> TEXT_FIELDS{{{IDC_KERNEL_PATH, &VmConfig::kernel},
                                                {IDC_KERNEL_COMMAND, &VmConfig::command},
                                                {IDC_DUMP_PATH, &VmConfig::dump}}};
constexpr std::array<NumberField, 4> NUMBER_FIELDS{{
    {IDC_RAM_MIB, &VmConfig::ram_mib, RAM_MIB_MIN, RAM_MIB_MAX, "RAM (16..2048 Mio)"},
    {IDC_TIMEOUT_MS, &VmConfig::timeout_ms, 0, TIMEOUT_MS_MAX, "délai (0..3600000 ms)"},
    {IDC_WIDTH, &VmConfig::width, SIZE_PIXELS_MIN, SIZE_PIXELS_MAX, "largeur (1..8192)"},
    {IDC_HEIGHT, &VmConfig::height, SIZE_PIXELS_MIN, SIZE_PIXELS_MAX, "hauteur (1..8192)"},
}};
constexpr std::array<CheckBox, 3> CHECK_BOXES{{{IDC_EXPLICIT_VIDEO, &VmConfig::explicit_video},
                                               {IDC_HEADLESS, &VmConfig::headless},
                                               {IDC_FORCE_NO_HEADER, &VmConfig::force_no_header}}};
constexpr std::array IDE_FIELDS{IDC_IDE_PRIMARY_MASTER, IDC_IDE_PRIMARY_SLAVE, IDC_IDE_SECONDARY_MASTER,
                                IDC_IDE_SECONDARY_SLAVE};

HWND Field(const Launcher& launcher, UINT id) {
    return GetDlgItem(launcher.main_window, static_cast<int>(id));
}

void SetField(const Launcher& launcher, UINT id, const WideText& text) {
    SetControlText(Field(launcher, id), text);
}

void SetCheck(const Launcher& launcher, UINT id, bool checked) {
    CheckDlgButton(launcher.main_window, static_cast<int>(id), checked ? BST_CHECKED : BST_UNCHECKED);
}

bool IsChecked(const Launcher& launcher, UINT id) {
    return IsDlgButtonChecked(launcher.main_window, static_cast<int>(id)) == BST_CHECKED;
}

void FillFields(const Launcher& launcher, const VmConfig& config) {
    for (const TextField& row : TEXT_FIELDS)
        SetField(launcher, row.id, config.*row.field);
    for (const NumberField& row : NUMBER_FIELDS)
        SetField(launcher, row.id, WideNumberText(config.*row.field));
    RequireAccepted(SendMessageW(Field(launcher, IDC_ZOOM), CB_SETCURSEL, config.zoom - 1, 0) != CB_ERR);
    for (const CheckBox& row : CHECK_BOXES)
        SetCheck(launcher, row.id, config.*row.field);
    for (std::size_t slot = 0; slot < IDE_FIELDS.size(); ++slot)
        SetField(launcher, IDE_FIELDS[slot], config.ide[slot]);
}

void InsertModuleRow(HWND list, std::size_t index, const ModuleEntry& module) {
    LVITEMW item{};
    item.mask = LVIF_TEXT;
    item.iItem = static_cast<int>(index);
    item.pszText = const_cast<WCHAR*>(module.path.c_str());
    RequireAccepted(SendMessageW(list, LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item)) == item.iItem);
    SetModuleRowArguments(list, index, module.command);
}

void Swap(Launcher& launcher, CurrentConfig& other) noexcept {
    std::swap(launcher.config, other.config);
    launcher.config_path.swap(other.config_path);
    launcher.run_directory.swap(other.run_directory);
    std::swap(launcher.dirty, other.dirty);
}

// Restores the controls after a failed FillForm. Errors are ignored: a control that refuses its value keeps
// the one that it shows.
void RestoreForm(Launcher& launcher, const FormContent& shown, std::int32_t selected_row) {
    {
        const FillingScope filling(launcher);
        for (const auto& [field, text] : shown.texts)
            SetWindowTextW(field, text.c_str());
        SendMessageW(Field(launcher, IDC_ZOOM), CB_SETCURSEL, static_cast<WPARAM>(shown.zoom), 0);
        for (std::size_t box = 0; box < CHECK_BOXES.size(); ++box)
            SetCheck(launcher, CHECK_BOXES[box].id, shown.checks[box]);
        try {
            RebuildModuleList(launcher);
        } catch (const std::bad_alloc&) {
            selected_row = -1;
        }
    }
    if (selected_row >= 0)
        SelectModuleRow(launcher, selected_row);
    RefreshEnabling(launcher);
}

}  // namespace

WideText GetControlText(HWND control) {
    WideText text;
    ReadControlText(control, text);
    return text;
}

void ReadControlText(HWND control, WideText& text) {
    const int length = GetWindowTextLengthW(control);
    text.resize(static_cast<std::size_t>(length));
    RequireAccepted(length == 0 || GetWindowTextW(control, text.data(), length + 1) == length);
}

void SetControlText(HWND control, const WideText& text) {
    // Some platforms report success although the control stored only a part of the text.
    RequireAccepted(SetWindowTextW(control, text.c_str()) != FALSE &&
                    GetWindowTextLengthW(control) == static_cast<int>(text.size()));
}

void RequireAccepted(bool accepted) {
    if (!accepted)
        throw std::bad_alloc();
}

std::uint32_t ReadNumberField(HWND control, std::uint32_t lowest, std::uint32_t highest, const char* label) {
    const std::optional<std::uint64_t> number = ParseDigits(WideView(GetControlText(control)));
    if (!number)
        throw std::runtime_error("Nombre invalide : " + std::string(label));
    if (*number < lowest || *number > highest) {
        SetFocus(control);
        SendMessageW(control, EM_SETSEL, 0, -1);
        throw std::runtime_error("Valeur hors limites : " + std::string(label));
    }
    return static_cast<std::uint32_t>(*number);
}

void ResolveFormPath(const Launcher& launcher, WideText& path) {
    if (!path.empty())
        path = NormalPath(AbsolutePath(JoinPath(launcher.run_directory, path)));
}

VmConfig ReadForm(Launcher& launcher) {
    VmConfig config = launcher.config;
    for (const TextField& row : TEXT_FIELDS)
        config.*row.field = GetControlText(Field(launcher, row.id));
    for (const NumberField& row : NUMBER_FIELDS)
        config.*row.field = ReadNumberField(Field(launcher, row.id), row.lowest, row.highest, row.label);
    config.zoom = static_cast<std::uint32_t>(SendMessageW(Field(launcher, IDC_ZOOM), CB_GETCURSEL, 0, 0) + 1);
    for (const CheckBox& row : CHECK_BOXES)
        config.*row.field = IsChecked(launcher, row.id);
    for (std::size_t slot = 0; slot < IDE_FIELDS.size(); ++slot)
        config.ide[slot] = GetControlText(Field(launcher, IDE_FIELDS[slot]));
    ForEachPath(config, [&](WideText& path) { ResolveFormPath(launcher, path); });
    ValidateConfig(config);
    return config;
}

void FillForm(Launcher& launcher) {
    const std::int32_t kept_row = launcher.selected_module;
    {
        const FillingScope filling(launcher);
        FillFields(launcher, launcher.config);
        RebuildModuleList(launcher);
    }
    if (kept_row >= 0 && static_cast<std::size_t>(kept_row) < launcher.config.modules.size())
        SelectModuleRow(launcher, kept_row);
    RefreshEnabling(launcher);
    RefreshTitle(launcher);
}

FormContent ReadContent(const Launcher& launcher) {
    FormContent content;
    const auto keep_text = [&](UINT id) {
        content.texts.emplace_back(Field(launcher, id), GetControlText(Field(launcher, id)));
    };
    for (const TextField& row : TEXT_FIELDS)
        keep_text(row.id);
    for (const NumberField& row : NUMBER_FIELDS)
        keep_text(row.id);
    for (const UINT id : IDE_FIELDS)
        keep_text(id);
    content.zoom = SendMessageW(Field(launcher, IDC_ZOOM), CB_GETCURSEL, 0, 0);
    for (const CheckBox& row : CHECK_BOXES)
        content.checks.push_back(IsChecked(launcher, row.id));
    return content;
}

void AdoptConfig(Launcher& launcher, CurrentConfig next, const FormContent& shown) {
    const std::int32_t selected_row = launcher.selected_module;
    Swap(launcher, next);
    try {
        FillForm(launcher);
    } catch (const std::bad_alloc&) {
        Swap(launcher, next);
        RestoreForm(launcher, shown, selected_row);
        throw;
    }
}

void RebuildModuleList(Launcher& launcher) {
    launcher.selected_module = -1;
    RequireAccepted(SendMessageW(launcher.module_list, LVM_DELETEALLITEMS, 0, 0) != FALSE);
    for (std::size_t index = 0; index < launcher.config.modules.size(); ++index)
        InsertModuleRow(launcher.module_list, index, launcher.config.modules[index]);
    SetField(launcher, IDC_MODULE_ARGS, {});
}

void SelectModuleRow(Launcher& launcher, std::int32_t index) {
    LVITEMW item{};
    item.state = LVIS_SELECTED | LVIS_FOCUSED;
    item.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
    SendMessageW(launcher.module_list, LVM_SETITEMSTATE, static_cast<WPARAM>(index),
                 reinterpret_cast<LPARAM>(&item));
}

void SetModuleRowArguments(HWND list, std::size_t index, const WideText& arguments) {
    LVITEMW item{};
    item.iSubItem = 1;
    item.pszText = const_cast<WCHAR*>(arguments.c_str());
    RequireAccepted(SendMessageW(list, LVM_SETITEMTEXTW, index, reinterpret_cast<LPARAM>(&item)) != FALSE);
}
