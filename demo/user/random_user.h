// A user who chooses random actions from a seed, and snapshots of the program's state. An action is a record,
// so that a session (a list of actions) can be printed and replayed.
#pragma once

#include <functional>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "platform/win32.h"
#include "state/launcher.h"

namespace user {

enum class Kind {
    Type,       // text: appended to field id by typing
    Paste,      // text: replaces the text of field id
    Click,      // control id
    Zoom,       // number: the key, in the zoom list
    Page,       // number: the index of the tab
    Row,        // number: the index of the module, -1 for none
    Key,        // number: the key, with the focus in control id
    Answer,     // number: the identifier of the box's button
    Choose,     // text: the name for the file box
    EndEngine,  // lets the running engine end
    Toggle,     // text: the name of a file to remove or to restore
    Grow,       // text: appended to the log, with a zero byte for each @
    CloseLog,
    Resize,  // number: pixels to add to the initial width of the client area
    Show,    // number: SW_MINIMIZE or SW_RESTORE
    Wait,    // number: milliseconds
    Close,
};

struct Action {
    Kind kind;
    UINT id = 0;
    int number = 0;
    std::string text = {};  // in a path, ~ at the start is the user's folder
};
// The action as C++ source.
std::string Text(const Action& action);

// Shortens a session for which `fails` is true: removes smaller and smaller parts, each one only if `fails`
// is true for the actions that remain.
std::vector<Action> ShortestSession(std::vector<Action> session,
                                    const std::function<bool(const std::vector<Action>&)>& fails);

// Performs the action in the program's windows. Input may take effect only after the return. Does nothing for
// Wait, EndEngine, Toggle and Grow, which the caller performs.
void Act(const Launcher& launcher, const Action& action);

// Maps names to the texts and states of the launcher's windows and of its record.
using Snapshot = std::map<std::string, std::string>;
Snapshot TakeSnapshot(const Launcher& launcher);

struct RandomUser {
    std::mt19937 random;
    std::vector<std::string> files, configs, kernel_arguments;  // the values from which actions are made

    Action Next(const Snapshot& seen);

private:
    bool Once(unsigned in) {
        return random() % in == 0;
    }
    template <typename List>
    auto OneOf(const List& list);
    std::string Path();
    Action Edit();
    Action AnswerBox(const std::string& box);
    Action FileOrEngineAction();
};

}  // namespace user
