// Sessions over the layer, in simulated time.
#include "random_user.h"

#include "platform/host/hooks/test_hooks.h"

const bool IS_TIME_SIMULATED = true;
const std::size_t ACTIONS = 2000, ACTIONS_OF_LONG_TEST = 200000;

void BeginSession() {
    host::ResetLayer();
    host::UseTestClock();
}

void PassTime(unsigned ms) {
    host::AdvanceTestClock(ms);
}
