// Sessions on the platform itself, in real time.
#include "restless_user.h"

#include "launcher_run.h"

void BeginSession() {
    UnregisterWindowClasses();
}

bool TimeIsOurs() {
    return false;
}

void PassTime(unsigned) {}

std::size_t ActionsOf(bool is_long) {
    return is_long ? 5000 : 300;
}
