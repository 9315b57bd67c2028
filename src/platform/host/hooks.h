// What a test may do to the layer: make calls fail, write down which were made, take the clock over. And what
// every call of the layer starts from: the last error, and the loud refusal of what is not implemented.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/host/api/base.h"

namespace host {

// --- faults ---

// The nth call (1 = the next one) of the named platform call fails with the error code. Several can be set.
void FailCall(const char* name, unsigned nth, DWORD error);

// The nth call (1 = the next one) of any platform call that can fail fails with the error code.
void FailNthCall(unsigned nth, DWORD error);

// Forgets the faults that have been set; gives how many of them had come to pass.
unsigned ClearFaults();

// The names of the calls that can fail, in the order in which they were made since the last StartTrace.
void StartTrace();
std::vector<std::string> Trace();

// What the last traced call of this name was given beside its texts, in its own order; empty without one.
// Kept for CreateFileW (access, sharing, disposition), MoveFileExW (flags), SetTimer (period), CreateProcessW
// (flags) and InitCommonControlsEx (classes).
std::vector<DWORD> TracedArguments(const std::string& name);

// The next call of this name, ReadFile or WriteFile, does only half of what it is asked for, and succeeds.
void MakeShort(const char* name);

// Every call that can fail asks this first; true means that it must fail now, with the last error set.
bool CallFails(const char* name, std::vector<DWORD> arguments = {});
bool ComesUpShort(const char* name);

// While one of these lives, calls are the layer's own: no fault strikes them, and the trace leaves them out.
class OwnCalls {
public:
    OwnCalls();
    ~OwnCalls();
    OwnCalls(const OwnCalls&) = delete;
    OwnCalls& operator=(const OwnCalls&) = delete;
};

// --- the clock ---

// Milliseconds since some moment, as GetTickCount64 and the timers see them.
std::uint64_t Now();

// From here on the clock stands still but for MoveClock.
void TakeClock();
// With `ms_per_look` the time that it tells grows by so much each time that somebody looks.
void TakeClock(std::uint64_t ms_per_look);
void MoveClock(std::uint64_t ms);
// True while the clock is taken over.
bool ClockIsTaken();

// --- what lasts from call to call ---

// For ResetLayer alone: an operation that makes a record anew.
void OnReset(void (*make_anew)());

// The one record of its type. Every file of the layer keeps in such a one what lasts from call to call.
template <typename Record>
Record& Lasting() {
    static Record record = (OnReset([] { Lasting<Record>() = Record(); }), Record());
    return record;
}

// Everything as at the start of the program: no window, no class of the program's, no message, no timer, no
// handle, no fault, the real clock. Windows go without a word.
void ResetLayer();

// --- what is not there ---

// Aborts, naming the call and what of it is not implemented.
[[noreturn]] void NotImplemented(const char* call, const char* what);

}  // namespace host
