// Windows that log the messages they receive, for tests of the platform.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "platform/win32.h"

// Registers the class of the windows; the destructor destroys the windows and unregisters the class. Only one
// object at a time.
struct ProbeWindows {
    std::map<HWND, std::string> names;
    std::vector<std::string> log;  // "NAME MESSAGE", for some messages followed by wParam

    ProbeWindows();
    ~ProbeWindows();
    ProbeWindows(const ProbeWindows&) = delete;
    ProbeWindows& operator=(const ProbeWindows&) = delete;

    HWND Make(const char* name, DWORD style, RECT place, HWND parent = nullptr);
    // An active main window of 600 by 400 pixels at 100, 100. Clears the log.
    HWND MakeMain();
    // The entries for these messages, separated by commas. Clears the log.
    std::string Take(std::string_view messages);
};

// Runs the message loop for this time.
void PumpFor(unsigned ms);

// Keyboard input as from a user.
void PressKey(int key);
void HoldKey(int key);
void ReleaseKey(int key);
