// The texts of title and line, and the conditions of the enabling.
#include "form/title_text.h"

const WCHAR* TitleText(bool dirty) {
    return dirty ? TEXT("Veldrane VM — Configuration *") : TEXT("Veldrane VM — Configuration");
}

ConfigLine ConfigLineText(WideView config_path, bool dirty) {
    ConfigLine line(config_path.empty() ? WideView(TEXT("Nouvelle configuration — non enregistrée"))
                                        : config_path);
    if (dirty)
        line += TEXT("  (modifiée)");
    return line;
}

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
