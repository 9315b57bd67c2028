// Shows failures to the user.
#pragma once

#include <exception>

#include "state/launcher.h"

// Writes the exception's text into the status line and shows it in a box. Returns when the user has closed
// the box; the control that had the focus then gets the focus again. In the box, each control character
// outside a line end (CR LF) is replaced by a blank, and a text of more than 1,000 characters is reduced to
// its start and its end. For std::bad_alloc, or if the text cannot be converted,
// shows a fixed text that reports that memory is short.
void ShowError(Launcher& launcher, const std::exception& error) noexcept;

// Shows the same box, but writes no status line. `owner` is the owner window of the box and may be null.
void ShowErrorBox(HWND owner, const std::exception& error) noexcept;
