// Runs the program in a temporary folder, for a test that acts as its user.
#pragma once

#include "demo/user/user.h"
#include "scratch.h"
#include "state/launcher.h"

// A new folder, which is the current directory and contains a kernel, `noyau.elf`. The engine is the stand-in
// of the build.
struct LauncherRun {
    ScratchFolder folder;
    Launcher launcher;

    LauncherRun();
    ~LauncherRun();

    // Runs the program with `story` as its user. Returns the exit code.
    int Run(const std::function<void()>& story);

    // Writes a configuration file into the folder: version, kernel and the given lines.
    void WriteConfig(WideView name, std::string_view lines) const;
    // The log of the last run.
    std::string Log() const;
};

// Required between two runs in one process.
void UnregisterWindowClasses();

// Waits for an error box, closes it and returns its text. Without a box, the test fails.
std::string TakeErrorBox();
