// The layout of the form: the places of the controls at every size of the window, the two tab pages, the
// smallest window.
#pragma once

#include "platform/win32.h"
#include "state/launcher.h"

// The style of the main window, which decides on the size of its frame.
inline constexpr DWORD MAIN_WINDOW_STYLE = WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN;

// The outer size in pixels of a main window whose client area has the base size: its first and its smallest
// size.
SIZE BaseWindowSize();

// Places all controls for the present client area in one batch and has the window repainted. When the
// platform refuses the batch, the controls stay where they are, and nothing is reported.
void LayoutForm(Launcher& launcher);

// Shows the controls of the selected tab page and hides those of the other.
void ShowTabPage(Launcher& launcher);
