// The one way in which a failure reaches the user while the main window stands.
#pragma once

#include <exception>

#include "state/launcher.h"

// Writes the exception's text into the status line and shows it in a box, which the user has closed when it
// returns.
void ShowError(Launcher& launcher, const std::exception& error);

// Shows the box alone, owned by the main window where there is one. A control that had the focus has it again
// when the box has been closed.
void ShowErrorBox(HWND owner, const WideText& text);
