// Start-up, the message loop, and the handler for exceptions that no other handler catches.
#pragma once

#include "platform/win32.h"
#include "state/launcher.h"

// Runs the program until the main window is destroyed. `launcher` must be new. Returns the exit code of
// the process: 0, or 1 after a failure at start-up or in the message loop. Such a failure is shown to the
// user. Does not throw.
int RunLauncher(Launcher& launcher, HINSTANCE instance, int show_command);
