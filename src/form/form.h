// Making the form: every control of the main window, by code and from one table.
#pragma once

#include "platform/win32.h"
#include "state/launcher.h"

// Makes one visible child of the main window with the form's font and keeps its rectangle for the layout. The
// control goes with the main window. Throws when the platform refuses it.
HWND CreateControl(Launcher& launcher, WideView class_name, WideView text, UINT id, std::int32_t x,
                   std::int32_t y, std::int32_t width, std::int32_t height, DWORD style, bool stretch);

// Makes the whole form, once, while the main window is being created; the first tab page shows. Nothing that
// the new controls notify counts as an edit. Throws at the first control that cannot be made.
void BuildForm(Launcher& launcher);
