// What a test or the demonstration can ask of the layer that the platform itself does not offer: faults, the
// count of open handles, the clock. The layer's own calls report here.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
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

// For the layer: every call that can fail asks this first; true means that it must fail now, with the last
// error set.
bool CallFails(const char* name);

// --- handles ---

// How many kernel handles are open: files, processes, threads.
std::size_t OpenHandles();

// How many process attribute lists have been initialised and not deleted.
std::size_t OpenAttributeLists();

// --- the clock ---

// Milliseconds since some moment, as GetTickCount64 and the timers see them.
std::uint64_t Now();

// From here on the clock stands still but for MoveClock.
void TakeClock();
void MoveClock(std::uint64_t ms);
// True while the clock is taken over.
bool ClockIsTaken();

// --- places ---

// Where the program believes that its own file lies, as a Windows path; empty for the true place.
void SetModuleFile(std::u16string path);

// The Linux path of a full Windows path on drive C:, and the other way: "C:\tmp\a" is "/tmp/a". What is no
// such path comes back as an empty string.
std::string NativePath(std::u16string_view path);
std::u16string WidePath(std::string_view native);

// --- what is not there ---

// Aborts, naming the call and what of it is not implemented.
[[noreturn]] void NotImplemented(const char* call, const char* what);

}  // namespace host
