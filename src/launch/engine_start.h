// Starts the engine's process with its output in the log file.
#pragma once

#include "base/owned_handle.h"
#include "platform/win32.h"

// Creates an empty log file, or empties the existing one, and starts the engine in the working directory
// `directory`. The engine writes its standard output and standard error to the log; its standard input is
// empty. It inherits the handles of the log and of the input, and no others. Returns the process handle,
// which the caller owns. Throws when the log cannot be created or the engine cannot be started; in the
// second case the empty log remains.
OwnedHandle StartEngine(const WideText& engine_path, WideText command_line, const WideText& directory,
                        const WideText& log_path);
