// The actions of a person who uses the program, for the tests and the demonstration: looks at its windows,
// clicks, types, presses keys, answers boxes, waits. Input is sent through the platform's input queue, so
// that hit-testing, the focus and disabled windows have the same effect as for a person. Only window handles
// and marshalled messages are used, so the program may run in this process or in another one.
#pragma once

#include <functional>
#include <string>

#include "platform/win32.h"
#include "state/launcher.h"

namespace user {

// The class of message boxes and file boxes.
inline constexpr WCHAR BOX_CLASS[] = TEXT("#32770");

// --- running the program in this process ---

// Runs RunLauncher on this thread and `story`, the user, on another one. The user's actions run on this
// thread, one at a time. After the story, the windows that it has left open are closed without saving.
// Returns the exit code of the program. Throws what the story throws.
int RunWithUserThread(Launcher& launcher, const std::function<void()>& story);

// Runs RunLauncher on this thread and, from a timer, calls `step`, the user, on the same thread: whenever the
// program has no message, no input and nothing to paint, also inside its modal boxes. The step may call all
// functions below; their input takes effect after the step has returned, and none of them waits. The step
// returns the milliseconds until its next call; after 0 it is not called again, and the windows that are open
// are closed without saving. `pass_time` is called with the milliseconds until the next step; a caller that
// controls the clock advances it there. Returns the exit code of the program. Throws what the step throws.
int RunWithUserCallback(Launcher& launcher, const std::function<unsigned()>& step,
                        const std::function<void(unsigned)>& pass_time);

// Runs `action` between two messages of the program, also inside its modal boxes. All functions below use it.
void Do(const std::function<void()>& action);

// Evaluates `condition` whenever an action can run, until it is true or the time is over. Returns true when
// it became true. At the time limit, a user on a thread of this process throws an exception that reports the
// texts on the screen; a user in another process returns false.
bool WaitUntil(const std::function<bool()>& condition, unsigned limit_ms = 15000);

// Blocks the user, not the program, for this time.
void Pause(unsigned ms);

// True once the program has ended; false at the time limit.
bool WaitForEnd(unsigned limit_ms = 15000);

// --- looking ---

// The program's windows; null when there is none. Box is the topmost message box or file box.
HWND MainWindow();
HWND LogWindow();
HWND Box();

HWND Control(UINT id);
WideText TextOf(HWND window);
WideText ControlText(UINT id);
bool IsEnabled(UINT id);
bool IsVisible(UINT id);
bool IsChecked(UINT id);
WideText Title();
WideText Status();

// The title bar's text and all static text of a message box, one line each.
std::string BoxText();

// True once the status line contains this text; at the time limit as WaitUntil.
bool WaitForStatus(WideView text, unsigned limit_ms = 15000);
bool WaitForBox();
bool WaitForNoBox();

// --- acting ---

// Waits until the control is visible and clicks in its middle, whether it is enabled or not.
void Click(UINT id);
void ClickWindow(HWND window);
void ClickAt(HWND window, int x, int y);  // client coordinates

void Type(WideView text);
void Press(WORD key);
void PressWith(WORD modifier, WORD key);

// Clicks into an edit field and replaces its text by typing.
void Fill(UINT id, WideView text);
void FillWindow(HWND field, WideView text);

// Selects the tab page with this index: a click on the first tab, then the arrow keys.
void ChooseTab(int index);

// Clicks a row of the module list; only where the program runs in this process.
void ChooseRow(int index);

// Clicks the box's button with this identifier.
void AnswerBox(int button_id);

// The field for the file's name in the open file box.
HWND FileNameField();

// Types a file's name into the file box and confirms it, or cancels the box.
void ChooseFile(WideView path);
void CancelFile();

void CloseMainWindow();
void ResizeClient(int width, int height);

}  // namespace user
