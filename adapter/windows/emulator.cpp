// The emulator on Windows. Under Wine the emulator can be a Linux program. Such a program needs Unix paths,
// and Wine returns no handle of its process, so the program outlives an engine that is killed.
#include "adapter/emulator.h"

#include <stdexcept>

#include "base/path_ops.h"
#include "base/text_convert.h"
#include "base/windows_error.h"
#include "launch/engine_command.h"

namespace {

// The text that a platform call copies into a buffer; empty when the call fails or the text does not fit.
template <typename Query>
WideText TextOf(const Query& query) {
    WideText text(32768, WCHAR{});
    const DWORD length = query(text.data(), static_cast<DWORD>(text.size()));
    text.resize(length < text.size() ? length : 0);
    return text;
}

WideText Setting(const WCHAR* name) {
    return TextOf([&](WCHAR* text, DWORD size) { return GetEnvironmentVariableW(name, text, size); });
}

bool IsProgram(const WideText& path) {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

// Finds Wine's function that returns the Unix path of a file, which the caller frees. Null on Windows.
using UnixPathFunction = char*(CDECL*)(const WCHAR*);
UnixPathFunction FindUnixPathFunction() {
    const FARPROC exported =
        GetProcAddress(GetModuleHandleW(TEXT("kernel32.dll")), "wine_get_unix_file_name");
    return reinterpret_cast<UnixPathFunction>(reinterpret_cast<void*>(exported));
}

bool IsUnixProgram(const WideText& program) {
    return !program.ends_with(TEXT(".exe"));
}

[[noreturn]] void ThrowLaunchError(DWORD code) {
    throw std::runtime_error("Lancement de l'émulateur impossible : " + Utf8FromWide(WindowsErrorText(code)));
}

// Adds the process to a new job. When the job's handle is closed, also because the engine is killed, the
// process ends. On failure ends the process and throws.
OwnedHandle PutIntoJob(HANDLE process) {
    OwnedHandle job(CreateJobObjectW(nullptr, nullptr));
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
    limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
    if (SetInformationJobObject(job.Get(), JobObjectExtendedLimitInformation, &limits, sizeof limits) ==
            FALSE ||
        AssignProcessToJobObject(job.Get(), process) == FALSE) {
        const DWORD code = GetLastError();
        TerminateProcess(process, 1);
        ThrowLaunchError(code);
    }
    return job;
}

}  // namespace

WideText FindEmulator() {
    WideText named = Setting(TEXT("TESSARUN_QEMU"));
    if (IsProgram(named))
        return named;
    if (!named.empty())
        throw std::runtime_error("Émulateur introuvable : TESSARUN_QEMU nomme " + Utf8FromWide(named));
    const WideText folders =
        Setting(TEXT("PATH"));  // by default SearchPathW would also search the current folder
    for (const WCHAR* const name : {TEXT("qemu-system-i386.exe"), TEXT("qemu-system-x86_64.exe")}) {
        const WideText found = TextOf([&](WCHAR* text, DWORD size) {
            return SearchPathW(folders.c_str(), name, nullptr, size, text, nullptr);
        });
        const WideText usual = JoinPath(JoinPath(Setting(TEXT("ProgramFiles")), TEXT("qemu")), name);
        for (const WideText& path : {found, usual})
            if (!path.empty() && IsProgram(path))
                return path;
    }
    WideText unix_program = TEXT("Z:\\usr\\bin\\qemu-system-i386");
    if (FindUnixPathFunction() != nullptr && IsProgram(unix_program))
        return unix_program;
    throw std::runtime_error("Émulateur introuvable : installez QEMU pour Windows.");
}

WideText TemporaryFolder() {
    WideText folder = TextOf([](WCHAR* text, DWORD size) { return GetTempPathW(size, text); });
    while (folder.ends_with(TEXT('\\')))
        folder.pop_back();
    return folder;
}

std::string EmulatorPath(const WideText& program, const WideText& path) {
    const UnixPathFunction unix_path = FindUnixPathFunction();
    if (unix_path == nullptr || !IsUnixProgram(program))
        return Utf8FromWide(path);
    char* const native = unix_path(path.c_str());
    if (native == nullptr)
        throw std::runtime_error("Chemin incorrect : " + Utf8FromWide(path));
    std::string text = native;
    HeapFree(GetProcessHeap(), 0, native);
    return text;
}

bool HasDisplay() {
    return true;
}

Emulator::Emulator(const WideText& program, const std::vector<std::string>& arguments, std::uint32_t zoom) {
    WideText line = QuoteEngineArgument(program);
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
    if (CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, TRUE,
                       CREATE_NO_WINDOW | CREATE_SUSPENDED, nullptr, TemporaryFolder().c_str(), &startup,
                       &started) == FALSE)
        ThrowLaunchError(GetLastError());
    process_ = OwnedHandle(started.hProcess);
    const OwnedHandle thread(started.hThread);
    if (!process_)  // a Unix program
        return;
    job_ = PutIntoJob(process_.Get());
    ResumeThread(thread.Get());
}

Emulator::~Emulator() {
    if (!process_ || HasEnded())
        return;
    TerminateProcess(process_.Get(), 1);
    WaitForSingleObject(process_.Get(), 5000);
}

bool Emulator::HasEnded() {
    return process_ && WaitForSingleObject(process_.Get(), 0) == WAIT_OBJECT_0;
}
