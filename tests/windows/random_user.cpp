// Sessions on the real platform, in real time.
#include "random_user.h"

#include "launcher_run.h"

const bool IS_TIME_SIMULATED = false;
const std::size_t ACTIONS = 300, ACTIONS_OF_LONG_TEST = 5000;

void BeginSession() {
    UnregisterWindowClasses();
}

void PassTime(unsigned) {}
