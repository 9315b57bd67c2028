// What the layer's own files need: faults at the start of a call, the clock, and the refusal of what is not
// implemented.
#pragma once

#include <cstdint>
#include <vector>

#include "platform/host/api/base.h"

namespace host {

// Every call that can fail asks this first. True: the call must fail now; the last error is already set. The
// arguments are kept for TracedArguments.
[[nodiscard]] bool CallFails(const char* name, std::vector<DWORD> arguments = {});

// True once after HalveTransfer for this call: it must transfer only half of what it was asked for.
[[nodiscard]] bool IsHalved(const char* name);

// Suspends faults and the trace while one of these exists, for the calls that the layer or a test makes
// itself.
class SuspendHooks {
public:
    SuspendHooks();
    ~SuspendHooks();
    SuspendHooks(const SuspendHooks&) = delete;
    SuspendHooks& operator=(const SuspendHooks&) = delete;
};

// Milliseconds on the clock of GetTickCount64 and the timers; the start is arbitrary.
std::uint64_t Now();

// Whether a test controls the clock.
bool IsTestClock();

// Aborts and reports the call and what of it is not implemented, with its number if there is one.
[[noreturn]] void NotImplemented(const char* call, const char* what);
[[noreturn]] void NotImplemented(const char* call, const char* what, std::uintptr_t number);

// Clears the faults, the trace, the test clock and the last error, for ResetLayer.
void ResetHooks();

}  // namespace host
