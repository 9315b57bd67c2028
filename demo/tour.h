// The demonstration: a user who edits a configuration, saves it, loads it, verifies it and runs it.
#pragma once

#include <string>

#include "platform/win32.h"

// Acts as the user of a launcher that has just been started in `folder`. The folder must contain
// veldranevm.config, noyau.elf, initrd.img, symboles.txt and tessarun.exe. Prints the texts of the window,
// the engine's command line and its log. Then closes the program. Returns false when a text was not the
// expected one or the program did not end. Throws when a window or a file is missing.
bool Tour(const WideText& folder);

// The same for a configuration with a real kernel and an engine that runs this kernel: loads, verifies,
// launches, waits for the end, shows the log and checks the picture of the machine's screen.
bool MachineTour(const WideText& folder);

// Requests a picture of the window from the process that started the demonstration, if that process wants
// pictures. Each build has its own implementation.
void ShowPicture(HWND window, const std::string& name, const std::string& caption);
