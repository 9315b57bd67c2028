// What the end of a run means to the user. Plain values.
#pragma once

#include "base/fixed_text.h"
#include "platform/win32.h"

// True when a run with this exit code ended well; no other value is told apart.
bool RunSucceeded(DWORD exit_code);

using RunResult = FixedText<64>;

// The status text for the end of a run or, when `run_is_dry`, of a verification.
RunResult RunResultText(DWORD exit_code, bool run_is_dry);
