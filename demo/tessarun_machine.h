// The machine that the stand-in engine simulates: lines of output over some time, and an exit code.
#pragma once

#include <cstdint>

#include "adapter/engine_main.h"
#include "demo/tessarun_script.h"

// Prints the machine's output and returns its exit code. A limit shorter than the script's duration ends the
// machine after the limit with TIME_LIMIT_EXIT_CODE; a limit of 0 means no limit. The limit does not shorten
// the wait for `awaited_file`.
std::uint32_t PlayMachine(const MachineScript& script, std::uint32_t limit_ms);
