// Opens files with share modes; reads, writes, flushes, moves and deletes files.
#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/host/api/kernel32.h"
#include "platform/host/hooks/call_hooks.h"
#include "platform/host/system/native.h"

namespace host {
namespace {

using Status = struct stat;

constexpr mode_t NEW_FILE_MODE = 0666;
constexpr mode_t ANY_WRITE_BIT = 0222;

// The arguments of CreateFileW, converted for Linux.
struct OpenRequest {
    std::string native;
    bool reads = false;
    bool writes = false;
    DWORD share_mode = 0;
    DWORD disposition = OPEN_EXISTING;
    bool allows_folder = false;
    bool is_inheritable = false;
};

// A claim expires with its last owner, an open file or a child process. ResetLayer ends all claims, so this
// list needs no reset.
std::vector<std::weak_ptr<const ShareClaim>> share_claims;

bool IsReadOnly(const Status& status) {
    return !S_ISLNK(status.st_mode) && (status.st_mode & ANY_WRITE_BIT) == 0;
}

std::vector<std::shared_ptr<const ShareClaim>> ClaimsOn(const Status& status) {
    ReapChildren();
    std::erase_if(share_claims, [](const auto& claim) { return claim.expired(); });
    std::vector<std::shared_ptr<const ShareClaim>> found;
    for (const auto& weak : share_claims) {
        auto claim = weak.lock();
        if (claim != nullptr && claim->device == status.st_dev && claim->inode == status.st_ino)
            found.push_back(std::move(claim));
    }
    return found;
}

bool Allows(const ShareClaim& holder, const ShareClaim& other) {
    return (!other.reads || (holder.share_mode & FILE_SHARE_READ) != 0) &&
           (!other.writes || (holder.share_mode & FILE_SHARE_WRITE) != 0);
}

// Adds the claim of a newly opened file. False, with the last error set, if it and an existing claim exclude
// each other.
bool AddClaim(const OpenRequest& request, const Status& status, OpenFile& file) {
    if (!request.reads && !request.writes)
        return true;
    const ShareClaim wanted = {status.st_dev, status.st_ino, request.reads, request.writes,
                               request.share_mode};
    for (const auto& held : ClaimsOn(status))
        if (!Allows(*held, wanted) || !Allows(wanted, *held))
            return Fail(ERROR_SHARING_VIOLATION);
    file.claim = std::make_shared<const ShareClaim>(wanted);
    share_claims.push_back(file.claim);
    return true;
}

bool CanBeDeleted(const Status& status) {
    const auto claims = ClaimsOn(status);
    return std::all_of(claims.begin(), claims.end(),
                       [](const auto& held) { return (held->share_mode & FILE_SHARE_DELETE) != 0; });
}

bool CheckOpenArguments(DWORD access, LPSECURITY_ATTRIBUTES security, DWORD disposition, DWORD flags,
                        HANDLE template_file) {
    constexpr DWORD READS = GENERIC_READ | FILE_READ_DATA;
    constexpr DWORD WRITES = GENERIC_WRITE | FILE_WRITE_DATA;
    constexpr DWORD FLAGS = FILE_ATTRIBUTE_NORMAL | FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_SEQUENTIAL_SCAN;
    if ((access & ~(READS | WRITES | FILE_READ_ATTRIBUTES | SYNCHRONIZE)) != 0)
        NotImplemented("CreateFileW", "an access other than reading, writing and attributes");
    if ((flags & ~FLAGS) != 0 || template_file != nullptr)
        NotImplemented("CreateFileW", "this flag, or a template");
    if (security != nullptr && security->lpSecurityDescriptor != nullptr)
        NotImplemented("CreateFileW", "a security descriptor");
    if (disposition < CREATE_NEW || disposition > TRUNCATE_EXISTING)
        return Fail(ERROR_INVALID_PARAMETER);
    const bool truncates = disposition == CREATE_ALWAYS || disposition == TRUNCATE_EXISTING;
    if (truncates && (access & WRITES) == 0)
        NotImplemented("CreateFileW", "truncating a file without write access");
    return true;
}

// Removes a separator at the end of the path. Only the name of a folder may end so: returns false, with
// ERROR_INVALID_NAME, if the path is a file or the request could create one.
bool CheckTrailingSeparator(OpenRequest& request) {
    if (request.native.size() < 2 || !request.native.ends_with('/'))
        return true;
    request.native.pop_back();
    Status status = {};
    const bool creates = request.disposition != OPEN_EXISTING && request.disposition != TRUNCATE_EXISTING;
    const bool is_file = stat(request.native.c_str(), &status) == 0 && !S_ISDIR(status.st_mode);
    return creates || is_file ? Fail(ERROR_INVALID_NAME) : true;
}

int OpenMode(const OpenRequest& request) {
    if (request.writes)
        return request.reads ? O_RDWR : O_WRONLY;
    return request.reads ? O_RDONLY : O_PATH;
}

// Opens a descriptor with a number above those of the standard streams, so that setting a child's streams
// does not overwrite it.
Descriptor OpenDescriptor(const std::string& native, int flags) {
    const int number = open(native.c_str(), flags | O_CLOEXEC | O_NOCTTY | O_NONBLOCK, NEW_FILE_MODE);
    if (number < 0 || number > STDERR_FILENO)
        return Descriptor(number);
    const int moved = fcntl(number, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    close(number);
    return Descriptor(moved);
}

struct Opened {
    Descriptor descriptor;  // -1: the open failed, with errno set
    bool existed;
};

Opened OpenNative(const OpenRequest& request) {
    Status status = {};
    if (request.allows_folder && stat(request.native.c_str(), &status) == 0 && S_ISDIR(status.st_mode) &&
        request.disposition == OPEN_EXISTING)
        return {OpenDescriptor(request.native, request.reads || request.writes ? O_RDONLY : O_PATH), true};
    if (request.disposition == OPEN_EXISTING || request.disposition == TRUNCATE_EXISTING)
        return {OpenDescriptor(request.native, OpenMode(request)), true};
    // O_PATH cannot create a file.
    const int mode = OpenMode(request) == O_PATH ? O_RDONLY : OpenMode(request);
    Opened opened = {OpenDescriptor(request.native, mode | O_CREAT | O_EXCL), false};
    if (opened.descriptor.number < 0 && errno == EEXIST && request.disposition != CREATE_NEW)
        return {OpenDescriptor(request.native, mode | O_CREAT), true};
    return opened;
}

// Adds the claim of a newly opened regular file, then truncates the file if the request says so.
bool ClaimAndTruncate(const OpenRequest& request, OpenFile& file, bool existed) {
    Status status = {};
    const int number = file.descriptor.number;
    if (fstat(number, &status) != 0)
        return Fail(ErrorOf(errno));
    if (S_ISDIR(status.st_mode))
        return request.allows_folder || Fail(ERROR_ACCESS_DENIED);
    if (!S_ISREG(status.st_mode))
        return true;
    if (existed && request.writes && IsReadOnly(status))
        return Fail(ERROR_ACCESS_DENIED);
    if (!AddClaim(request, status, file))
        return false;
    const bool truncates = request.disposition == CREATE_ALWAYS || request.disposition == TRUNCATE_EXISTING;
    return !existed || !truncates || ftruncate(number, 0) == 0 || Fail(ErrorOf(errno));
}

HANDLE OpenRequested(const OpenRequest& request) {
    Opened opened = OpenNative(request);
    if (opened.descriptor.number < 0) {
        Fail(ErrorOf(errno, request.native));
        return INVALID_HANDLE_VALUE;
    }
    auto file = std::make_shared<OpenFile>(OpenFile{std::move(opened.descriptor), request.reads,
                                                    request.writes, request.is_inheritable, nullptr});
    if (!ClaimAndTruncate(request, *file, opened.existed))
        return INVALID_HANDLE_VALUE;
    // The open was non-blocking only so that it did not wait for the other end of a pipe.
    fcntl(file->descriptor.number, F_SETFL, 0);
    const bool may_replace = request.disposition == CREATE_ALWAYS || request.disposition == OPEN_ALWAYS;
    SetLastError(may_replace && opened.existed ? ERROR_ALREADY_EXISTS : ERROR_SUCCESS);
    return AddHandle({std::move(file), nullptr});
}

// The result of a platform call after a Linux call, which returned -1 with errno set if it failed.
BOOL ResultOf(ssize_t result) {
    return result >= 0 ? TRUE : Fail(ErrorOf(errno));
}

void RequireNoOverlap(LPOVERLAPPED overlapped, const char* call) {
    if (overlapped != nullptr)
        NotImplemented(call, "overlapped input or output");
}

// The error if the file must not replace the target; ERROR_SUCCESS if it may, or if there is no target.
DWORD ReplaceError(const Status& from, const std::string& target, DWORD flags) {
    Status status = {};
    if (lstat(target.c_str(), &status) != 0)
        return errno == ENOENT ? ERROR_SUCCESS : ErrorOf(errno, target);
    if (status.st_dev == from.st_dev && status.st_ino == from.st_ino)
        return ERROR_SUCCESS;
    if ((flags & MOVEFILE_REPLACE_EXISTING) == 0)
        return ERROR_ALREADY_EXISTS;
    const bool has_folder = S_ISDIR(status.st_mode) || S_ISDIR(from.st_mode);
    return has_folder || IsReadOnly(status) || !ClaimsOn(status).empty() ? ERROR_ACCESS_DENIED
                                                                         : ERROR_SUCCESS;
}

// The open file of a call; null, with the last error set, if a test makes the call fail or the handle is not
// that of an open file.
const OpenFile* FileOfCall(const char* call, HANDLE handle) {
    return CallFails(call) ? nullptr : FindFile(handle);
}

std::optional<Status> StatusOfCall(const char* call, HANDLE handle) {
    const OpenFile* const file = FileOfCall(call, handle);
    Status status = {};
    if (file == nullptr || ResultOf(fstat(file->descriptor.number, &status)) == FALSE)
        return std::nullopt;
    return status;
}

// Flushes the entries of the file's folder to the disk. With EINVAL, the file system does not support (or
// need) this, and the call succeeds.
bool SyncFolderOf(const std::string& native) {
    const Descriptor folder = OpenDescriptor(native.substr(0, native.rfind('/') + 1), O_RDONLY);
    return folder.number >= 0 && (fsync(folder.number) == 0 || errno == EINVAL);
}

}  // namespace

}  // namespace host

using host::ErrorOf;
using host::Fail;

HANDLE WINAPI CreateFileW(LPCWSTR path, DWORD access, DWORD share_mode, LPSECURITY_ATTRIBUTES security,
                          DWORD disposition, DWORD flags, HANDLE template_file) {
    if (host::CallFails("CreateFileW", {access, share_mode, disposition}) ||
        !host::CheckOpenArguments(access, security, disposition, flags, template_file))
        return INVALID_HANDLE_VALUE;
    const std::optional<std::string> native = host::ToNativePath(path);
    if (!native)
        return INVALID_HANDLE_VALUE;
    host::OpenRequest request;
    request.native = *native;
    request.reads = (access & (GENERIC_READ | FILE_READ_DATA)) != 0;
    request.writes = (access & (GENERIC_WRITE | FILE_WRITE_DATA)) != 0;
    request.share_mode = share_mode;
    request.disposition = request.native == "/dev/null" ? OPEN_EXISTING : disposition;
    request.allows_folder = (flags & FILE_FLAG_BACKUP_SEMANTICS) != 0;
    request.is_inheritable = security != nullptr && security->bInheritHandle != FALSE;
    if (request.writes)
        host::BeforeChange(request.native);
    return host::CheckTrailingSeparator(request) ? host::OpenRequested(request) : INVALID_HANDLE_VALUE;
}

BOOL WINAPI ReadFile(HANDLE file, LPVOID buffer, DWORD size, LPDWORD read_size, LPOVERLAPPED overlapped) {
    host::RequireNoOverlap(overlapped, "ReadFile");
    *read_size = 0;
    const host::OpenFile* const open_file = host::FileOfCall("ReadFile", file);
    if (open_file == nullptr)
        return FALSE;
    if (!open_file->can_read)
        return Fail(ERROR_ACCESS_DENIED);
    if (host::IsHalved("ReadFile"))
        size /= 2;
    ssize_t result = 0;
    do {
        result = read(open_file->descriptor.number, buffer, size);
    } while (result < 0 && errno == EINTR);
    *read_size = result > 0 ? static_cast<DWORD>(result) : 0;
    return host::ResultOf(result);
}

BOOL WINAPI WriteFile(HANDLE file, LPCVOID buffer, DWORD size, LPDWORD written, LPOVERLAPPED overlapped) {
    host::RequireNoOverlap(overlapped, "WriteFile");
    *written = 0;
    const host::OpenFile* const open_file = host::FileOfCall("WriteFile", file);
    if (open_file == nullptr)
        return FALSE;
    if (!open_file->can_write)
        return Fail(ERROR_ACCESS_DENIED);
    if (host::IsHalved("WriteFile"))
        size /= 2;
    while (*written < size) {
        const char* const rest = static_cast<const char*>(buffer) + *written;
        const ssize_t result = write(open_file->descriptor.number, rest, size - *written);
        if (result < 0 && errno != EINTR)
            return host::ResultOf(result);
        *written += result > 0 ? static_cast<DWORD>(result) : 0;
    }
    return TRUE;
}

BOOL WINAPI SetFilePointerEx(HANDLE file, LARGE_INTEGER distance, PLARGE_INTEGER position, DWORD method) {
    const host::OpenFile* const open_file = host::FileOfCall("SetFilePointerEx", file);
    if (open_file == nullptr)
        return FALSE;
    if (method != FILE_BEGIN || position != nullptr)
        host::NotImplemented("SetFilePointerEx", "another method than FILE_BEGIN, or the new position");
    return host::ResultOf(lseek(open_file->descriptor.number, distance.QuadPart, SEEK_SET));
}

BOOL WINAPI GetFileSizeEx(HANDLE file, PLARGE_INTEGER size) {
    const std::optional<host::Status> status = host::StatusOfCall("GetFileSizeEx", file);
    if (!status)
        return FALSE;
    size->QuadPart = status->st_size;
    return TRUE;
}

BOOL WINAPI FlushFileBuffers(HANDLE file) {
    const host::OpenFile* const open_file = host::FileOfCall("FlushFileBuffers", file);
    if (open_file == nullptr)
        return FALSE;
    if (!open_file->can_write)
        return Fail(ERROR_ACCESS_DENIED);
    if (fsync(open_file->descriptor.number) != 0)
        return host::ResultOf(-1);
    host::AfterFlush(open_file->descriptor.number);
    return TRUE;
}

BOOL WINAPI GetFileInformationByHandle(HANDLE file, LPBY_HANDLE_FILE_INFORMATION information) {
    const std::optional<host::Status> status = host::StatusOfCall("GetFileInformationByHandle", file);
    if (!status)
        return FALSE;
    if (!S_ISREG(status->st_mode) && !S_ISDIR(status->st_mode))
        return Fail(ERROR_INVALID_PARAMETER);
    *information = {};
    information->dwFileAttributes =
        S_ISDIR(status->st_mode) ? FILE_ATTRIBUTE_DIRECTORY : FILE_ATTRIBUTE_ARCHIVE;
    return TRUE;
}

DWORD WINAPI GetFileType(HANDLE file) {
    const std::optional<host::Status> status = host::StatusOfCall("GetFileType", file);
    if (!status)
        return FILE_TYPE_UNKNOWN;
    SetLastError(ERROR_SUCCESS);
    if (S_ISCHR(status->st_mode))
        return FILE_TYPE_CHAR;
    return S_ISFIFO(status->st_mode) || S_ISSOCK(status->st_mode) ? FILE_TYPE_PIPE : FILE_TYPE_DISK;
}

BOOL WINAPI MoveFileExW(LPCWSTR from, LPCWSTR to, DWORD flags) {
    if (host::CallFails("MoveFileExW", {flags}))
        return FALSE;
    if ((flags & ~(MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH)) != 0)
        host::NotImplemented("MoveFileExW", "this flag");
    const std::optional<std::string> source = host::ToNativePath(from);
    const std::optional<std::string> target = source ? host::ToNativePath(to) : std::nullopt;
    if (!target)
        return FALSE;
    host::Status status = {};
    if (lstat(source->c_str(), &status) != 0)
        return Fail(ErrorOf(errno, *source));
    if (!host::CanBeDeleted(status))
        return Fail(ERROR_SHARING_VIOLATION);
    if (const DWORD error = host::ReplaceError(status, *target, flags); error != ERROR_SUCCESS)
        return Fail(error);
    host::BeforeChange(*source);
    host::BeforeChange(*target);
    if (rename(source->c_str(), target->c_str()) != 0)
        return Fail(ErrorOf(errno, *target));
    if ((flags & MOVEFILE_WRITE_THROUGH) == 0)
        return TRUE;
    if (!host::SyncFolderOf(*target))
        return Fail(ErrorOf(errno));
    host::AfterMove(*source, *target);
    return TRUE;
}

BOOL WINAPI DeleteFileW(LPCWSTR path) {
    if (host::CallFails("DeleteFileW"))
        return FALSE;
    const std::optional<std::string> native = host::ToNativePath(path);
    if (!native)
        return FALSE;
    if (*native == "/dev/null")
        return Fail(ERROR_ACCESS_DENIED);
    host::Status status = {};
    if (lstat(native->c_str(), &status) != 0)
        return Fail(ErrorOf(errno, *native));
    if (S_ISDIR(status.st_mode) || host::IsReadOnly(status))
        return Fail(ERROR_ACCESS_DENIED);
    if (!host::CanBeDeleted(status))
        return Fail(ERROR_SHARING_VIOLATION);
    if (!host::ClaimsOn(status).empty())
        host::NotImplemented("DeleteFileW", "a file that is still open");
    host::BeforeChange(*native);
    return unlink(native->c_str()) == 0 ? TRUE : Fail(ErrorOf(errno, *native));
}
