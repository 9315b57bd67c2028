// The window classes that are there without anyone's registering them: the standard and the common controls.
#pragma once

namespace host {

// Registers them. Called once, ahead of the first class or window of the program.
void RegisterControlClasses();

}  // namespace host
