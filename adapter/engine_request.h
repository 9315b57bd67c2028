// What an engine is asked to do: the launcher's command line read back into a record.
#pragma once

#include <cstdint>
#include <vector>

#include "config/vm_config.h"

struct EngineRequest {
    VmConfig config;
    bool dry_run = false;
};

// Reads the arguments after the engine's own name: the kernel, then the options in the one order in which
// the launcher gives them. Throws for a missing kernel, an option that is unknown, repeated, out of its place
// or absent, a missing or empty value, and for a number that is out of bounds or not in its shortest form.
EngineRequest ParseEngineArguments(const std::vector<WideText>& arguments);

// A number in its shortest form. Throws where it is none or out of bounds.
std::uint32_t NumberWithin(WideView text, std::uint32_t lowest, std::uint32_t highest);
