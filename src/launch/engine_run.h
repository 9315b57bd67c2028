// Starts the engine with the values of the form. At each tick of the main window's timer, checks whether
// the engine has ended. Never waits for the engine and never stops it.
#pragma once

#include "state/launcher.h"

// Starts the engine with the values of the form, for a run or, with `dry_run`, for a verification. The
// engine writes its output to a new veldranevm.log in `run_directory`. On success stores the process
// handle in `engine_process`, reports the run in the status line and disables the launch buttons. Does
// nothing while `engine_process` is not null. Throws as ReadForm, BuildEngineCommandLine and StartEngine
// do, and when a file that the engine reads, or the engine, is missing or cannot be queried. No handle is
// then open, and the Launcher is unchanged, except that `log_path` is the new path if StartEngine failed.
void LaunchEngine(Launcher& launcher, bool dry_run);

// Checks whether the engine has ended. If so, closes the handle, writes the result into the status line,
// enables the launch buttons and, if the exit code is not 0, shows the log. Throws as ShowLogWindow does;
// all other steps are done by then.
void PollEngine(Launcher& launcher);
