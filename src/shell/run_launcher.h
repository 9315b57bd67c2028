// Start-up, message loop, and the handling of exceptions that nothing else catches.
#pragma once

#include "platform/win32.h"
#include "state/launcher.h"

// Runs the program, with a new Launcher, until the main window is destroyed. Returns the exit code of the
// process: 0, or 1 after a failure at start-up or in the message loop, which was shown to the user. Does not
// throw.
int RunLauncher(Launcher& launcher, HINSTANCE instance, int show_command);
