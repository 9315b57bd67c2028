// Functions for the layer's own files: faults at the start of a call, the clock, and the abort at a use that
// is not implemented.
#pragma once

#include <cstdint>
#include <vector>

#include "platform/host/api/base.h"

namespace host {

// Every platform call that can fail calls this first. True: the call must fail now, and the last error is the
// fault's. False: the last error may have any value. The arguments are stored for TracedArguments.
[[nodiscard]] bool CallFails(const char* name, std::vector<DWORD> arguments = {});

// True once after HalveTransfer for this call: the call must transfer only half of the requested bytes.
[[nodiscard]] bool IsHalved(const char* name);

// Faults and the trace are suspended while an object of this class exists: for the calls that the layer or a
// test makes itself.
class SuspendHooks {
public:
    SuspendHooks();
    ~SuspendHooks();
    SuspendHooks(const SuspendHooks&) = delete;
    SuspendHooks& operator=(const SuspendHooks&) = delete;
};

// The time of GetTickCount64 and of the timers, in milliseconds since an arbitrary moment. Each call advances
// a test clock by its `ms_per_reading`.
std::uint64_t Now();

// Whether a test controls the clock.
bool IsTestClock();

// Writes the name of the call and the part that is not implemented, with its number if there is one, to
// standard error; then aborts.
[[noreturn]] void NotImplemented(const char* call, const char* what);
[[noreturn]] void NotImplemented(const char* call, const char* what, std::uintptr_t number);

// For RecordExcludedRectangles.
void NoteExcludedRectangle(const RECT& rectangle);

// For ResetLayer: clears the faults, the trace, the test clock and the last error.
void ResetHooks();

}  // namespace host
