// The keyboard of the main window between two messages: the control that had the focus has it again.
#pragma once

#include "platform/win32.h"

// To be called for every message that the loop has taken out, before it goes anywhere. A control of the
// window that has the focus is remembered in `last_control`. Where the active window has the focus itself, or
// nobody has it (another program was in front, the window was minimised, a box was open, the control was
// disabled for a while), the control gets it back if it can take it, and a key that was on its way to the
// window reaches it.
void KeepFocus(HWND main_window, HWND& last_control, MSG& message);
