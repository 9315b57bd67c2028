// The status text for the end of a run. No platform call.
#pragma once

#include "base/fixed_text.h"
#include "platform/win32.h"

using RunResult = FixedText<64>;

// Returns the status text for the end of a run or, with `run_is_dry`, of a verification. Exit code 0 means
// success, every other code means failure.
RunResult RunResultText(DWORD exit_code, bool run_is_dry);
