// Texts for the platform's error codes.
#pragma once

#include "platform/win32.h"

// Returns the system's text for an error code, including the line end that the system appends. Returns
// "Erreur Windows CODE" if the system returns no text.
WideText WindowsErrorText(DWORD code);
