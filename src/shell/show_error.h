// The one way in which a failure reaches the user while the main window stands.
#pragma once

#include <exception>

#include "state/launcher.h"

// Writes the exception's text into the status line and shows it in a box, which the user has closed when it
// returns. The box shows a blank for a control character and, of a text of more than 1,000 characters, the
// start and the end. Never fails: where the text cannot be made, because memory is short, a fixed sentence
// says so.
void ShowError(Launcher& launcher, const std::exception& error) noexcept;

// Shows the box alone, owned by the main window where there is one. A control that had the focus has it again
// when the box has been closed. Never fails either.
void ShowErrorBox(HWND owner, const std::exception& error) noexcept;
