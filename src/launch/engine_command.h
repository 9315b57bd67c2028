// Builds the engine's command line from a record. No platform call.
#pragma once

#include <vector>

#include "config/vm_config.h"
#include "platform/win32.h"

// Returns the arguments that follow the engine's path, in the order of the command line, not quoted.
// Throws when the record is not valid or has no kernel.
std::vector<WideText> BuildEngineArguments(const VmConfig& config, bool dry_run);

// Returns the argument in double quotes, escaped so that the platform's parser returns the argument
// unchanged.
WideText QuoteEngineArgument(WideView argument);

// Returns the whole command line: the engine's path and the arguments, each quoted, separated by one
// blank. Throws as BuildEngineArguments does, and when the line is longer than 32,766 characters, the
// platform's limit.
WideText BuildEngineCommandLine(WideView engine_path, const VmConfig& config, bool dry_run);
