// The words for the end of a run.
#include "launch/run_result.h"

#include "base/text_convert.h"

bool RunSucceeded(DWORD exit_code) {
    return exit_code == 0;
}

WideText RunResultText(DWORD exit_code, bool run_is_dry) {
    if (!RunSucceeded(exit_code))
        return TEXT("Échec (code ") + WideNumberText(exit_code) + TEXT("). Consultez le journal.");
    return run_is_dry ? TEXT("Configuration vérifiée. Vous pouvez lancer la VM.") : TEXT("VM terminée.");
}
