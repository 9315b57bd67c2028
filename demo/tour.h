// The demonstration: a user who edits a configuration, saves it, loads it, verifies it and runs it.
#pragma once

#include <string>

#include "platform/win32.h"

// Acts as the user of a launcher that has just been started in `folder`. The folder must contain
// veldranevm.config, noyau.elf, initrd.img, symboles.txt and tessarun.exe. Prints the texts of the window,
// the engine's command line and its log. Returns after the program has ended; false when a text was not the
// expected one.
bool Tour(const WideText& folder);

// The same for a configuration with a real kernel and an engine that runs it: loads, verifies, launches,
// waits for the end, shows the log and checks the picture of the machine's screen.
bool MachineTour(const WideText& folder);

// Lets the caller of the demonstration take a picture of the window, if it wants pictures. Each build has its
// own implementation.
void ShowPicture(HWND window, const std::string& name, const std::string& caption);
