// The program in a prepared state, the commands that a user can give in that state, and the test of each
// command with one of its steps failing.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "host/snapshot.h"
#include "launcher_run.h"

struct CommandFixture;

struct TestedCommand {
    const char* name;
    std::function<void(CommandFixture&)> prepare;
    std::function<void(CommandFixture&)> run;
    // The names in a snapshot that may be neither as before nor as after the command when a step failed.
    std::vector<std::string> partial;
    bool completes_on_error = false;  // reports an error only after its work is done
};

const std::vector<TestedCommand>& TestedCommands();
void PrintTo(const TestedCommand& command, std::ostream* out);

// A folder with two configurations, disks and modules, and the program with the first configuration, an
// unsaved edit, and the second of three modules selected. All runs on one thread: the user is called from a
// timer and answers boxes: the question about changes with No, file boxes with `chosen_file`.
struct CommandFixture {
    LauncherRun run;
    WideText chosen_file;
    std::vector<std::string> error_boxes;  // since the start of the last command
    std::function<void()> when_shown;
    bool* shortage = nullptr;  // switched off while the user acts

    // Runs the program: `inject_fault` just before its start, `test` when the window is visible; then the
    // window is closed. Returns the exit code.
    int RunProgram(const std::function<void()>& test, const std::function<void()>& inject_fault = {});
    void SetUp(const TestedCommand& command);
    void Run(const TestedCommand& command);
    Snapshot TakeSnapshot() const;
    void Press(UINT id) const;
    void Tick() const;
};

// The required state after a command in which a step failed.
struct RequiredState {
    bool is_done = false;  // as after the command; otherwise as before it
    bool may_be_partial = false;
    bool may_lose_selection = false;
    bool cannot_repeat = false;  // the command has no effect in this state
};

// Runs the command repeatedly, with its first step failing, then its second, until none fails: `inject_fault`
// makes the nth step fail, `clear_fault` returns whether it failed. `require` checks the error boxes and gets
// the text of the status line. After each failure, the command must succeed when it is repeated.
void SweepCommand(CommandFixture& fixture, const TestedCommand& command,
                  const std::function<void(unsigned)>& inject_fault, const std::function<bool()>& clear_fault,
                  const std::function<RequiredState(unsigned nth, const std::string& status)>& require);
