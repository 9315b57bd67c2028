// The window classes that are there without anyone's registering them, and what their code may ask of the
// window files: the standard and the common controls, the message box and the file boxes are ordinary windows
// of the layer.
#pragma once

namespace host {

// Registers them. Called once, ahead of the first class or window of the program.
void RegisterControlClasses();

// While one of these lives, windows and classes are the layer's own: no fault that a test has asked for
// strikes them, and the trace leaves them out.
class OwnWindowCalls {
public:
    OwnWindowCalls();
    ~OwnWindowCalls();
    OwnWindowCalls(const OwnWindowCalls&) = delete;
    OwnWindowCalls& operator=(const OwnWindowCalls&) = delete;
};

}  // namespace host
