// Sessions over the layer: the clock is the test's own.
#include "restless_user.h"

#include "platform/host/hooks/test_hooks.h"

void BeginSession() {
    host::ResetLayer();
    host::UseTestClock();
}

bool TimeIsOurs() {
    return true;
}

void PassTime(unsigned ms) {
    host::AdvanceTestClock(ms);
}

std::size_t ActionsOf(bool is_long) {
    return is_long ? 200000 : 2000;
}
