// The running child processes, their exit codes, and the end of this process. Exit codes of Windows have 32
// bits, those of Linux have 8. A program that crashes ends by a signal on Linux and with an exception code on
// Windows.
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <utility>

#include "platform/host/hooks/call_hooks.h"
#include "platform/host/system/native.h"

namespace host {
namespace {

struct SignalCode {
    int signal_number;
    DWORD exit_code;
};

// The exit code that the same crash has on Windows.
constexpr auto SIGNAL_CODES = std::to_array<SignalCode>({
    {SIGSEGV, 0xC0000005},
    {SIGBUS, 0xC0000006},
    {SIGFPE, 0xC0000094},
    {SIGILL, 0xC000001D},
    {SIGTRAP, 0x80000003},
    {SIGABRT, 3},
});
constexpr DWORD OTHER_SIGNAL_CODE = 1;
constexpr UINT LARGEST_NATIVE_CODE = 255;

DWORD ExitCodeOf(int status) {
    if (WIFEXITED(status))
        return static_cast<DWORD>(WEXITSTATUS(status));
    for (const SignalCode& entry : SIGNAL_CODES)
        if (entry.signal_number == WTERMSIG(status))
            return entry.exit_code;
    return OTHER_SIGNAL_CODE;
}

std::vector<std::shared_ptr<ChildProcess>> running_children;

}  // namespace

void Reap(ChildProcess& child, int options) {
    int status = 0;
    pid_t ended = 0;
    do {
        ended = child.has_ended ? 0 : waitpid(child.process_id, &status, options);
    } while (ended < 0 && errno == EINTR);
    if (ended == 0)
        return;
    child.has_ended = true;
    child.claims.clear();
    child.exit_code = ended > 0 ? ExitCodeOf(status) : OTHER_SIGNAL_CODE;
}

void AddChild(std::shared_ptr<ChildProcess> child) {
    running_children.push_back(std::move(child));
}

void ReapChildren() {
    for (const auto& child : running_children)
        Reap(*child, WNOHANG);
    std::erase_if(running_children, [](const auto& child) { return child->has_ended; });
}

void ResetChildren() {
    running_children.clear();
}

}  // namespace host

[[noreturn]] void WINAPI ExitProcess(UINT exit_code) {
    if (exit_code <= host::LARGEST_NATIVE_CODE)
        _exit(static_cast<int>(exit_code));
    for (const host::SignalCode& entry : host::SIGNAL_CODES) {
        if (entry.exit_code == exit_code) {
            const rlimit no_core = {0, 0};
            setrlimit(RLIMIT_CORE, &no_core);
            signal(entry.signal_number, SIG_DFL);
            raise(entry.signal_number);
        }
    }
    host::NotImplemented("ExitProcess", "an exit code above 255 that no signal stands for");
}
