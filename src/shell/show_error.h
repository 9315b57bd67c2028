// Shows failures to the user.
#pragma once

#include <exception>

#include "state/launcher.h"

// Writes the exception's text into the status line and shows it in a box; returns when the user has closed
// the box. The box shows a blank for each control character and, of a text of more than 1,000 characters,
// only the start and the end. Never fails: when the text cannot be converted because memory is short, a fixed
// sentence says so.
void ShowError(Launcher& launcher, const std::exception& error) noexcept;

// Shows only the box, owned by `owner`, which may be null. The control that had the focus gets it back when
// the box is closed. Never fails either.
void ShowErrorBox(HWND owner, const std::exception& error) noexcept;
