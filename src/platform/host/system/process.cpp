// Starting a process and following it: the attribute list, the command line, the streams; and where the
// program itself lies.
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
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include "platform/host/api/kernel32.h"
#include "platform/host/hooks.h"
#include "platform/host/system/inspect.h"
#include "platform/host/system/native.h"

namespace {

constexpr std::size_t STREAMS = 3;
constexpr DWORD ATTRIBUTE_LIST_MARK = 0x4C415054;

// What the caller's buffer of an attribute list holds.
struct AttributeList {
    DWORD mark;
    DWORD count;
    const HANDLE* handles;  // the caller's; null until an update
    std::size_t handle_count;
};

struct StartState {
    std::size_t attribute_lists = 0;
    std::u16string module_file;  // empty: the true one
};

StartState& Starts() {
    return host::Lasting<StartState>();
}

host::ChildProcess* FindProcess(HANDLE handle, const char* call) {
    const host::KernelObject* const object = host::FindObject(handle);
    if (object == nullptr)
        return nullptr;
    if (object->process == nullptr)
        host::NotImplemented(call, "a handle that is no process");
    host::ReapChildren();
    return object->process.get();
}

// --- the command line ---

// The program's name ends at the first blank outside quotes; nothing in it is escaped.
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

// Takes a run of backslashes and the quote that may follow: two backslashes in front of a quote are one, an
// odd one makes the quote a character, and so does a second quote inside quotes. Without a quote they are
// themselves.
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

// The arguments in UTF-8; false where one is ill-formed.
bool SplitCommandLine(std::u16string_view line, std::vector<std::string>& arguments) {
    bool is_sound = host::ToUtf8(TakeProgramName(line), arguments.emplace_back());
    for (SkipBlanks(line); !line.empty(); SkipBlanks(line))
        is_sound = host::ToUtf8(TakeArgument(line), arguments.emplace_back()) && is_sound;
    return is_sound;
}

// --- starting ---

struct StartRequest {
    std::string program;
    std::string folder;
    std::vector<std::string> arguments;
    std::array<host::Descriptor, STREAMS> streams;  // without a descriptor: the child does not get the stream
    std::vector<int> more;                          // descriptors that it inherits beside its streams
    std::vector<std::shared_ptr<const host::ShareClaim>> claims;
    bool leaves_terminal = false;
};

void CheckStartArguments(LPCWSTR application, LPSECURITY_ATTRIBUTES process_security,
                         LPSECURITY_ATTRIBUTES thread_security, DWORD flags, LPVOID environment) {
    if (application == nullptr)
        host::NotImplemented("CreateProcessW", "looking for the program in the command line");
    if (process_security != nullptr || thread_security != nullptr || environment != nullptr)
        host::NotImplemented("CreateProcessW", "security attributes or an environment of the child's own");
    if ((flags & ~(CREATE_NO_WINDOW | EXTENDED_STARTUPINFO_PRESENT)) != 0)
        host::NotImplemented("CreateProcessW", "this flag");
}

AttributeList* ListIn(LPPROC_THREAD_ATTRIBUTE_LIST list, const char* call) {
    auto* const attributes = reinterpret_cast<AttributeList*>(list);
    if (attributes == nullptr || attributes->mark != ATTRIBUTE_LIST_MARK)
        host::NotImplemented(call, "an attribute list that is not initialised");
    return attributes;
}

// Which handles may be inherited: those of the list, or all where there is no list.
bool ReadHandleList(LPSTARTUPINFOW startup, DWORD flags, BOOL inherit_handles, const AttributeList*& list) {
    const bool is_extended = (flags & EXTENDED_STARTUPINFO_PRESENT) != 0;
    if (startup->cb != (is_extended ? sizeof(STARTUPINFOEXW) : sizeof(STARTUPINFOW)))
        return host::Fail(ERROR_INVALID_PARAMETER);
    const auto* const extended = reinterpret_cast<const STARTUPINFOEXW*>(startup);
    list = nullptr;
    if (!is_extended || extended->lpAttributeList == nullptr)
        return true;
    list = ListIn(extended->lpAttributeList, "CreateProcessW");
    if (list->handles == nullptr) {
        list = nullptr;
        return true;
    }
    const auto can_be_inherited = [](HANDLE handle) {
        const host::OpenFile* const file = host::FindFile(handle);
        return file != nullptr && file->is_inheritable;
    };
    const bool is_sound = inherit_handles != FALSE &&
                          std::all_of(list->handles, list->handles + list->handle_count, can_be_inherited);
    return is_sound || host::Fail(ERROR_INVALID_PARAMETER);
}

bool IsListed(HANDLE handle, const AttributeList* list) {
    return list == nullptr || std::find(list->handles, list->handles + list->handle_count, handle) !=
                                  list->handles + list->handle_count;
}

// Takes copies beyond the standard three, so that placing one stream cannot overwrite the source of another.
bool TakeStreams(const STARTUPINFOW& startup, BOOL inherit_handles, const AttributeList* list,
                 StartRequest& request) {
    if ((startup.dwFlags & STARTF_USESTDHANDLES) == 0 || inherit_handles == FALSE)
        return true;
    const std::array<HANDLE, STREAMS> handles = {startup.hStdInput, startup.hStdOutput, startup.hStdError};
    for (std::size_t at = 0; at < STREAMS; at++) {
        const host::OpenFile* const file =
            IsListed(handles[at], list) ? host::FindFile(handles[at]) : nullptr;
        if (file == nullptr || !file->is_inheritable)
            continue;
        const int copy = fcntl(file->descriptor.number, F_DUPFD_CLOEXEC, static_cast<int>(STREAMS));
        if (copy < 0)
            return host::Fail(host::ErrorOf(errno));
        request.streams[at] = host::Descriptor(copy);
        if (file->claim != nullptr)
            request.claims.push_back(file->claim);
    }
    return true;
}

bool IsFolder(const std::string& native) {
    struct stat status = {};
    return stat(native.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

// Full native paths of the program and of its folder, the former against the current folder.
bool FindPlaces(LPCWSTR application, LPCWSTR folder, StartRequest& request) {
    if (!host::FindNative(application, request.program))
        return false;
    if (IsFolder(request.program))
        return host::Fail(ERROR_ACCESS_DENIED);
    if (access(request.program.c_str(), F_OK) != 0)
        return host::Fail(host::ErrorOf(errno, request.program));
    if (folder == nullptr)
        return true;
    if (!host::FindNative(folder, request.folder) || !IsFolder(request.folder))
        return host::Fail(ERROR_DIRECTORY);
    return true;
}

// What the child does between its making and the start of the program.
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
    // Down from their own places, which lie above, in their order.
    int next = static_cast<int>(STREAMS);
    for (const int inherited : request.more)
        posix_spawn_file_actions_adddup2(&actions, inherited, next++);
    posix_spawn_file_actions_addclosefrom_np(&actions, next);
}

// Gives an errno value, or 0 with the child running.
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
    // Without a window of its own the child must not hear from our terminal either.
    posix_spawnattr_setflags(&attributes, request.leaves_terminal ? POSIX_SPAWN_SETSID : 0);
    const int error =
        posix_spawn(&process_id, request.program.c_str(), &actions, &attributes, arguments.data(), environ);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
    return error;
}

// A file without the right to be executed is to Linux what a file of another format is to Windows.
DWORD StartError(int error, const std::string& program) {
    struct stat status = {};
    constexpr mode_t ANY_EXECUTE_BIT = 0111;
    if (error == EACCES && stat(program.c_str(), &status) == 0 && (status.st_mode & ANY_EXECUTE_BIT) == 0)
        return ERROR_BAD_EXE_FORMAT;
    return host::ErrorOf(error, program);
}

BOOL Start(StartRequest& request, LPPROCESS_INFORMATION information) {
    auto child = std::make_shared<host::ChildProcess>();
    pid_t process_id = 0;
    if (const int error = Spawn(request, process_id); error != 0)
        return host::Fail(StartError(error, request.program));
    child->process_id = process_id;
    child->claims = std::move(request.claims);
    host::AddChild(child);
    const auto number = static_cast<DWORD>(process_id);
    *information = {host::AddHandle({nullptr, child}), host::AddHandle({}), number, number};
    return TRUE;
}

}  // namespace

