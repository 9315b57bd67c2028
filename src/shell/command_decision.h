// What a command message of the main window asks for. Plain values, no window.
#pragma once

#include "platform/win32.h"

enum class Command {
    None,
    MarkEdited,           // an edit: the form holds unsaved changes
    MarkEditedAndEnable,  // an edit on which the enabling of other controls depends
    ModuleArgsChanged,
    Load,
    Save,
    SaveAs,
    Reset,
    Launch,
    Verify,
    ShowLog,
    Browse,  // for the field of the button with this identifier
    AddModule,
    RemoveModule,
    MoveModuleUp,
    MoveModuleDown,
};

// The command for a notification `code` of the control `id`. While the program itself fills the controls
// there is none, whatever the message says.
Command DecideCommand(bool filling, UINT code, UINT id);
