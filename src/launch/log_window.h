// The log window: the end of the last run's log, made on demand, kept in step at every tick, hidden instead
// of closed.
#pragma once

#include "platform/win32.h"
#include "state/launcher.h"

// The most that is ever read of a log, in bytes, from its end.
inline constexpr DWORD LOG_TAIL_LIMIT = 0x100000;

// The class of the log window, whose procedure is LogWindowProc.
inline constexpr WCHAR LOG_WINDOW_CLASS[] = TEXT("VeldraneVmLog");

// Shows the log of the last run in its window, in front; says so in the status line when there is none.
// Throws when the file cannot be looked at or the window cannot be made.
void ShowLogWindow(Launcher& launcher);

// Brings the text of an existing log window, shown or hidden, in step with the file. A log that cannot be
// opened, or is too long for the memory that is left, leaves the text as it is. An unchanged log leaves
// scroll position and selection alone. Nothing is thrown.
void RefreshLogWindow(Launcher& launcher);

// For every message that the message loop has taken out, before it is dispatched: where the log window itself
// has the keyboard, its text gets it, with the key that was on its way; Ctrl+A selects the whole text. True
// when nothing more is to be done with the message.
bool HandleLogKeys(const Launcher& launcher, MSG& message);

// The window procedure of the log window's class.
LRESULT CALLBACK LogWindowProc(HWND window, UINT message, WPARAM wparam, LPARAM lparam);
