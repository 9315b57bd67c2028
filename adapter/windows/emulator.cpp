// The emulator on Windows. Under Wine the emulator can be a Linux program, which needs Unix paths. Wine
// returns no handle of its process and gives it no standard error. So a shell starts it, writes its exit
// status into a file and ends it when this file disappears; the file disappears with the engine.
#include "adapter/emulator.h"

#include <cstdlib>
#include <stdexcept>

#include "adapter/files.h"
#include "base/file_system.h"
#include "base/path_ops.h"
#include "base/text_convert.h"
#include "launch/engine_command.h"

namespace {

constexpr const WCHAR* SHELL = TEXT("Z:\\bin\\sh");
// $0: the status file; $@: the emulator's command line.
constexpr const WCHAR* SHELL_SCRIPT =
    TEXT("\"$@\" 2>&1 & p=$!; (while [ -e \"$0\" ]; do sleep 1; done; kill -9 $p) >/dev/null 2>&1 & ")
        TEXT("wait $p; s=$?; kill $! 2>/dev/null; [ ! -e \"$0\" ] || echo $s >\"$0\"");

// Finds Wine's function that returns the Unix path of a file, which the caller frees. Null on Windows.
using UnixPathFunction = char*(CDECL*)(const WCHAR*);
UnixPathFunction FindUnixPathFunction() {
    const FARPROC exported =
        GetProcAddress(GetModuleHandleW(TEXT("kernel32.dll")), "wine_get_unix_file_name");
    return reinterpret_cast<UnixPathFunction>(reinterpret_cast<void*>(exported));
}

bool IsUnixProgram(const WideText& program) {
    return FindUnixPathFunction() != nullptr && !program.ends_with(TEXT(".exe"));
}

// Puts this process into a new job, which its child processes then belong to. When the job's handle is
// closed, also because the engine is killed, they end.
OwnedHandle EnterJob() {
    OwnedHandle job(CreateJobObjectW(nullptr, nullptr));
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
    limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
    if (AssignProcessToJobObject(job.Get(), GetCurrentProcess()) == FALSE ||
        SetInformationJobObject(job.Get(), JobObjectExtendedLimitInformation, &limits, sizeof limits) ==
            FALSE)
        ThrowFileSystemError("lancement impossible", GetLastError());
    return job;
}

}  // namespace

std::string Setting(const char* name) {
    const WCHAR* const value = _wgetenv(WideFromUtf8(name).c_str());
    return value == nullptr ? std::string() : Utf8FromWide(value);
}

std::vector<WideText> UsualPrograms() {
    std::vector<WideText> programs;
    for (const std::string& folder : Split(Setting("PATH") + ";" + Setting("ProgramFiles") + "\\qemu", ';'))
        for (const WCHAR* const name : {TEXT("qemu-system-x86_64.exe"), TEXT("qemu-system-i386.exe")})
            if (IsAbsolutePath(WideFromUtf8(folder)))
                programs.push_back(JoinPath(WideFromUtf8(folder), name));
    if (FindUnixPathFunction() != nullptr)
        programs.insert(programs.end(),
                        {TEXT("Z:\\usr\\bin\\qemu-system-x86_64"), TEXT("Z:\\usr\\bin\\qemu-system-i386")});
    return programs;
}

WideText TemporaryFolder() {
    WideText folder(MAX_PATH + 1, WCHAR{});
    folder.resize(GetTempPathW(MAX_PATH + 1, folder.data()));
    while (folder.ends_with(TEXT('\\')))
        folder.pop_back();
    return folder;
}

// An engine that still runs holds its files, so that they cannot be deleted.
void DeleteAbandonedFiles() {
    const WideText folder = TemporaryFolder();
    WIN32_FIND_DATAW found{};
    const HANDLE search =
        FindFirstFileW(JoinPath(folder, WideFromUtf8(TEMPORARY_PREFIX) + TEXT("*")).c_str(), &found);
    for (BOOL is_found = search != INVALID_HANDLE_VALUE; is_found != FALSE;
         is_found = FindNextFileW(search, &found))
        DeleteFileW(JoinPath(folder, found.cFileName).c_str());
    FindClose(search);
}

