// The words for the end of a run.
#include "launch/run_result.h"

bool RunSucceeded(DWORD exit_code) {
    return exit_code == 0;
}

RunResult RunResultText(DWORD exit_code, bool run_is_dry) {
    if (RunSucceeded(exit_code))
        return RunResult(run_is_dry ? TEXT("Configuration vérifiée. Vous pouvez lancer la VM.")
                                    : TEXT("VM terminée."));
    RunResult text(TEXT("Échec (code "));
    text += exit_code;
    return text += TEXT("). Consultez le journal.");
}
