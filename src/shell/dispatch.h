// The window procedure of the main window. It handles the commands, the notifications and the timer.
#pragma once

#include "platform/win32.h"
#include "state/launcher.h"

// The class of the main window, whose procedure is LauncherWindowProc.
inline constexpr WCHAR MAIN_WINDOW_CLASS[] = TEXT("VeldraneVmLauncher");

// The timer of the main window. Its ticks poll the engine and refresh the log window.
inline constexpr UINT_PTR TICK_TIMER_ID = 1;

// The window procedure of the main window's class. The last argument of CreateWindowExW must be the
// address of the Launcher. Does not throw: an exception is shown to the user, and the message counts as
// handled (result 0). After an exception in WM_CREATE the result is -1 instead, and the creation of the
// window fails.
LRESULT CALLBACK LauncherWindowProc(HWND window, UINT message, WPARAM wparam, LPARAM lparam);

// Handles one message of the main window. May throw. Only LauncherWindowProc calls it.
LRESULT HandleMainMessage(Launcher& launcher, UINT message, WPARAM wparam, LPARAM lparam);
