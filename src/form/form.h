// Creation of the form: every control of the main window, from one table.
#pragma once

#include "platform/win32.h"
#include "state/launcher.h"

// Creates a visible child of the main window with the form's font and appends its rectangle to
// `layout_items`. The main window owns the control. Throws std::runtime_error when the platform cannot create
// it.
HWND CreateControl(Launcher& launcher, WideView class_name, WideView text, UINT id, std::int32_t x,
                   std::int32_t y, std::int32_t width, std::int32_t height, DWORD style, bool stretch);

// Creates the whole form with the first tab page shown. Called once, while the main window is being created.
// The notifications of the new controls do not count as edits. Throws at the first control that cannot be
// created or filled.
void BuildForm(Launcher& launcher);
