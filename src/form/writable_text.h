// The records of the common controls' messages have pointers to writable text, also where the control only
// reads it.
#pragma once

#include "platform/win32.h"

// The pointer for such a record. Only for messages that do not write into the text.
inline LPWSTR WritableText(const WCHAR* text) {
    return const_cast<LPWSTR>(text);
}
