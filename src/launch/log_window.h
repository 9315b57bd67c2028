// The log window: shows the end of the last run's log. The window is created on demand, refreshed at every
// tick of the timer, and hidden when the user closes it.
#pragma once

#include "platform/win32.h"
#include "state/launcher.h"

// The maximum number of bytes that are read from a log. From a longer log, the last bytes are read.
inline constexpr DWORD LOG_TAIL_LIMIT = 0x100000;

// The class of the log window, whose procedure is LogWindowProc.
inline constexpr WCHAR LOG_WINDOW_CLASS[] = TEXT("VeldraneVmLog");

// Shows the log of the last run in the log window and puts the window in the foreground. If there is no
// log, only reports that in the status line. Throws when the type of the file cannot be queried or the
// window cannot be created.
void ShowLogWindow(Launcher& launcher);

// If the log window exists, shown or hidden, updates its text from the file. If the file cannot be opened
// or memory is short, keeps the old text. If the log has not changed, keeps the scroll position and the
// selection. Does not throw.
void RefreshLogWindow(Launcher& launcher);

// The message loop calls this for every message before it dispatches the message. If the log window itself
// has the focus, moves the focus to its text control and redirects a key message for the log window to
// that control. Selects the whole text if the message is Ctrl+A for the text control. Returns true for
// Ctrl+A only: the message then needs no further handling.
bool HandleLogKeys(const Launcher& launcher, MSG& message);

// The window procedure of the log window's class.
LRESULT CALLBACK LogWindowProc(HWND window, UINT message, WPARAM wparam, LPARAM lparam);
