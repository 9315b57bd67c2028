// Builds the engine's command line from a record. No platform call.
#pragma once

#include <vector>

#include "config/vm_config.h"
#include "platform/win32.h"

// The arguments after the engine's own path, in their order, not quoted. Throws when the record is not valid
// or has no kernel.
std::vector<WideText> BuildEngineArguments(const VmConfig& config, bool dry_run);

// The argument in double quotes, escaped so that the platform's parser returns it unchanged.
WideText QuoteEngineArgument(WideView argument);

// The whole line: the engine's path and the arguments, each quoted, separated by one blank. Throws as
// BuildEngineArguments does, and when the line is longer than the platform's limit of 32,766 characters.
WideText BuildEngineCommandLine(WideView engine_path, const VmConfig& config, bool dry_run);
