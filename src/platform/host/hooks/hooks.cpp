// Faults, the trace, the clock and the last error.
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <thread>
#include <utility>

#include "platform/host/api/kernel32.h"
#include "platform/host/hooks/call_hooks.h"
#include "platform/host/hooks/test_hooks.h"

namespace host {
namespace {

struct Fault {
    std::string name;  // empty: any call
    unsigned calls_left;
    DWORD error;
};

struct Hooks {
    std::vector<Fault> faults;
    unsigned failed_calls = 0;
    bool tracing = false;
    std::vector<std::string> trace;
    std::map<std::string, std::vector<DWORD>> arguments;  // of the last traced call of each name
    std::string halved_call;                              // empty: none
    bool is_test_clock = false;
    std::uint64_t test_clock_ms = 0;
    std::uint64_t ms_per_reading = 0;
    std::vector<RECT>* excluded = nullptr;
    int suspensions = 0;
};

Hooks hooks;
thread_local DWORD last_error = ERROR_SUCCESS;

}  // namespace

void FailCall(const char* name, unsigned nth, DWORD error) {
    hooks.faults.push_back({name, nth, error});
}

void FailNthCall(unsigned nth, DWORD error) {
    hooks.faults.push_back({"", nth, error});
}

unsigned ClearFaults() {
    hooks.faults.clear();
    return std::exchange(hooks.failed_calls, 0);
}

void HalveTransfer(const char* name) {
    hooks.halved_call = name;
}

void StartTrace() {
    hooks.tracing = true;
    hooks.trace.clear();
    hooks.arguments.clear();
}

std::vector<std::string> Trace() {
    return hooks.trace;
}

std::vector<DWORD> TracedArguments(const std::string& name) {
    return hooks.arguments[name];
}

void UseTestClock(std::uint64_t ms_per_reading) {
    hooks.test_clock_ms = Now();
    hooks.is_test_clock = true;
    hooks.ms_per_reading = ms_per_reading;
}

void AdvanceTestClock(std::uint64_t ms) {
    if (!hooks.is_test_clock)
        NotImplemented("AdvanceTestClock", "advancing the real clock");
    hooks.test_clock_ms += ms;
}

bool CallFails(const char* name, std::vector<DWORD> arguments) {
    if (hooks.suspensions > 0)
        return false;
    if (hooks.tracing) {
        hooks.trace.emplace_back(name);
        hooks.arguments[name] = std::move(arguments);
    }
    // A call that succeeds may leave any last error.
    constexpr DWORD POISON = 0x5EED;
    last_error = POISON;
    bool fails = false;
    for (Fault& fault : hooks.faults) {
        if ((!fault.name.empty() && fault.name != name) || fault.calls_left == 0)
            continue;
        if (--fault.calls_left == 0) {
            last_error = fault.error;
            hooks.failed_calls++;
            fails = true;
        }
    }
    return fails;
}

bool IsHalved(const char* name) {
    if (hooks.halved_call != name)
        return false;
    hooks.halved_call.clear();
    return true;
}

SuspendHooks::SuspendHooks() {
    ++hooks.suspensions;
}

SuspendHooks::~SuspendHooks() {
    --hooks.suspensions;
}

std::uint64_t Now() {
    if (hooks.is_test_clock)
        return hooks.test_clock_ms += hooks.ms_per_reading;
    const auto since_start = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<std::uint64_t>(
        std::chrono::duration_cast<std::chrono::milliseconds>(since_start).count());
}

bool IsTestClock() {
    return hooks.is_test_clock;
}

void NotImplemented(const char* call, const char* what) {
    std::fprintf(stderr, "The layer does not implement this of %s: %s\n", call, what);
    std::abort();
}

void NotImplemented(const char* call, const char* what, std::uintptr_t number) {
    std::fprintf(stderr, "The layer does not implement this of %s: %s 0x%04zX\n", call, what, number);
    std::abort();
}

void RecordExcludedRectangles(std::vector<RECT>* rectangles) {
    hooks.excluded = rectangles;
}

void NoteExcludedRectangle(const RECT& rectangle) {
    if (hooks.excluded != nullptr)
        hooks.excluded->push_back(rectangle);
}

void ResetHooks() {
    hooks = {};
    last_error = ERROR_SUCCESS;
}

}  // namespace host

DWORD WINAPI GetLastError() {
    return host::last_error;
}

void WINAPI SetLastError(DWORD code) {
    host::last_error = code;
}

ULONGLONG WINAPI GetTickCount64() {
    return host::Now();
}

void WINAPI Sleep(DWORD milliseconds) {
    if (host::hooks.is_test_clock) {
        host::AdvanceTestClock(milliseconds);
        return;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}
