// What a test can see of the controls that they do not tell.
#pragma once

#include <string>

#include "platform/host/api/user32.h"

namespace host {

// The text of a STATIC control as it has last been drawn: an ampersand underlines the next character and is
// not seen itself, unless the style says otherwise.
std::u16string DrawnText(HWND label);

// What has last been copied.
std::u16string ClipboardText();

}  // namespace host
