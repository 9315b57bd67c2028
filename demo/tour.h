// The demonstration: a user who edits a configuration, saves and loads it, verifies it and runs it.
#pragma once

#include <string>

#include "platform/win32.h"

// Acts as the user of a launcher that has just been started in `folder`, which holds veldranevm.config,
// noyau.elf, initrd.img, symboles.txt and tessarun.exe; tells on standard output what the window shows and
// what the engine was given and wrote. The program has ended when it returns. False when a text was not the
// right one.
bool Tour(const WideText& folder);

// The same with a configuration of a real kernel and an engine that runs it: loads, verifies, launches,
// follows, and shows the log and the picture of the machine's screen.
bool MachineTour(const WideText& folder);

// Has a picture taken of the place of a window, where somebody takes pictures; each build has its own.
void ShowPicture(HWND window, const std::string& name, const std::string& caption);
