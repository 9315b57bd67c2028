// Starting the engine's process with its output in the log file: the platform's side of a launch.
#pragma once

#include "base/owned_handle.h"
#include "platform/win32.h"

// Recreates the log file empty, runs the engine in `directory` with its output and errors in the log and no
// input, and gives the handle of the process. The engine inherits the handles of the log and of its input and
// no other. Throws when it cannot be started; the log file stays, empty, once it has been created.
OwnedHandle StartEngine(const WideText& engine_path, WideText command_line, const WideText& directory,
                        const WideText& log_path);
