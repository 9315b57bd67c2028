// Decides which command a WM_COMMAND message stands for. No platform call.
#pragma once

#include "platform/win32.h"

enum class Command {
    None,
    MarkEdited,           // an edit of the form
    MarkEditedAndEnable,  // an edit that enables or disables other controls
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

// The command for the notification `code` of the control `id`. While `filling` is set, the notifications come
// from the program's own changes, and the answer is always None.
Command DecideCommand(bool filling, UINT code, UINT id);
