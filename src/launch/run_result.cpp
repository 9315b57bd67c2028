#include "launch/run_result.h"

RunResult RunResultText(DWORD exit_code, bool run_is_dry) {
    if (exit_code == 0)
        return RunResult(run_is_dry ? TEXT("Configuration vérifiée. Vous pouvez lancer la VM.")
                                    : TEXT("VM terminée."));
    RunResult text(TEXT("Échec (code "));
    text += exit_code;
    text += TEXT("). Consultez le journal.");
    return text;
}
