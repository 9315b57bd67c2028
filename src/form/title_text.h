// The texts of the title bar and of the configuration line, and which controls are enabled. Plain values.
#pragma once

#include <cstddef>
#include <cstdint>

#include "base/fixed_text.h"
#include "platform/win32.h"

// The title of the main window; a mark follows it while there are unsaved changes.
const WCHAR* TitleText(bool dirty);

// Room for the longest path of the platform and the mark behind it.
using ConfigLine = FixedText<32767 + 32>;

// The line that names the configuration file, or says that there is none yet.
ConfigLine ConfigLineText(WideView config_path, bool dirty);

// What decides which controls are enabled.
struct FormState {
    bool explicit_video;           // the check box, not the record
    bool headless;                 // likewise
    std::int32_t selected_module;  // -1 for none
    std::size_t module_count;
    bool engine_runs;
};

struct Enabling {
    bool size_fields;
    bool zoom;
    bool module_args_and_remove;
    bool module_up;
    bool module_down;
    bool launch_and_verify;
};

Enabling EnablingOf(const FormState& state);
