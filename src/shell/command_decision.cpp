#include "shell/command_decision.h"

#include <array>

#include "form/form_ids.h"

namespace {

struct ClickRow {
    UINT id;
    Command command;
};

constexpr std::array<ClickRow, 20> CLICKS{{
    {IDC_LOAD, Command::Load},
    {IDC_SAVE, Command::Save},
    {IDC_SAVE_AS, Command::SaveAs},
    {IDC_RESET, Command::Reset},
    {IDC_LAUNCH, Command::Launch},
    {IDC_VERIFY, Command::Verify},
    {IDC_SHOW_LOG, Command::ShowLog},
    {IDC_KERNEL_BROWSE, Command::Browse},
    {IDC_DUMP_BROWSE, Command::Browse},
    {IDC_IDE_PRIMARY_MASTER_BROWSE, Command::Browse},
    {IDC_IDE_PRIMARY_SLAVE_BROWSE, Command::Browse},
    {IDC_IDE_SECONDARY_MASTER_BROWSE, Command::Browse},
    {IDC_IDE_SECONDARY_SLAVE_BROWSE, Command::Browse},
    {IDC_FORCE_NO_HEADER, Command::MarkEditedAndEnable},
    {IDC_EXPLICIT_VIDEO, Command::MarkEditedAndEnable},
    {IDC_HEADLESS, Command::MarkEditedAndEnable},
    {IDC_MODULE_ADD, Command::AddModule},
    {IDC_MODULE_REMOVE, Command::RemoveModule},
    {IDC_MODULE_UP, Command::MoveModuleUp},
    {IDC_MODULE_DOWN, Command::MoveModuleDown},
}};

Command ClickCommand(UINT id) {
    for (const ClickRow& row : CLICKS)
        if (row.id == id)
            return row.command;
    return Command::None;
}

}  // namespace

Command DecideCommand(bool filling, UINT code, UINT id) {
    if (filling)
        return Command::None;
    if (code == EN_CHANGE)
        return id == IDC_MODULE_ARGS ? Command::ModuleArgsChanged : Command::MarkEdited;
    if (id == IDC_ZOOM && code == CBN_SELCHANGE)
        return Command::MarkEdited;
    return code == BN_CLICKED ? ClickCommand(id) : Command::None;
}
