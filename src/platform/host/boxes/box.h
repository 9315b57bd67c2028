// A modal box of the layer: a window of class #32770 with controls, which its user answers while its owner
// waits. The message box and the file boxes are made of it. Nothing outside the layer includes this.
#pragma once

#include <functional>

#include "platform/host/api/base.h"
#include "platform/host/api/user32.h"

namespace host {

struct Box {
    HWND window = nullptr;
    HWND focus = nullptr;   // the control that has the focus, or gets it back with the activation
    int default_id = IDOK;  // the button of the Enter key
    int answer = IDCANCEL;  // the button that closed the box
    bool is_open = true;
    std::function<void(int id)> on_command;  // a button was pressed, or the box was cancelled
};

// In the client area of the box.
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

// Makes the hidden box, in the middle of its owner or of the screen. The box must stay where it is until
// RunBox is over. No fault strikes the windows of a box: they can always be made.
void MakeBox(Box& box, HWND owner, const WCHAR* title, int width, int height);

HWND AddToBox(const Box& box, const BoxControl& control);

LRESULT CALLBACK BoxProcedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam);

// From inside a command: the box closes with this answer.
void CloseBox(Box& box, int answer);

// Shows the box, with its owner disabled, until it is closed, and destroys it. Timers and everything else go
// on meanwhile. Gives the answer; IDCANCEL when the program is to quit.
int RunBox(Box& box);

}  // namespace host
