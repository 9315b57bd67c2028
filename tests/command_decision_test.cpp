// The command for a notification of a control.
#include "shell/command_decision.h"

#include <gtest/gtest.h>

TEST(CommandDecision, IgnoresNotificationsThatAreNotCommands) {
    EXPECT_EQ(DecideCommand(false, 0, 206), Command::MarkEditedAndEnable);
    for (const UINT id : {1U, 2U, 201U, 0U})
        EXPECT_EQ(DecideCommand(false, 0, id), Command::None) << id;
    for (const UINT code : {1U, 5U, 7U, 256U, 512U, 1024U})
        EXPECT_EQ(DecideCommand(false, code, 105), Command::None) << code;
    EXPECT_EQ(DecideCommand(true, 0, 105), Command::None) << "while the program fills the form";
}
