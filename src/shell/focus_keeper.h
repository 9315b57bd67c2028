// Restores the focus of the main window's controls.
#pragma once

#include "platform/win32.h"

// The message loop calls this for every message before it dispatches the message. While a control of the main
// window has the focus, `last_control` stores its handle. When the main window is active but has the focus
// itself, or no window has it, `last_control` gets the focus back if it is visible and enabled; a key message
// for the main window is then redirected to it. That happens after another program was in front, after the
// window was minimised, after a box was closed, and while the control was disabled.
void KeepFocus(HWND main_window, HWND& last_control, MSG& message);
