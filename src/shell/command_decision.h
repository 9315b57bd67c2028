// Decides which command a WM_COMMAND message means. No platform call.
#pragma once

#include "platform/win32.h"

enum class Command {
    None,
    MarkEdited,           // an edit of the form
    MarkEditedAndEnable,  // an edit after which other controls may be enabled or disabled
    ModuleArgsChanged,
    Load,
    Save,
    SaveAs,
    Reset,
    Launch,
    Verify,
    ShowLog,
    Browse,  // for the field that belongs to the button
    AddModule,
    RemoveModule,
    MoveModuleUp,
    MoveModuleDown,
};

// Returns the command for the notification `code` of the control `id`. While `filling` is set, the program
// itself changes the controls, and the result is always None.
Command DecideCommand(bool filling, UINT code, UINT id);