std::string EmulatorPath(const WideText& program, const WideText& path) {
    if (!IsUnixProgram(program))
        return Utf8FromWide(path);
    char* const native = FindUnixPathFunction()(path.c_str());
    if (native == nullptr)
        throw std::runtime_error("Chemin incorrect : " + Utf8FromWide(path));
    std::string text = native;
    HeapFree(GetProcessHeap(), 0, native);
    return text;
}

const char* OutputDevice(const WideText& program) {
    return IsUnixProgram(program) ? "stdio,signal=off" : "console";
}

Emulator::Emulator(const WideText& program, const std::vector<std::string>& arguments, std::uint32_t zoom) {
    const bool is_unix = IsUnixProgram(program);
    WideText line;
    if (is_unix) {
        const WideText status =
            JoinPath(TemporaryFolder(),
                     WideFromUtf8(TEMPORARY_PREFIX) + WideNumberText(GetCurrentProcessId()) + TEXT(".fin"));
        status_ =
            OwnedHandle(CreateFileW(status.c_str(), GENERIC_READ | DELETE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                    nullptr, CREATE_ALWAYS, FILE_FLAG_DELETE_ON_CLOSE, nullptr));
        if (!status_)
            ThrowFileSystemError("écriture impossible", GetLastError(), status);
        for (const WideText& word : {WideText(SHELL), WideText(TEXT("-c")), WideText(SHELL_SCRIPT),
                                     WideFromUtf8(EmulatorPath(program, status))})
            line += QuoteEngineArgument(word) + TEXT(" ");
    }
    line += QuoteEngineArgument(WideFromUtf8(EmulatorPath(program, program)));
    for (const std::string& argument : arguments)
        line += TEXT(" ") + QuoteEngineArgument(WideFromUtf8(argument));
    SetEnvironmentVariableW(TEXT("GDK_SCALE"), WideNumberText(zoom).c_str());
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = GetStdHandle(STD_INPUT_HANDLE);
    startup.hStdOutput = GetStdHandle(STD_OUTPUT_HANDLE);
    startup.hStdError = GetStdHandle(STD_ERROR_HANDLE);
    PROCESS_INFORMATION started{};
    if (!is_unix)
        static_cast<void>(EnterJob().Release());  // closed at the end of the process
    // Wine gives the standard output to a Linux program only with DETACHED_PROCESS.
    if (CreateProcessW(is_unix ? SHELL : program.c_str(), line.data(), nullptr, nullptr, TRUE,
                       is_unix ? DETACHED_PROCESS : CREATE_NO_WINDOW, nullptr, TemporaryFolder().c_str(),
                       &startup, &started) == FALSE)
        ThrowFileSystemError("lancement impossible", GetLastError(), program);
    process_ = OwnedHandle(started.hProcess);
    const OwnedHandle thread(started.hThread);
}

Emulator::~Emulator() {
    if (!process_ || End())
        return;
    TerminateProcess(process_.Get(), 1);
    WaitForSingleObject(process_.Get(), 5000);
}

std::optional<std::int64_t> Emulator::End() {
    if (status_) {
        std::string text(16, '\0');
        text.resize(ReadAt(status_.Get(), 0, text.data(), text.size()));
        const long status = std::strtol(text.c_str(), nullptr, 10);
        if (!text.ends_with('\n'))
            return std::nullopt;
        return status > 128 ? 128 - status : status;  // a shell adds 128 to the number of a signal
    }
    DWORD exit_code = 0;
    if (WaitForSingleObject(process_.Get(), 0) != WAIT_OBJECT_0 ||
        GetExitCodeProcess(process_.Get(), &exit_code) == FALSE)
        return std::nullopt;
    return exit_code;
}
