// What a process got from the one that started it: descriptors on Linux, handles on Windows.
#pragma once

#include <string>
#include <vector>

// One text for each open descriptor, or each handle that is marked as inheritable, in the order of their
// values: the value, then the kind or the file where the platform tells.
std::vector<std::string> InheritedHandles();