namespace host {

std::size_t OpenAttributeLists() {
    return Starts().attribute_lists;
}

void SetModuleFile(std::u16string path) {
    Starts().module_file = std::move(path);
}

}  // namespace host

BOOL WINAPI InitializeProcThreadAttributeList(LPPROC_THREAD_ATTRIBUTE_LIST list, DWORD count, DWORD flags,
                                              SIZE_T* size) {
    if (host::CallFails("InitializeProcThreadAttributeList"))
        return FALSE;
    if (flags != 0 || count != 1)
        host::NotImplemented("InitializeProcThreadAttributeList", "anything but one attribute without flags");
    const SIZE_T given = *size;
    *size = sizeof(AttributeList);
    if (list == nullptr || given < sizeof(AttributeList))
        return host::Fail(ERROR_INSUFFICIENT_BUFFER);
    *reinterpret_cast<AttributeList*>(list) = {ATTRIBUTE_LIST_MARK, count, nullptr, 0};
    Starts().attribute_lists++;
    return TRUE;
}

BOOL WINAPI UpdateProcThreadAttribute(LPPROC_THREAD_ATTRIBUTE_LIST list, DWORD flags, DWORD_PTR attribute,
                                      PVOID value, SIZE_T size, PVOID previous_value, SIZE_T* return_size) {
    if (host::CallFails("UpdateProcThreadAttribute"))
        return FALSE;
    AttributeList* const attributes = ListIn(list, "UpdateProcThreadAttribute");
    if (attribute != PROC_THREAD_ATTRIBUTE_HANDLE_LIST || flags != 0 || previous_value != nullptr ||
        return_size != nullptr)
        host::NotImplemented("UpdateProcThreadAttribute", "anything but a new list of handles");
    if (value == nullptr || size == 0 || size % sizeof(HANDLE) != 0)
        return host::Fail(ERROR_BAD_LENGTH);
    attributes->handles = static_cast<const HANDLE*>(value);
    attributes->handle_count = size / sizeof(HANDLE);
    return TRUE;
}

