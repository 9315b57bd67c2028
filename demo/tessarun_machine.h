// The machine that the stand-in engine simulates: lines of output over some time, and an exit code.
#pragma once

#include <cstdint>

#include "adapter/engine_process.h"
#include "demo/tessarun_script.h"

// Prints the machine's output and returns the script's exit code. When the limit is shorter than the script's
// duration, the machine ends after the limit and the result is TIME_LIMIT_EXIT_CODE. A limit of 0 means no
// limit. The limit does not apply to the wait for the script's `awaited_file`. Throws as Print does.
std::uint32_t PlayMachine(const MachineScript& script, std::uint32_t limit_ms);
