// Decides which controls are enabled. Plain values, no platform call.
#pragma once

#include <cstddef>
#include <cstdint>

// The values on which the enabled state of the controls depends.
struct FormState {
    bool explicit_video;           // state of the check box, not the value in the record
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
