// Texts for the platform's error codes.
#pragma once

#include "platform/win32.h"

// The system's text for an error code, with the line end that the system appends; "Erreur Windows CODE" if it
// has none.
WideText WindowsErrorText(DWORD code);
