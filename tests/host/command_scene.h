// A form in the middle of work, the commands that a user can give it, and all that can be seen of what each
// leaves behind: for tests in which something fails in the middle of a command.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "demo/user/restless.h"
#include "launcher_run.h"

// What can be seen, by name: controls, record, marks, files, the log window.
using Sight = user::Looks;

struct Scene;

struct SceneCommand {
    const char* name;
    std::function<void(Scene&)> prepare;
    std::function<void(Scene&)> act;
    // What a failure may leave as before, as after or, for a moment, between.
    std::vector<std::string> loose;
    bool told_when_done = false;  // a failure is told when the command has done what it is for
};

const std::vector<SceneCommand>& SceneCommands();
void PrintTo(const SceneCommand& command, std::ostream* out);

// A folder with two configurations, disks and modules, and the program on the first of these configurations,
// with an edit that is not saved and the second of three modules selected. One thread: what the user does
// comes on a timer's ticks. Boxes are answered as they come: the question about changes with No, file boxes
// with `choice`.
struct Scene {
    LauncherRun run;
    WideText choice;
    std::vector<std::string> boxes;  // the error boxes since the last Act
    std::function<void()> when_shown;
    bool* shortage = nullptr;  // what the user's own doings are spared

    // Runs the program from its start; `test` runs as soon as the window shows, and then the window is
    // closed. Gives the exit code. `strike` comes just before the start.
    int Play(const std::function<void()>& test, const std::function<void()>& strike = {});
    void Set(const SceneCommand& command);
    void Act(const SceneCommand& command);
    Sight Look() const;
    void Press(UINT id) const;
    void Tick() const;
};

// What must be left of a command in which something failed.
struct Verdict {
    bool is_done = false;     // all as after the command, otherwise all as before
    bool is_excused = false;  // but for what the command has as loose
    bool may_lose_selection = false;
    bool is_over = false;  // the command is not to be repeated on what is left
};

// Does the command again and again, each time with another of its steps failing: `strike` makes the nth fail,
// `calm` says whether that came to pass. `judge` looks at the boxes, of which one at most has come, with the
// text of the status line. Whatever became of the command, it succeeds right afterwards.
void SweepCommand(Scene& scene, const SceneCommand& command, const std::function<void(unsigned)>& strike,
                  const std::function<bool()>& calm,
                  const std::function<Verdict(unsigned nth, const std::string& status)>& judge);
