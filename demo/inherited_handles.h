// The descriptors (Linux) or handles (Windows) that the process has inherited.
#pragma once

#include <string>
#include <vector>

// One line for each open descriptor, or for each inheritable handle, in the order of their values: the value,
// then the file or the kind of object.
std::vector<std::string> InheritedHandles();
