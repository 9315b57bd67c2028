// A modal box: a window of class #32770 with controls. The message box and the file boxes are such boxes. The
// owner is disabled until the user answers.
#pragma once

#include <functional>

#include "platform/host/api/base.h"
#include "platform/host/api/user32.h"

namespace host {

struct Box {
    HWND window = nullptr;
    HWND focus = nullptr;   // the control that gets the focus when the box is activated
    int default_id = IDOK;  // the button that Enter presses
    int answer = IDCANCEL;  // the identifier of the button that closed the box
    bool is_open = true;
    std::function<void(int id)> on_command;  // called when a button is pressed or the box is cancelled
};

// A rectangle in client coordinates of the box.
struct Place {
    int left;
    int top;
    int width;
    int height;
};

struct BoxControl {
    const WCHAR* class_name;
    const WCHAR* text;
    int id;
    DWORD style;
    Place place;
};

// Creates the window of the box, hidden, in the middle of its owner or of the screen. The record must keep
// its address until RunBox has returned. Faults do not apply to the windows of a box.
void MakeBox(Box& box, HWND owner, const WCHAR* title, int width, int height);

HWND AddToBox(const Box& box, const BoxControl& control);

LRESULT CALLBACK BoxProcedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam);

// Closes the box with this answer. For use in `on_command`.
void CloseBox(Box& box, int answer);

// Shows the box, runs a message loop until the box is closed, then destroys the box. Returns the answer. A
// WM_QUIT ends the loop with IDCANCEL and is posted again.
int RunBox(Box& box);

// --- for ResetLayer ---

void ResetLastFileBox();

}  // namespace host
