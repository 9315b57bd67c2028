// The texts of the title bar and of the configuration line. No platform call.
#pragma once

#include "base/fixed_text.h"
#include "platform/win32.h"

// Returns the title of the main window. An asterisk at the end marks unsaved changes.
const WCHAR* TitleText(bool dirty);

// The capacity is enough for the longest path (32,767 characters) and the mark for unsaved changes.
using ConfigLine = FixedText<32767 + 32>;

// Returns the text of the configuration line: the path of the file, or a text for a configuration without
// a file. With `dirty`, the text ends with a mark for unsaved changes.
ConfigLine ConfigLineText(WideView config_path, bool dirty);
