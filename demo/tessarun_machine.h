// The machine that the stand-in engine plays: lines of output over some time, and an exit code.
#pragma once

#include <cstdint>

#include "demo/tessarun_script.h"

// The exit code of a machine that its time limit stopped.
inline constexpr std::uint32_t TIME_LIMIT_EXIT_CODE = 124;

// Plays the machine on standard output and gives its exit code. A limit other than 0 that is shorter than the
// play ends it then, with a line that says so and TIME_LIMIT_EXIT_CODE.
std::uint32_t PlayMachine(const MachineScript& script, std::uint32_t limit_ms);