void WINAPI DeleteProcThreadAttributeList(LPPROC_THREAD_ATTRIBUTE_LIST list) {
    *ListIn(list, "DeleteProcThreadAttributeList") = {};
    Starts().attribute_lists--;
}

BOOL WINAPI CreateProcessW(LPCWSTR application, LPWSTR command_line, LPSECURITY_ATTRIBUTES process_security,
                           LPSECURITY_ATTRIBUTES thread_security, BOOL inherit_handles, DWORD flags,
                           LPVOID environment, LPCWSTR current_directory, LPSTARTUPINFOW startup,
                           LPPROCESS_INFORMATION information) {
    if (host::CallFails("CreateProcessW", {flags}))
        return FALSE;
    CheckStartArguments(application, process_security, thread_security, flags, environment);
    host::ReapChildren();
    StartRequest request;
    const AttributeList* list = nullptr;
    if (!FindPlaces(application, current_directory, request) ||
        !ReadHandleList(startup, flags, inherit_handles, list) ||
        !TakeStreams(*startup, inherit_handles, list, request))
        return FALSE;
    constexpr std::size_t LONGEST_LINE = 32766;
    if (command_line != nullptr && std::u16string_view(command_line).size() > LONGEST_LINE)
        return host::Fail(ERROR_FILENAME_EXCED_RANGE);
    if (!SplitCommandLine(command_line != nullptr ? command_line : application, request.arguments))
        return host::Fail(ERROR_NO_UNICODE_TRANSLATION);
    request.leaves_terminal = (flags & CREATE_NO_WINDOW) != 0;
    if (list == nullptr && inherit_handles != FALSE)
        request.more = host::InheritableDescriptors();
    return Start(request, information);
}

DWORD WINAPI WaitForSingleObject(HANDLE handle, DWORD milliseconds) {
    if (host::CallFails("WaitForSingleObject"))
        return WAIT_FAILED;
    host::ChildProcess* const child = FindProcess(handle, "WaitForSingleObject");
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
    const host::ChildProcess* const child = FindProcess(process, "GetExitCodeProcess");
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
    std::u16string file = Starts().module_file;
    std::array<char, PATH_MAX> native{};
    if (file.empty() && readlink("/proc/self/exe", native.data(), native.size() - 1) > 0)
        file = host::WidePath(native.data());
    if (file.empty() || size == 0) {
        host::Fail(file.empty() ? ERROR_FILE_NOT_FOUND : ERROR_INSUFFICIENT_BUFFER);
        return 0;
    }
    // Too long a path is cut and counts as filling the buffer.
    const bool is_cut = file.size() >= size;
    file.resize(std::min<std::size_t>(file.size(), size - 1));
    host::CopyOut(file, path, size);
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
