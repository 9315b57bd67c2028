// Reads the launcher's command line back into a record.
#pragma once

#include <cstdint>
#include <vector>

#include "config/vm_config.h"

struct EngineRequest {
    VmConfig config;
    bool dry_run = false;
};

// Reads the arguments after the engine's own name: the kernel, then options in any order. Throws for a
// missing kernel, for an option that is unknown or lacks a value, and as NumberWithin and ValidateConfig do.
// Options that are missing leave the defaults of the record.
EngineRequest ParseEngineArguments(const std::vector<WideText>& arguments);

// Converts a text of decimal digits to a number. Throws for any other text, for leading zeros, and for a
// number outside of `lowest` to `highest`.
std::uint32_t NumberWithin(WideView text, std::uint32_t lowest, std::uint32_t highest);
