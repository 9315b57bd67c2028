// Which notification of which control becomes which command.
#include "shell/command_decision.h"

#include <gtest/gtest.h>

namespace {

struct Case {
    UINT code;
    UINT id;
    Command command;
};

const Case CASES[] = {
    {0, 101, Command::Load},
    {0, 102, Command::Save},
    {0, 103, Command::SaveAs},
    {0, 104, Command::Reset},
    {0, 105, Command::Launch},
    {0, 106, Command::Verify},
    {0, 107, Command::ShowLog},
    {0, 202, Command::Browse},
    {0, 213, Command::Browse},
    {0, 411, Command::Browse},
    {0, 412, Command::Browse},
    {0, 413, Command::Browse},
    {0, 414, Command::Browse},
    {0, 206, Command::MarkEditedAndEnable},
    {0, 207, Command::MarkEditedAndEnable},
    {0, 211, Command::MarkEditedAndEnable},
    {0, 303, Command::AddModule},
    {0, 304, Command::RemoveModule},
    {0, 305, Command::MoveModuleUp},
    {0, 306, Command::MoveModuleDown},
    {768, 201, Command::MarkEdited},
    {768, 404, Command::MarkEdited},
    {768, 307, Command::ModuleArgsChanged},
    {1, 210, Command::MarkEdited},
    // Enter and Escape as a dialog sends them, and controls that only notify.
    {0, 1, Command::None},
    {0, 2, Command::None},
    {0, 201, Command::None},
    {0, 0, Command::None},
    // Notifications that look like clicks on a command: focus, update, drop-down, and the code of the list on
    // a button.
    {256, 201, Command::None},
    {512, 201, Command::None},
    {1024, 201, Command::None},
    {7, 210, Command::None},
    {1, 101, Command::None},
    {5, 105, Command::None},
};

TEST(CommandDecision, FollowsTheNotificationAndTheControl) {
    for (const Case& c : CASES)
        EXPECT_EQ(DecideCommand(false, c.code, c.id), c.command) << c.code << " from " << c.id;
}

TEST(CommandDecision, HearsNothingWhileTheProgramFillsTheForm) {
    for (const Case& c : CASES)
        EXPECT_EQ(DecideCommand(true, c.code, c.id), Command::None) << c.code << " from " << c.id;
}

}  // namespace
