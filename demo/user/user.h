// What a person does with the program, for the tests and the demonstration: look at its windows, click, type,
// press keys, answer boxes, wait. Input goes through the platform's own input queue, so hit-testing, focus
// and disabled windows count as they do for a person. Only handles and marshalled messages cross over, so the
// program may run in this process or in another one.
#pragma once

#include <functional>
#include <string>

#include "platform/win32.h"
#include "state/launcher.h"

namespace user {

// --- acting beside the program ---

// Runs RunLauncher on this thread while `story` acts as the user on another one, one action at a time. What
// the story leaves open is closed without saving. Gives the exit code of the program. What the story throws
// is thrown here.
int RunWithUser(Launcher& launcher, const std::function<void()>& story);

// Runs RunLauncher on this thread and calls the user on it too, from a timer: each time that the program has
// no message, no input and nothing to paint any more, also inside its modal boxes. `step` may act by
// everything below, which only takes effect once it has returned, and never waits. It gives the milliseconds
// up to its next call, 0 for none: what is open then is closed without saving. `pass_time` is told each time
// how long the program will wait; whoever has taken the clock moves it there. Gives the exit code; throws
// what the step does.
int RunWithin(Launcher& launcher, const std::function<unsigned()>& step,
              const std::function<void(unsigned)>& pass_time);

// Runs `action` between two messages of the program, also inside its modal boxes. Everything below goes
// through it.
void Do(const std::function<void()>& action);

// Asks `condition` at every moment at which an action can run; true once it has come true. When it has not in
// time, a user beside the program ends his story there, by an exception that tells what was on the screen;
// one in another process gets false.
bool WaitUntil(const std::function<bool()>& condition, unsigned limit_ms = 15000);

// Lets the program go on for a while.
void Pause(unsigned ms);

// True once the program has ended; false when it has not in time.
bool WaitForEnd(unsigned limit_ms = 15000);

// --- looking ---

// The program's windows; null where there is none. A box is a message box or a file box, the one on top.
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

// True when the status line comes to hold this text in time.
bool WaitForStatus(WideView text, unsigned limit_ms = 15000);
bool WaitForBox();
bool WaitForNoBox();

// --- acting ---

// A click with the mouse in the middle of a control, once it is visible. A disabled one is clicked all the
// same.
void Click(UINT id);
void ClickWindow(HWND window);
void ClickAt(HWND window, int x, int y);  // client coordinates

void Type(WideView text);
void Press(WORD key);
void PressWith(WORD modifier, WORD key);

// Clicks into an edit field and replaces all that it holds by typing.
void Fill(UINT id, WideView text);
void FillWindow(HWND field, WideView text);

// The tab page with this index, by the mouse on the first header and then the arrow keys.
void ChooseTab(int index);

// A row of the module list, by the mouse; only where the program runs in this process.
void ChooseRow(int index);

// Presses the box's button with this identifier.
void AnswerBox(int button_id);

// The field for the file's name in the file box that is up.
HWND FileNameField();

// Types a file's name into a file box and confirms it, or cancels the box.
void ChooseFile(WideView path);
void CancelFile();

void CloseMainWindow();
void ResizeClient(int width, int height);

}  // namespace user
