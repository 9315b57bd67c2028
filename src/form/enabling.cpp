#include "form/enabling.h"

Enabling EnablingOf(const FormState& state) {
    const bool selected = state.selected_module >= 0;
    return {
        .size_fields = state.explicit_video,
        .zoom = !state.headless,
        .module_args_and_remove = selected,
        .module_up = state.selected_module > 0,
        .module_down = selected && static_cast<std::size_t>(state.selected_module) + 1 < state.module_count,
        .launch_and_verify = !state.engine_runs,
    };
}
