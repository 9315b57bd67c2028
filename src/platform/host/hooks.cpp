// Faults, the trace, the clock and the last error.
#include "platform/host/hooks.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <thread>
#include <utility>

#include "platform/host/api/kernel32.h"

namespace host {
namespace {

struct Fault {
    std::string name;  // empty: any call
    unsigned calls_left;
    DWORD error;
};

struct HookState {
    std::vector<Fault> faults;
    unsigned faults_that_came = 0;
    bool tracing = false;
    std::vector<std::string> trace;
    std::map<std::string, std::vector<DWORD>> arguments;  // of the last traced call of each name
    std::string comes_up_short;                           // the call that does; empty for none
    std::uint64_t ms_per_look = 0;
    bool clock_is_taken = false;
    std::uint64_t taken_ms = 0;
    int own_calls = 0;
};

HookState& Hooks() {
    return Lasting<HookState>();
}

std::vector<void (*)()>& Operations() {
    static std::vector<void (*)()> operations;
    return operations;
}

thread_local DWORD last_error = ERROR_SUCCESS;

}  // namespace

void FailCall(const char* name, unsigned nth, DWORD error) {
    Hooks().faults.push_back({name, nth, error});
}

void FailNthCall(unsigned nth, DWORD error) {
    Hooks().faults.push_back({"", nth, error});
}

unsigned ClearFaults() {
    const unsigned came = Hooks().faults_that_came;
    Hooks().faults.clear();
    Hooks().faults_that_came = 0;
    return came;
}

void StartTrace() {
    Hooks().tracing = true;
    Hooks().trace.clear();
    Hooks().arguments.clear();
}

std::vector<std::string> Trace() {
    return Hooks().trace;
}

std::vector<DWORD> TracedArguments(const std::string& name) {
    return Hooks().arguments[name];
}

void MakeShort(const char* name) {
    Hooks().comes_up_short = name;
}

bool ComesUpShort(const char* name) {
    if (Hooks().comes_up_short != name)
        return false;
    Hooks().comes_up_short.clear();
    return true;
}

bool CallFails(const char* name, std::vector<DWORD> arguments) {
    HookState& state = Hooks();
    if (state.own_calls > 0)
        return false;
    if (state.tracing) {
        state.trace.emplace_back(name);
        state.arguments[name] = std::move(arguments);
    }
    // A call that succeeds may leave anything there.
    constexpr DWORD POISON = 0x5EED;
    last_error = POISON;
    bool fails = false;
    for (Fault& fault : state.faults) {
        if ((!fault.name.empty() && fault.name != name) || fault.calls_left == 0)
            continue;
        if (--fault.calls_left == 0) {
            SetLastError(fault.error);
            state.faults_that_came++;
            fails = true;
        }
    }
    return fails;
}

OwnCalls::OwnCalls() {
    ++Hooks().own_calls;
}

OwnCalls::~OwnCalls() {
    --Hooks().own_calls;
}

std::uint64_t Now() {
    if (Hooks().clock_is_taken)
        return Hooks().taken_ms += Hooks().ms_per_look;
    const auto since_start = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<std::uint64_t>(
        std::chrono::duration_cast<std::chrono::milliseconds>(since_start).count());
}

void TakeClock() {
    TakeClock(0);
}

void TakeClock(std::uint64_t ms_per_look) {
    Hooks().taken_ms = Now();
    Hooks().clock_is_taken = true;
    Hooks().ms_per_look = ms_per_look;
}

void MoveClock(std::uint64_t ms) {
    if (!Hooks().clock_is_taken)
        NotImplemented("MoveClock", "a clock that nobody has taken over");
    Hooks().taken_ms += ms;
}

bool ClockIsTaken() {
    return Hooks().clock_is_taken;
}

void OnReset(void (*make_anew)()) {
    Operations().push_back(make_anew);
}

void ResetLayer() {
    for (void (*const make_anew)() : Operations())
        make_anew();
    last_error = ERROR_SUCCESS;
}

void NotImplemented(const char* call, const char* what) {
    std::fprintf(stderr, "The layer does not implement this of %s: %s\n", call, what);
    std::abort();
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
    if (host::ClockIsTaken()) {
        host::MoveClock(milliseconds);
        return;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}
