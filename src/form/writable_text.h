// The records of the common controls' messages contain pointers to writable text, even where the control
// only reads the text.
#pragma once

#include "platform/win32.h"

// Returns the pointer for such a record. Use it only for messages that do not write into the text.
inline LPWSTR WritableText(const WCHAR* text) {
    return const_cast<LPWSTR>(text);
}
