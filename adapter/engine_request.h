// Reads the launcher's command line back into a record.
#pragma once

#include <cstdint>
#include <vector>

#include "config/vm_config.h"

struct EngineRequest {
    VmConfig config;
    bool dry_run = false;
};

// Reads the arguments after the engine's own name: the kernel, then the options in the launcher's order.
// Throws for a missing kernel, for an option that is unknown, repeated, out of place or absent, for a missing
// or empty value, and for a number that NumberWithin refuses.
EngineRequest ParseEngineArguments(const std::vector<WideText>& arguments);

// The number that a text of decimal digits stands for. Throws for any other text, for leading zeros, and for
// a number out of bounds.
std::uint32_t NumberWithin(WideView text, std::uint32_t lowest, std::uint32_t highest);
