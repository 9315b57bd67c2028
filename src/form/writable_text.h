// Texts for the common controls, whose records hold pointers to writable characters.
#pragma once

#include "platform/win32.h"

// The text as the records want it. Only for messages that copy it and write nothing there.
inline LPWSTR WritableText(const WCHAR* text) {
    return const_cast<LPWSTR>(text);
}
