// The layout of the form: the places of the controls at every size of the window, the two tab pages, and
// the smallest size of the window.
#pragma once

#include "platform/win32.h"
#include "state/launcher.h"

// The style of the main window. The size of the frame depends on the style.
inline constexpr DWORD MAIN_WINDOW_STYLE = WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN;

// Returns the outer size in pixels of a main window whose client area has the base size. The window is
// created with this size and cannot become smaller.
SIZE BaseWindowSize();

// Places all controls and sets the column widths of the module list for the current client area, and
// repaints the window. The controls are moved in one batch; if the platform refuses the batch, they are
// not moved, and no error is reported.
void LayoutForm(Launcher& launcher);

// Shows the controls of the selected tab page and hides those of the other.
void ShowTabPage(Launcher& launcher);
