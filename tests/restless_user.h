// What the restless user's sessions need of each build.
#pragma once

#include <cstddef>

// Makes the program's windows and the time new for a session.
void BeginSession();
// Whether time only passes by PassTime.
bool TimeIsOurs();
void PassTime(unsigned ms);
std::size_t ActionsOf(bool is_long);
