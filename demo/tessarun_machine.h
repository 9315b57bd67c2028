// The machine that the stand-in engine plays: lines of output over some time, and an exit code.
#pragma once

#include <cstdint>

#include "adapter/engine_main.h"
#include "demo/tessarun_script.h"

// Plays the machine on standard output and gives its exit code. A limit other than 0 that is shorter than the
// play ends it then, with a line that says so and TIME_LIMIT_EXIT_CODE.
std::uint32_t PlayMachine(const MachineScript& script, std::uint32_t limit_ms);
