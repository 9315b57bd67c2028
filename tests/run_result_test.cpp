// The words for the end of a run.
#include "launch/run_result.h"

#include <gtest/gtest.h>

#include "scratch.h"

namespace {

TEST(RunResult, TellsTheEndOfARunByItsCode) {
    const struct {
        DWORD exit_code;
        bool dry;
        const char* text;
    } cases[] = {
        {0, true, "Configuration vérifiée. Vous pouvez lancer la VM."},
        {0, false, "VM terminée."},
        {1, true, "Échec (code 1). Consultez le journal."},
        {1, false, "Échec (code 1). Consultez le journal."},
        {0xC0000005, false, "Échec (code 3221225477). Consultez le journal."},
        {0xFFFFFFFF, true, "Échec (code 4294967295). Consultez le journal."},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(Narrow(RunResultText(c.exit_code, c.dry)), c.text);
        EXPECT_EQ(RunSucceeded(c.exit_code), c.exit_code == 0);
    }
}

}  // namespace
