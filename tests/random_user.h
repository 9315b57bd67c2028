// The parts of the random user's sessions that differ between the two builds.
#pragma once

#include <cstddef>

extern const bool IS_TIME_SIMULATED;  // time passes only by PassTime
extern const std::size_t ACTIONS, ACTIONS_OF_LONG_TEST;

// Removes what an earlier session has left in this process: windows and window classes.
void BeginSession();
void PassTime(unsigned ms);
