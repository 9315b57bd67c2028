// Creation of the form: every control of the main window, from one table.
#pragma once

#include "platform/win32.h"
#include "state/launcher.h"

// Creates a control as a visible child of the main window, sets the form's font and appends the control to
// `layout_items`. The rectangle is in pixels, in client coordinates of the main window. The main window
// owns the control. Throws std::runtime_error when the platform cannot create the control.
HWND CreateControl(Launcher& launcher, WideView class_name, WideView text, UINT id, std::int32_t x,
                   std::int32_t y, std::int32_t width, std::int32_t height, DWORD style, bool stretch);

// Creates the whole form and shows the first tab page. Called once, in WM_CREATE of the main window. The
// notifications of the new controls do not count as edits. Throws at the first control that cannot be
// created or filled.
void BuildForm(Launcher& launcher);
