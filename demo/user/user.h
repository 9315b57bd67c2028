// The scripted user: the actions of a person who uses the program, for the tests and the demonstration. The
// user looks at windows, clicks, types, presses keys, answers boxes and waits. Input is sent through the
// platform's input queue, so that hit-testing, the focus and disabled windows have the same effect as for a
// person. The actions use only window handles and messages that work between processes, so the program may
// run in this process or, with exceptions noted below, in another one.
#pragma once

#include <functional>
#include <string>

#include "platform/win32.h"
#include "state/launcher.h"

namespace user {

// The class of message boxes and file boxes.
inline constexpr WCHAR BOX_CLASS[] = TEXT("#32770");

// --- running the program in this process ---

// Runs RunLauncher on this thread and `story`, which acts as the user, on another thread. The story's actions
// run on this thread, one at a time. After the story, the windows that are still open are closed without
// saving. Returns the exit code of the program. Throws what the story throws.
int RunWithUserThread(Launcher& launcher, const std::function<void()>& story);

// Runs RunLauncher on this thread and calls `step`, which acts as the user, from a timer on the same thread:
// whenever the program has no message, no input and nothing to paint, also inside its modal boxes. The step
// may call all functions below that do not wait; its input takes effect after the step has returned. The step
// returns the milliseconds until its next call. After it returns 0 it is not called again, and the windows
// that are still open are closed without saving. `pass_time` is called with the milliseconds until the next
// step; a caller that controls the clock advances the clock there. Returns the exit code of the program.
// Throws what the step throws.
int RunWithUserCallback(Launcher& launcher, const std::function<unsigned()>& step,
                        const std::function<void(unsigned)>& pass_time);

// Runs `action` on the program's thread, between two messages, also inside the program's modal boxes. A
// program in another process has no such thread here: then it runs at once. Throws what the action throws,
// and when a program in this process has ended. Most functions below use OnProgramThread.
void OnProgramThread(const std::function<void()>& action);

// Evaluates `condition` on the program's thread again and again until it is true. Returns true when it has
// become true, false when the program has ended before. Throws at the time limit. Only for the user's own
// thread, like all functions below that wait.
bool WaitUntil(const std::function<bool()>& condition, unsigned limit_ms = 15000);

// The user waits for this time; the program continues.
void Pause(unsigned ms);

// Waits for the end of the program. Returns false at the time limit.
bool WaitForEnd(unsigned limit_ms = 15000);

// --- looking ---

// Each returns a window of the program, or null when it does not exist. Box returns the topmost message box
// or file box.
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

// The text of the box's title bar and of each static control, separated by line feeds.
std::string BoxText();

// WaitForStatus waits until the status line has exactly this text, WaitForBox until a box is open,
// WaitForNoBox until none is. Results and errors as for WaitUntil.
bool WaitForStatus(WideView text, unsigned limit_ms = 15000);
bool WaitForBox();
bool WaitForNoBox();

// --- acting ---

// Waits until the control or window is visible and clicks in its middle, whether it is enabled or not.
void Click(UINT id);
void ClickWindow(HWND window);
void ClickAt(HWND window, int x, int y);  // client coordinates

void Type(WideView text);
void Press(WORD key);
void PressWith(WORD modifier, WORD key);

// Clicks into an edit field, deletes its text and types the new text.
void Fill(UINT id, WideView text);
void FillWindow(HWND field, WideView text);

// Selects the tab page with this index: a click on the first tab, then the arrow keys.
void ChooseTab(int index);

// Clicks a row of the module list. Works only with a program in this process.
void ChooseRow(int index);

// Clicks the box's button with this identifier.
void AnswerBox(int button_id);

// The field for the file's name in the open file box; null when no file box is open.
HWND FileNameField();

// ChooseFile types a file's name into the file box and confirms it; CancelFile cancels the box. Both wait
// until the box is closed.
void ChooseFile(WideView path);
void CancelFile();

void CloseMainWindow();
void ResizeClient(int width, int height);

}  // namespace user
