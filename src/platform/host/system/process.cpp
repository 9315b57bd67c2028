// Starts child processes (attribute list, command line, streams), waits for their end, and returns the path
// of the program itself.
#include <fcntl.h>
#include <limits.h>
#include <signal.h>
#include <spawn.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include "platform/host/api/kernel32.h"
#include "platform/host/hooks/call_hooks.h"
#include "platform/host/hooks/test_hooks.h"
#include "platform/host/system/native.h"

namespace host {
namespace {

constexpr std::size_t STREAMS = 3;
constexpr DWORD ATTRIBUTE_LIST_MARK = 0x4C415054;

// The content of the caller's buffer for an attribute list.
struct AttributeList {
    DWORD mark;
    DWORD count;
    const HANDLE* handles;  // the caller's array; null until UpdateProcThreadAttribute
    std::size_t handle_count;
};

struct ProcessCalls {
    std::size_t attribute_lists = 0;
    std::u16string module_file;  // empty: the true path
};

ProcessCalls process_calls;

ChildProcess* FindProcess(HANDLE handle, const char* call) {
    const KernelObject* const object = FindObject(handle);
    if (object == nullptr)
        return nullptr;
    if (object->process == nullptr)
        NotImplemented(call, "a handle that is not that of a process");
    ReapChildren();
    return object->process.get();
}

// --- the command line ---

// The program's name ends at the first blank outside quotes; backslashes have no meaning in it.
std::u16string TakeProgramName(std::u16string_view& line) {
    std::u16string name;
    bool is_quoted = false;
    while (!line.empty() && (is_quoted || (line.front() != u' ' && line.front() != u'\t'))) {
        if (line.front() == u'"')
            is_quoted = !is_quoted;
        else
            name += line.front();
        line.remove_prefix(1);
    }
    return name;
}

// Takes a run of backslashes (also an empty one) and the quote after it, if there is one. Without a quote,
// the backslashes are characters of the argument. Before a quote, each pair of backslashes is one character.
// The quote itself is a character after an odd number of backslashes, and when it is the first of two quotes
// inside quotes; any other quote starts or ends quoting.
void TakeBackslashesAndQuote(std::u16string_view& line, std::u16string& argument, bool& is_quoted) {
    const std::size_t run = std::min(line.find_first_not_of(u'\\'), line.size());
    line.remove_prefix(run);
    if (!line.starts_with(u'"')) {
        argument.append(run, u'\\');
        return;
    }
    argument.append(run / 2, u'\\');
    line.remove_prefix(1);
    if (run % 2 != 0) {
        argument += u'"';
    } else if (is_quoted && line.starts_with(u'"')) {
        argument += u'"';
        line.remove_prefix(1);
    } else {
        is_quoted = !is_quoted;
    }
}

std::u16string TakeArgument(std::u16string_view& line) {
    std::u16string argument;
    bool is_quoted = false;
    while (!line.empty() && (is_quoted || (line.front() != u' ' && line.front() != u'\t'))) {
        if (line.front() == u'\\' || line.front() == u'"') {
            TakeBackslashesAndQuote(line, argument, is_quoted);
        } else {
            argument += line.front();
            line.remove_prefix(1);
        }
    }
    return argument;
}

void SkipBlanks(std::u16string_view& line) {
    line.remove_prefix(std::min(line.find_first_not_of(u" \t"), line.size()));
}

// Adds the arguments in UTF-8. False if one of them is ill-formed.
bool SplitCommandLine(std::u16string_view line, std::vector<std::string>& arguments) {
    std::optional<std::string> argument = ToUtf8(TakeProgramName(line));
    for (SkipBlanks(line); argument && !line.empty(); SkipBlanks(line)) {
        arguments.push_back(*argument);
        argument = ToUtf8(TakeArgument(line));
    }
    if (argument)
        arguments.push_back(*argument);
    return argument.has_value();
}

// --- starting ---

struct StartRequest {
    std::string program;
    std::string folder;
    std::vector<std::string> arguments;
    const AttributeList* list = nullptr;      // the only handles that the child may inherit; null: all
    std::array<Descriptor, STREAMS> streams;  // -1: the child does not get this stream
    std::vector<int> more;                    // other descriptors that the child inherits
    std::vector<std::shared_ptr<const ShareClaim>> claims;
    bool leaves_terminal = false;
};

void CheckStartArguments(LPCWSTR application, LPSECURITY_ATTRIBUTES process_security,
                         LPSECURITY_ATTRIBUTES thread_security, DWORD flags, LPVOID environment) {
    if (application == nullptr)
        NotImplemented("CreateProcessW", "a program that is named only in the command line");
    if (process_security != nullptr || thread_security != nullptr || environment != nullptr)
        NotImplemented("CreateProcessW", "security attributes or another environment");
    if ((flags & ~(CREATE_NO_WINDOW | EXTENDED_STARTUPINFO_PRESENT)) != 0)
        NotImplemented("CreateProcessW", "this flag");
}

AttributeList* ListIn(LPPROC_THREAD_ATTRIBUTE_LIST list, const char* call) {
    auto* const attributes = reinterpret_cast<AttributeList*>(list);
    if (attributes == nullptr || attributes->mark != ATTRIBUTE_LIST_MARK)
        NotImplemented(call, "an attribute list that is not initialised");
    return attributes;
}

// Sets the list of handles in the request, if there is one.
bool ReadHandleList(const STARTUPINFOW& startup, DWORD flags, BOOL inherit_handles, StartRequest& request) {
    const bool is_extended = (flags & EXTENDED_STARTUPINFO_PRESENT) != 0;
    if (startup.cb != (is_extended ? sizeof(STARTUPINFOEXW) : sizeof(STARTUPINFOW)))
        return Fail(ERROR_INVALID_PARAMETER);
    const auto& extended = reinterpret_cast<const STARTUPINFOEXW&>(startup);
    if (!is_extended || extended.lpAttributeList == nullptr)
        return true;
    const AttributeList& list = *ListIn(extended.lpAttributeList, "CreateProcessW");
    if (list.handles == nullptr)
        return true;
    request.list = &list;
    const auto can_be_inherited = [](HANDLE handle) {
        const OpenFile* const file = FindFile(handle);
        return file != nullptr && file->is_inheritable;
    };
    const bool can_inherit = inherit_handles != FALSE &&
                             std::all_of(list.handles, list.handles + list.handle_count, can_be_inherited);
    return can_inherit || Fail(ERROR_INVALID_PARAMETER);
}

bool IsListed(HANDLE handle, const AttributeList* list) {
    return list == nullptr || std::find(list->handles, list->handles + list->handle_count, handle) !=
                                  list->handles + list->handle_count;
}

// Copies the streams to descriptors above the standard three, so that setting one stream of the child does
// not overwrite the source of another.
bool CopyStreams(const STARTUPINFOW& startup, BOOL inherit_handles, StartRequest& request) {
    if ((startup.dwFlags & STARTF_USESTDHANDLES) == 0 || inherit_handles == FALSE)
        return true;
    const std::array<HANDLE, STREAMS> handles = {startup.hStdInput, startup.hStdOutput, startup.hStdError};
    for (std::size_t at = 0; at < STREAMS; at++) {
        const OpenFile* const file = IsListed(handles[at], request.list) ? FindFile(handles[at]) : nullptr;
        if (file == nullptr || !file->is_inheritable)
            continue;
        const int copy = fcntl(file->descriptor.number, F_DUPFD_CLOEXEC, static_cast<int>(STREAMS));
        if (copy < 0)
            return Fail(ErrorOf(errno));
        request.streams[at] = Descriptor(copy);
        if (file->claim != nullptr)
            request.claims.push_back(file->claim);
    }
    return true;
}

bool IsFolder(const std::string& native) {
    struct stat status = {};
    return stat(native.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

// Sets the native paths of the program and of the child's current folder. The program's path is relative to
// the current folder of this process.
bool SetPaths(LPCWSTR application, LPCWSTR folder, StartRequest& request) {
    const std::optional<std::string> program = ToNativePath(application);
    if (!program)
        return false;
    request.program = *program;
    if (IsFolder(request.program))
        return Fail(ERROR_ACCESS_DENIED);
    if (access(request.program.c_str(), F_OK) != 0)
        return Fail(ErrorOf(errno, request.program));
    if (folder == nullptr)
        return true;
    const std::optional<std::string> native_folder = ToNativePath(folder);
    if (!native_folder || !IsFolder(*native_folder))
        return Fail(ERROR_DIRECTORY);
    request.folder = *native_folder;
    return true;
}

// Adds the actions that the child performs before it executes the program.
void PrepareActions(const StartRequest& request, posix_spawn_file_actions_t& actions) {
    if (!request.folder.empty())
        posix_spawn_file_actions_addchdir_np(&actions, request.folder.c_str());
    for (std::size_t at = 0; at < STREAMS; at++) {
        const int stream = static_cast<int>(at);
        if (request.streams[at].number >= 0)
            posix_spawn_file_actions_adddup2(&actions, request.streams[at].number, stream);
        else
            posix_spawn_file_actions_addclose(&actions, stream);
    }
    // In ascending order, so that no copy overwrites a descriptor that is still to be copied.
    int next = static_cast<int>(STREAMS);
    for (const int inherited : request.more)
        posix_spawn_file_actions_adddup2(&actions, inherited, next++);
    posix_spawn_file_actions_addclosefrom_np(&actions, next);
}

// Starts the child. Returns 0, or an errno value if that fails.
int Spawn(StartRequest& request, pid_t& process_id) {
    std::vector<char*> arguments;
    for (std::string& argument : request.arguments)
        arguments.push_back(argument.data());
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    PrepareActions(request, actions);
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    // A child without a console window must not receive the signals of our terminal.
    posix_spawnattr_setflags(&attributes, request.leaves_terminal ? POSIX_SPAWN_SETSID : 0);
    const int error =
        posix_spawn(&process_id, request.program.c_str(), &actions, &attributes, arguments.data(), environ);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
    return error;
}

// The Windows error for a failed start. For a file without the permission to execute it, Linux reports EACCES
// and Windows ERROR_BAD_EXE_FORMAT.
DWORD StartError(int error, const std::string& program) {
    struct stat status = {};
    constexpr mode_t ANY_EXECUTE_BIT = 0111;
    if (error == EACCES && stat(program.c_str(), &status) == 0 && (status.st_mode & ANY_EXECUTE_BIT) == 0)
        return ERROR_BAD_EXE_FORMAT;
    return ErrorOf(error, program);
}

BOOL Start(StartRequest& request, LPPROCESS_INFORMATION information) {
    auto child = std::make_shared<ChildProcess>();
    pid_t process_id = 0;
    if (const int error = Spawn(request, process_id); error != 0)
        return Fail(StartError(error, request.program));
    child->process_id = process_id;
    child->claims = std::move(request.claims);
    AddChild(child);
    const auto number = static_cast<DWORD>(process_id);
    *information = {AddHandle({nullptr, child}), AddHandle({}), number, number};
    return TRUE;
}

}  // namespace

std::size_t OpenAttributeLists() {
    return process_calls.attribute_lists;
}

void SetModuleFile(std::u16string path) {
    process_calls.module_file = std::move(path);
}

void ResetProcessCalls() {
    process_calls = {};
}

}  // namespace host

BOOL WINAPI InitializeProcThreadAttributeList(LPPROC_THREAD_ATTRIBUTE_LIST list, DWORD count, DWORD flags,
                                              SIZE_T* size) {
    if (host::CallFails("InitializeProcThreadAttributeList"))
        return FALSE;
    if (flags != 0 || count != 1)
        host::NotImplemented("InitializeProcThreadAttributeList", "anything but one attribute without flags");
    const SIZE_T given = *size;
    *size = sizeof(host::AttributeList);
    if (list == nullptr || given < sizeof(host::AttributeList))
        return host::Fail(ERROR_INSUFFICIENT_BUFFER);
    *reinterpret_cast<host::AttributeList*>(list) = {host::ATTRIBUTE_LIST_MARK, count, nullptr, 0};
    host::process_calls.attribute_lists++;
    return TRUE;
}

BOOL WINAPI UpdateProcThreadAttribute(LPPROC_THREAD_ATTRIBUTE_LIST list, DWORD flags, DWORD_PTR attribute,
                                      PVOID value, SIZE_T size, PVOID previous_value, SIZE_T* return_size) {
    if (host::CallFails("UpdateProcThreadAttribute"))
        return FALSE;
    host::AttributeList* const attributes = host::ListIn(list, "UpdateProcThreadAttribute");
    if (attribute != PROC_THREAD_ATTRIBUTE_HANDLE_LIST || flags != 0 || previous_value != nullptr ||
        return_size != nullptr)
        host::NotImplemented("UpdateProcThreadAttribute", "anything but a list of handles");
    if (value == nullptr || size == 0 || size % sizeof(HANDLE) != 0)
        return host::Fail(ERROR_BAD_LENGTH);
    attributes->handles = static_cast<const HANDLE*>(value);
    attributes->handle_count = size / sizeof(HANDLE);
    return TRUE;
}

void WINAPI DeleteProcThreadAttributeList(LPPROC_THREAD_ATTRIBUTE_LIST list) {
    *host::ListIn(list, "DeleteProcThreadAttributeList") = {};
    host::process_calls.attribute_lists--;
}

BOOL WINAPI CreateProcessW(LPCWSTR application, LPWSTR command_line, LPSECURITY_ATTRIBUTES process_security,
                           LPSECURITY_ATTRIBUTES thread_security, BOOL inherit_handles, DWORD flags,
                           LPVOID environment, LPCWSTR current_directory, LPSTARTUPINFOW startup,
                           LPPROCESS_INFORMATION information) {
    if (host::CallFails("CreateProcessW", {flags}))
        return FALSE;
    host::CheckStartArguments(application, process_security, thread_security, flags, environment);
    host::ReapChildren();
    host::StartRequest request;
    if (!host::SetPaths(application, current_directory, request) ||
        !host::ReadHandleList(*startup, flags, inherit_handles, request) ||
        !host::CopyStreams(*startup, inherit_handles, request))
        return FALSE;
    constexpr std::size_t LONGEST_LINE = 32766;
    if (command_line != nullptr && std::u16string_view(command_line).size() > LONGEST_LINE)
        return host::Fail(ERROR_FILENAME_EXCED_RANGE);
    if (!host::SplitCommandLine(command_line != nullptr ? command_line : application, request.arguments))
        return host::Fail(ERROR_NO_UNICODE_TRANSLATION);
    request.leaves_terminal = (flags & CREATE_NO_WINDOW) != 0;
    if (request.list == nullptr && inherit_handles != FALSE)
        request.more = host::InheritableDescriptors();
    return host::Start(request, information);
}

DWORD WINAPI WaitForSingleObject(HANDLE handle, DWORD milliseconds) {
    if (host::CallFails("WaitForSingleObject"))
        return WAIT_FAILED;
    host::ChildProcess* const child = host::FindProcess(handle, "WaitForSingleObject");
    if (child == nullptr)
        return WAIT_FAILED;
    if (milliseconds == INFINITE) {
        host::Reap(*child, 0);
        return WAIT_OBJECT_0;
    }
    constexpr std::chrono::milliseconds PAUSE(2);
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(milliseconds);
    while (!child->has_ended && std::chrono::steady_clock::now() < end) {
        std::this_thread::sleep_for(PAUSE);
        host::Reap(*child, WNOHANG);
    }
    return child->has_ended ? WAIT_OBJECT_0 : WAIT_TIMEOUT;
}

BOOL WINAPI GetExitCodeProcess(HANDLE process, LPDWORD exit_code) {
    if (host::CallFails("GetExitCodeProcess"))
        return FALSE;
    const host::ChildProcess* const child = host::FindProcess(process, "GetExitCodeProcess");
    if (child == nullptr)
        return FALSE;
    *exit_code = child->has_ended ? child->exit_code : STILL_ACTIVE;
    return TRUE;
}

DWORD WINAPI GetCurrentProcessId() {
    return static_cast<DWORD>(getpid());
}

DWORD WINAPI GetModuleFileNameW(HMODULE module, LPWSTR path, DWORD size) {
    if (host::CallFails("GetModuleFileNameW"))
        return 0;
    if (module != nullptr)
        host::NotImplemented("GetModuleFileNameW", "a module other than the program");
    std::u16string file = host::process_calls.module_file;
    std::array<char, PATH_MAX> native{};
    if (file.empty() && readlink("/proc/self/exe", native.data(), native.size() - 1) > 0)
        file = host::FromNativePath(native.data());
    if (file.empty() || size == 0) {
        host::Fail(file.empty() ? ERROR_FILE_NOT_FOUND : ERROR_INSUFFICIENT_BUFFER);
        return 0;
    }
    // A path that is too long is cut, and the result is the size of the buffer.
    const bool is_cut = file.size() >= size;
    file.resize(std::min<std::size_t>(file.size(), size - 1));
    host::CopyIfItFits(file, path, size);
    SetLastError(is_cut ? ERROR_INSUFFICIENT_BUFFER : ERROR_SUCCESS);
    return is_cut ? size : static_cast<DWORD>(file.size());
}

BOOL WINAPI SetDllDirectoryW(LPCWSTR folder) {
    if (folder == nullptr || *folder != 0)
        host::NotImplemented("SetDllDirectoryW", "a folder to be searched");
    return !host::CallFails("SetDllDirectoryW");
}

BOOL WINAPI SetDefaultDllDirectories(DWORD folders) {
    if (folders != (LOAD_LIBRARY_SEARCH_SYSTEM32 | LOAD_LIBRARY_SEARCH_USER_DIRS))
        host::NotImplemented("SetDefaultDllDirectories", "other folders than the system's and added ones");
    return !host::CallFails("SetDefaultDllDirectories");
}

HMODULE WINAPI GetModuleHandleW(LPCWSTR name) {
    if (host::CallFails("GetModuleHandleW"))
        return nullptr;
    if (name != nullptr)
        host::NotImplemented("GetModuleHandleW", "a module other than the program");
    static int program;
    return reinterpret_cast<HMODULE>(&program);
}
