// One run of the engine: starting it from the form, and seeing its end on the ticks of the main window's
// timer. Nothing here ever waits for the engine or stops it.
#pragma once

#include "state/launcher.h"

// Starts the engine with what the form holds, as a dry run or a run, its output in a new veldranevm.log in
// `run_directory`. On success `engine_process` owns the process handle, and the status line and the enabling
// tell of it. Does nothing while a run is followed. Throws with the record unchanged (but for `log_path`,
// once all checks have passed) and every handle released.
void LaunchEngine(Launcher& launcher, bool dry_run);

// Looks whether the engine has ended. If so it closes the handle, writes the result into the status line,
// brings the launch buttons back and, after a failure, opens the log. Throws only what opening the log
// throws.
void PollEngine(Launcher& launcher);
