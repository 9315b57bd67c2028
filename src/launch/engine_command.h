// The engine's command line: a record and the kind of run become the exact line. Plain text, no platform
// call.
#pragma once

#include <vector>

#include "config/vm_config.h"
#include "platform/win32.h"

// What the engine gets after its own path, in order, unquoted. Throws when the record is not valid or names
// no kernel.
std::vector<WideText> BuildEngineArguments(const VmConfig& config, bool dry_run);

// The argument in double quotes, so that the platform's rules read it back as it was.
WideText QuoteEngineArgument(WideView argument);

// The whole line, the engine's path first, every item quoted, one blank between two. Throws what
// BuildEngineArguments throws, and when the line would be longer than the 32,766 characters that the platform
// takes.
WideText BuildEngineCommandLine(WideView engine_path, const VmConfig& config, bool dry_run);
