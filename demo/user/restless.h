// A user who does whatever comes to his mind, from a seed: each action is a record of its own, so that a
// session can be written down and played again. And what he sees, as texts with names.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "platform/win32.h"
#include "state/launcher.h"

namespace user {

enum class Kind {
    Type,       // text into field id, at its end
    Paste,      // field id holds the text all at once
    Click,      // control id
    Zoom,       // number: the key, in the zoom list
    Page,       // number: the tab
    Row,        // number: the module, -1 for none
    Key,        // number: the key, with the keyboard in field id
    Answer,     // number: the button of a box
    Choose,     // text: the name for a file box
    EndEngine,  // the engine that runs comes to its end
    Toggle,     // text: the name of a file that comes or goes
    Grow,       // text that is written behind the log, @ for a zero byte
    CloseLog,
    Resize,  // number: by how much the client area is wider than at first
    Show,    // number: SW_MINIMIZE or SW_RESTORE
    Wait,    // number: milliseconds
    Close,
};

struct Action {
    Kind kind;
    UINT id = 0;
    int number = 0;
    std::string text = {};  // a path can start with ~, the folder that he started in
};
// As it stands in a program text.
std::string Text(const Action& action);

// What is left of a session when chunks of it are left out, smaller and smaller and at last one by one, as
// long as `shows` says that the rest still shows what the whole did.
std::vector<Action> Shortest(std::vector<Action> session,
                             const std::function<bool(const std::vector<Action>&)>& shows);

// Does it, all but Wait and what happens outside the program. What it does may come true a moment later.
void Act(const Launcher& launcher, const Action& action);

// What the launcher's windows and its record tell, by name.
using Looks = std::map<std::string, std::string>;
Looks LookAt(const Launcher& launcher);

struct RestlessUser {
    std::mt19937 random;
    std::vector<std::string> files, configs, words;  // names and kernel arguments that he knows

    Action Next(const Looks& seen);

private:
    bool Once(unsigned in) {
        return random() % in == 0;
    }
    template <typename List>
    auto OneOf(const List& list);
    std::string Path();
    Action Edit();
    Action AnswerBox(const std::string& box);
    Action Outside();
};

}  // namespace user
