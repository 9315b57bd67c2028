// Starts the engine with the values of the form and notices its end, on the ticks of the main window's timer.
// Nothing here waits for the engine or stops it.
#pragma once

#include "state/launcher.h"

// Starts the engine with the values of the form, for a run or a dry run. Its output goes to a new
// veldranevm.log in `run_directory`. On success `engine_process` owns the process handle, and the status line
// and the enabled controls show the run. Does nothing while another run is followed. When this throws, all
// handles are closed and the Launcher is unchanged, except `log_path` if the failure came after the checks.
void LaunchEngine(Launcher& launcher, bool dry_run);

// Checks whether the engine has ended. If so, closes the handle, writes the result into the status line,
// enables the launch buttons and, after a failure, opens the log. Throws only as ShowLogWindow does.
void PollEngine(Launcher& launcher);
