// Every event of the running program: the main window's procedure, its decisions, and the place where
// exceptions stop.
#pragma once

#include "platform/win32.h"
#include "state/launcher.h"

// The main window's timer, on whose ticks the run and its log are followed.
inline constexpr UINT_PTR TICK_TIMER_ID = 1;

// The window procedure of the main window's class; the creation parameter is the address of the Launcher. No
// exception leaves it: the user is shown its text and the message counts as handled.
LRESULT CALLBACK LauncherWindowProc(HWND window, UINT message, WPARAM wparam, LPARAM lparam);

// Handles one message of the main window. May throw; for LauncherWindowProc alone.
LRESULT HandleMainMessage(Launcher& launcher, UINT message, WPARAM wparam, LPARAM lparam);
