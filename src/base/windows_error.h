// The wording of the platform's error codes.
#pragma once

#include "platform/win32.h"

// The system's own text for an error code, with the line end that the system puts after it; where it has
// none, the code in words of ours. Fails only by exhaustion of memory.
WideText WindowsErrorText(DWORD code);
