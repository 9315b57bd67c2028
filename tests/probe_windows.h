// Windows that write down what they are told, for tests of the platform itself.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "platform/win32.h"

// Registers its window class when made; the windows go with it. One at a time.
struct ProbeWindows {
    std::map<HWND, std::string> names;
    std::vector<std::string> log;
    // Answers in the window's place where it gives true; the answer goes through the reference.
    std::function<bool(HWND, UINT, WPARAM, LRESULT&)> answers;

    explicit ProbeWindows(UINT class_style = 0);
    ~ProbeWindows();
    ProbeWindows(const ProbeWindows&) = delete;
    ProbeWindows& operator=(const ProbeWindows&) = delete;

    HWND Make(const char* name, DWORD style, RECT place, HWND parent = nullptr, int id = 0,
              DWORD extended_style = 0);
    // A visible main window of 600 by 400 at 100, 100 that has settled, with nothing in the log.
    HWND MakeMain(DWORD more_styles = 0);
    // Empties the log; of the messages only those that stand in the list, in the form "window MESSAGE, ...".
    std::string Take(std::string_view messages);
    std::string NameOf(HWND window) const;
};

// Runs the message loop for the time, or until the condition holds (then true; false after five seconds).
void PumpFor(unsigned ms, HWND dialog = nullptr);
bool PumpUntil(const std::function<bool()>& condition, HWND dialog = nullptr);

// Input as a user gives it.
void PressKey(int key);
void HoldKey(int key);
void ReleaseKey(int key);
void TypeCharacter(WCHAR character);
