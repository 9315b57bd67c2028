// The descriptors (Linux) or handles (Windows) that the process has inherited.
#pragma once

#include <string>
#include <vector>

// Returns one line for each open descriptor (Linux) or inheritable handle (Windows), in ascending order: the
// value, then the file or the kind of object. Throws when the descriptors cannot be listed.
std::vector<std::string> InheritedHandles();
