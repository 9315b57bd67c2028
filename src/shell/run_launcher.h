// The program's spine: start-up in its fixed order, the message loop, and what becomes of a failure at the
// top.
#pragma once

#include "platform/win32.h"
#include "state/launcher.h"

// Runs the program on a new record until the main window is gone; gives the exit code of the process: 0, or 1
// after a failure at start-up or of the message loop, which the user has then been shown. Nothing is thrown.
int RunLauncher(Launcher& launcher, HINSTANCE instance, int show_command);
