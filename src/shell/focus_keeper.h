// Restores the focus of the main window's controls.
#pragma once

#include "platform/win32.h"

// The message loop calls this for every message before it dispatches the message. If a visible and enabled
// control of the main window has the focus, stores its handle in `last_control`. Otherwise, if the main
// window is active, sets the focus to `last_control` or, if that is hidden or disabled, to the main
// window; a key message for the main window is then redirected to the window that has the focus. The focus
// must be restored when the user comes back from another program or from the minimised window, when a box
// closes, and when the control that has the focus is disabled.
void KeepFocus(HWND main_window, HWND& last_control, MSG& message);
