// The whole program in a folder of its own, for a test that acts as its user.
#pragma once

#include <functional>
#include <string>

#include "demo/user/user.h"
#include "scratch.h"
#include "state/launcher.h"

// A fresh folder that is the current directory, with a bootable kernel `noyau.elf` in it; the engine is the
// stand-in beside the test program.
struct LauncherRun {
    ScratchFolder folder;
    Launcher launcher;

    LauncherRun();
    ~LauncherRun();

    // Runs the program with this user; gives its exit code.
    int Run(const std::function<void()>& story);

    // Writes a configuration file into the folder: version, kernel and the given lines.
    void WriteConfig(WideView name, std::string_view lines) const;
    // The whole log of the last run.
    std::string Log() const;
};

// For another run in the same process, after the first one has ended.
void UnregisterWindowClasses();

// Closes the error box that is up and gives its text; fails the test when none comes up.
std::string TakeErrorBox();
