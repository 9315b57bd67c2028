// The texts of the title bar and of the configuration line. No platform call.
#pragma once

#include "base/fixed_text.h"
#include "platform/win32.h"

// The title of the main window, with a mark at its end while there are unsaved changes.
const WCHAR* TitleText(bool dirty);

// Has room for the longest path of the platform and the mark.
using ConfigLine = FixedText<32767 + 32>;

// The line that names the configuration file, or says that there is none yet.
ConfigLine ConfigLineText(WideView config_path, bool dirty);
