// Starts the engine's process with its output in the log file.
#pragma once

#include "base/owned_handle.h"
#include "platform/win32.h"

// Creates the log file empty, replacing an old one, and starts the engine in `directory`, with the log as its
// output and error output and an empty input. The engine inherits these two handles and no others. Returns
// the process handle, which the caller owns. Throws when the engine cannot be started; the new log file
// stays.
OwnedHandle StartEngine(const WideText& engine_path, WideText command_line, const WideText& directory,
                        const WideText& log_path);
