// The log window: shows the end of the last run's log. It is created on demand, refreshed at every tick of
// the timer, and hidden instead of closed.
#pragma once

#include "platform/win32.h"
#include "state/launcher.h"

// The most bytes that are read of a log; of a longer one, the last ones.
inline constexpr DWORD LOG_TAIL_LIMIT = 0x100000;

// The class of the log window, whose procedure is LogWindowProc.
inline constexpr WCHAR LOG_WINDOW_CLASS[] = TEXT("VeldraneVmLog");

// Shows the log of the last run in its window, in the foreground. Without a log, only the status line says
// so. Throws when the type of the file cannot be queried or the window cannot be created.
void ShowLogWindow(Launcher& launcher);

// Updates the text of an existing log window, shown or hidden, from the file. When the file cannot be opened
// or memory is short, the text stays as it is. While the log is unchanged, so are the scroll position and the
// selection. Does not throw.
void RefreshLogWindow(Launcher& launcher);

// The message loop calls this for every message before it dispatches the message. When the log window itself
// has the focus, its text control gets the focus and, for a key message, the message. Ctrl+A selects the
// whole text; true means that the message was this key and needs no further handling.
bool HandleLogKeys(const Launcher& launcher, MSG& message);

// The window procedure of the log window's class.
LRESULT CALLBACK LogWindowProc(HWND window, UINT message, WPARAM wparam, LPARAM lparam);
