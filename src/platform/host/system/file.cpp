// Files: opened under the rules of sharing, read, written, flushed, moved and deleted.
#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/host/api/kernel32.h"
#include "platform/host/hooks.h"
#include "platform/host/system/native.h"

namespace {

using Status = struct stat;

constexpr mode_t NEW_FILE_MODE = 0666;
constexpr mode_t ANY_WRITE_BIT = 0222;

// What a call of CreateFileW comes down to.
struct OpenRequest {
    std::string native;
    bool reads = false;
    bool writes = false;
    DWORD share_mode = 0;
    DWORD disposition = OPEN_EXISTING;
    bool allows_folder = false;
    bool is_inheritable = false;
};

// Every claim that is still held, be it by a handle or by a child.
std::vector<std::weak_ptr<const host::ShareClaim>>& Claims() {
    return host::Lasting<std::vector<std::weak_ptr<const host::ShareClaim>>>();
}

bool IsReadOnly(const Status& status) {
    return !S_ISLNK(status.st_mode) && (status.st_mode & ANY_WRITE_BIT) == 0;
}

// The claims on the file that are held now.
std::vector<std::shared_ptr<const host::ShareClaim>> ClaimsOn(const Status& status) {
    host::ReapChildren();
    auto& all = Claims();
    std::erase_if(all, [](const auto& claim) { return claim.expired(); });
    std::vector<std::shared_ptr<const host::ShareClaim>> found;
    for (const auto& weak : all) {
        auto claim = weak.lock();
        if (claim != nullptr && claim->device == status.st_dev && claim->inode == status.st_ino)
            found.push_back(std::move(claim));
    }
    return found;
}

bool Allows(const host::ShareClaim& holder, const host::ShareClaim& other) {
    return (!other.reads || (holder.share_mode & FILE_SHARE_READ) != 0) &&
           (!other.writes || (holder.share_mode & FILE_SHARE_WRITE) != 0);
}

// Enters the open among the claims, unless it and one that is held exclude each other.
bool Claim(const OpenRequest& request, const Status& status, std::shared_ptr<const host::ShareClaim>& claim) {
    if (!request.reads && !request.writes)
        return true;
    const host::ShareClaim wanted = {status.st_dev, status.st_ino, request.reads, request.writes,
                                     request.share_mode};
    for (const auto& held : ClaimsOn(status))
        if (!Allows(*held, wanted) || !Allows(wanted, *held))
            return host::Fail(ERROR_SHARING_VIOLATION);
    claim = std::make_shared<const host::ShareClaim>(wanted);
    Claims().push_back(claim);
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
        host::NotImplemented("CreateFileW", "an access other than reading, writing and attributes");
    if ((flags & ~FLAGS) != 0 || template_file != nullptr)
        host::NotImplemented("CreateFileW", "this flag, or a template");
    if (security != nullptr && security->lpSecurityDescriptor != nullptr)
        host::NotImplemented("CreateFileW", "a security descriptor");
    if (disposition < CREATE_NEW || disposition > TRUNCATE_EXISTING)
        return host::Fail(ERROR_INVALID_PARAMETER);
    const bool truncates = disposition == CREATE_ALWAYS || disposition == TRUNCATE_EXISTING;
    if (truncates && (access & WRITES) == 0)
        host::NotImplemented("CreateFileW", "emptying a file without writing access");
    return true;
}

// A name with a separator at its end can only be a folder's.
bool CheckTrailingSeparator(OpenRequest& request) {
    if (request.native.size() < 2 || !request.native.ends_with('/'))
        return true;
    request.native.pop_back();
    Status status = {};
    const bool creates = request.disposition != OPEN_EXISTING && request.disposition != TRUNCATE_EXISTING;
    const bool is_file = stat(request.native.c_str(), &status) == 0 && !S_ISDIR(status.st_mode);
    return creates || is_file ? host::Fail(ERROR_INVALID_NAME) : true;
}

int OpenMode(const OpenRequest& request) {
    if (request.writes)
        return request.reads ? O_RDWR : O_WRONLY;
    return request.reads ? O_RDONLY : O_PATH;
}

// Opens a descriptor beyond the standard three, which a child's streams may then take without overwriting it.
host::Descriptor OpenDescriptor(const std::string& native, int flags) {
    const int number = open(native.c_str(), flags | O_CLOEXEC | O_NOCTTY | O_NONBLOCK, NEW_FILE_MODE);
    if (number < 0 || number > STDERR_FILENO)
        return host::Descriptor(number);
    const int moved = fcntl(number, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    close(number);
    return host::Descriptor(moved);
}

// Opens a folder or a file as it is asked for; true for existed when nothing was created. An errno value or
// 0.
int OpenNative(const OpenRequest& request, host::Descriptor& descriptor, bool& existed) {
    Status status = {};
    existed = true;
    if (request.allows_folder && stat(request.native.c_str(), &status) == 0 && S_ISDIR(status.st_mode) &&
        request.disposition == OPEN_EXISTING) {
        descriptor = OpenDescriptor(request.native, request.reads || request.writes ? O_RDONLY : O_PATH);
        return descriptor.number < 0 ? errno : 0;
    }
    if (request.disposition == OPEN_EXISTING || request.disposition == TRUNCATE_EXISTING) {
        descriptor = OpenDescriptor(request.native, OpenMode(request));
        return descriptor.number < 0 ? errno : 0;
    }
    // An open for attributes alone cannot create.
    const int mode = OpenMode(request) == O_PATH ? O_RDONLY : OpenMode(request);
    descriptor = OpenDescriptor(request.native, mode | O_CREAT | O_EXCL);
    existed = descriptor.number < 0;
    if (existed && errno == EEXIST && request.disposition != CREATE_NEW)
        descriptor = OpenDescriptor(request.native, mode | O_CREAT);
    return descriptor.number < 0 ? errno : 0;
}

// Puts a fresh regular file under the rules of sharing, then empties it if that was asked for.
bool SettleFile(const OpenRequest& request, host::OpenFile& file, bool existed) {
    Status status = {};
    const int number = file.descriptor.number;
    if (fstat(number, &status) != 0)
        return host::Fail(host::ErrorOf(errno));
    if (S_ISDIR(status.st_mode))
        return request.allows_folder || host::Fail(ERROR_ACCESS_DENIED);
    if (!S_ISREG(status.st_mode))
        return true;
    if (existed && request.writes && IsReadOnly(status))
        return host::Fail(ERROR_ACCESS_DENIED);
    if (!Claim(request, status, file.claim))
        return false;
    const bool empties = request.disposition == CREATE_ALWAYS || request.disposition == TRUNCATE_EXISTING;
    return !existed || !empties || ftruncate(number, 0) == 0 || host::Fail(host::ErrorOf(errno));
}

HANDLE OpenRequested(const OpenRequest& request) {
    auto file = std::make_shared<host::OpenFile>();
    bool existed = false;
    if (const int error = OpenNative(request, file->descriptor, existed); error != 0) {
        host::Fail(host::ErrorOf(error, request.native));
        return INVALID_HANDLE_VALUE;
    }
    if (!SettleFile(request, *file, existed))
        return INVALID_HANDLE_VALUE;
    // Non-blocking only so that the open itself could not wait for the other end of a pipe.
    fcntl(file->descriptor.number, F_SETFL, 0);
    file->can_read = request.reads;
    file->can_write = request.writes;
    file->is_inheritable = request.is_inheritable;
    const bool may_replace = request.disposition == CREATE_ALWAYS || request.disposition == OPEN_ALWAYS;
    SetLastError(may_replace && existed ? ERROR_ALREADY_EXISTS : ERROR_SUCCESS);
    return host::AddHandle({std::move(file), nullptr});
}

BOOL Done(ssize_t result) {
    return result >= 0 ? TRUE : host::Fail(host::ErrorOf(errno));
}

void RequireNoOverlap(LPOVERLAPPED overlapped, const char* call) {
    if (overlapped != nullptr)
        host::NotImplemented(call, "overlapped work");
}

// Why the file cannot move over the target; success where it can, or where there is no target.
DWORD ReplaceError(const Status& from, const std::string& target, DWORD flags) {
    Status status = {};
    if (lstat(target.c_str(), &status) != 0)
        return errno == ENOENT ? ERROR_SUCCESS : host::ErrorOf(errno, target);
    if (status.st_dev == from.st_dev && status.st_ino == from.st_ino)
        return ERROR_SUCCESS;
    if ((flags & MOVEFILE_REPLACE_EXISTING) == 0)
        return ERROR_ALREADY_EXISTS;
    const bool has_folder = S_ISDIR(status.st_mode) || S_ISDIR(from.st_mode);
    return has_folder || IsReadOnly(status) || !ClaimsOn(status).empty() ? ERROR_ACCESS_DENIED
                                                                         : ERROR_SUCCESS;
}

// Puts the folder's entries on the disk. File systems that cannot sync a folder need no such thing.
bool SyncFolderOf(const std::string& native) {
    const host::Descriptor folder = OpenDescriptor(native.substr(0, native.rfind('/') + 1), O_RDONLY);
    return folder.number >= 0 && (fsync(folder.number) == 0 || errno == EINVAL);
}

}  // namespace

HANDLE WINAPI CreateFileW(LPCWSTR path, DWORD access, DWORD share_mode, LPSECURITY_ATTRIBUTES security,
                          DWORD disposition, DWORD flags, HANDLE template_file) {
    if (host::CallFails("CreateFileW", {access, share_mode, disposition}) ||
        !CheckOpenArguments(access, security, disposition, flags, template_file))
        return INVALID_HANDLE_VALUE;
    OpenRequest request;
    if (!host::FindNative(path, request.native))
        return INVALID_HANDLE_VALUE;
    request.reads = (access & (GENERIC_READ | FILE_READ_DATA)) != 0;
    request.writes = (access & (GENERIC_WRITE | FILE_WRITE_DATA)) != 0;
    request.share_mode = share_mode;
    request.disposition = request.native == "/dev/null" ? OPEN_EXISTING : disposition;
    request.allows_folder = (flags & FILE_FLAG_BACKUP_SEMANTICS) != 0;
    request.is_inheritable = security != nullptr && security->bInheritHandle != FALSE;
    if (request.writes)
        host::BeforeChange(request.native);
    return CheckTrailingSeparator(request) ? OpenRequested(request) : INVALID_HANDLE_VALUE;
}

BOOL WINAPI ReadFile(HANDLE file, LPVOID buffer, DWORD size, LPDWORD read_size, LPOVERLAPPED overlapped) {
    RequireNoOverlap(overlapped, "ReadFile");
    *read_size = 0;
    if (host::CallFails("ReadFile"))
        return FALSE;
    const host::OpenFile* const open_file = host::FindFile(file);
    if (open_file == nullptr)
        return FALSE;
    if (!open_file->can_read)
        return host::Fail(ERROR_ACCESS_DENIED);
    if (host::ComesUpShort("ReadFile"))
        size /= 2;
    ssize_t result = 0;
    do {
        result = read(open_file->descriptor.number, buffer, size);
    } while (result < 0 && errno == EINTR);
    *read_size = result > 0 ? static_cast<DWORD>(result) : 0;
    return Done(result);
}

BOOL WINAPI WriteFile(HANDLE file, LPCVOID buffer, DWORD size, LPDWORD written, LPOVERLAPPED overlapped) {
    RequireNoOverlap(overlapped, "WriteFile");
    *written = 0;
    if (host::CallFails("WriteFile"))
        return FALSE;
    const host::OpenFile* const open_file = host::FindFile(file);
    if (open_file == nullptr)
        return FALSE;
    if (!open_file->can_write)
        return host::Fail(ERROR_ACCESS_DENIED);
    if (host::ComesUpShort("WriteFile"))
        size /= 2;
    while (*written < size) {
        const char* const rest = static_cast<const char*>(buffer) + *written;
        const ssize_t result = write(open_file->descriptor.number, rest, size - *written);
        if (result < 0 && errno != EINTR)
            return Done(result);
        *written += result > 0 ? static_cast<DWORD>(result) : 0;
    }
    return TRUE;
}

BOOL WINAPI SetFilePointerEx(HANDLE file, LARGE_INTEGER distance, PLARGE_INTEGER position, DWORD method) {
    if (host::CallFails("SetFilePointerEx"))
        return FALSE;
    const host::OpenFile* const open_file = host::FindFile(file);
    if (open_file == nullptr)
        return FALSE;
    if (method != FILE_BEGIN || position != nullptr)
        host::NotImplemented("SetFilePointerEx", "other than from the beginning, or telling the place");
    return Done(lseek(open_file->descriptor.number, distance.QuadPart, SEEK_SET));
}

BOOL WINAPI GetFileSizeEx(HANDLE file, PLARGE_INTEGER size) {
    if (host::CallFails("GetFileSizeEx"))
        return FALSE;
    const host::OpenFile* const open_file = host::FindFile(file);
    Status status = {};
    if (open_file == nullptr || !Done(fstat(open_file->descriptor.number, &status)))
        return FALSE;
    size->QuadPart = status.st_size;
    return TRUE;
}

BOOL WINAPI FlushFileBuffers(HANDLE file) {
    if (host::CallFails("FlushFileBuffers"))
        return FALSE;
    const host::OpenFile* const open_file = host::FindFile(file);
    if (open_file == nullptr)
        return FALSE;
    if (!open_file->can_write)
        return host::Fail(ERROR_ACCESS_DENIED);
    if (fsync(open_file->descriptor.number) != 0)
        return Done(-1);
    host::AfterFlush(open_file->descriptor.number);
    return TRUE;
}

BOOL WINAPI GetFileInformationByHandle(HANDLE file, LPBY_HANDLE_FILE_INFORMATION information) {
    if (host::CallFails("GetFileInformationByHandle"))
        return FALSE;
    const host::OpenFile* const open_file = host::FindFile(file);
    Status status = {};
    if (open_file == nullptr || !Done(fstat(open_file->descriptor.number, &status)))
        return FALSE;
    if (!S_ISREG(status.st_mode) && !S_ISDIR(status.st_mode))
        return host::Fail(ERROR_INVALID_PARAMETER);
    *information = {};
    information->dwFileAttributes =
        S_ISDIR(status.st_mode) ? FILE_ATTRIBUTE_DIRECTORY : FILE_ATTRIBUTE_ARCHIVE;
    return TRUE;
}

DWORD WINAPI GetFileType(HANDLE file) {
    if (host::CallFails("GetFileType"))
        return FILE_TYPE_UNKNOWN;
    const host::OpenFile* const open_file = host::FindFile(file);
    Status status = {};
    if (open_file == nullptr || !Done(fstat(open_file->descriptor.number, &status)))
        return FILE_TYPE_UNKNOWN;
    SetLastError(ERROR_SUCCESS);
    if (S_ISCHR(status.st_mode))
        return FILE_TYPE_CHAR;
    return S_ISFIFO(status.st_mode) || S_ISSOCK(status.st_mode) ? FILE_TYPE_PIPE : FILE_TYPE_DISK;
}

BOOL WINAPI MoveFileExW(LPCWSTR from, LPCWSTR to, DWORD flags) {
    if (host::CallFails("MoveFileExW", {flags}))
        return FALSE;
    if ((flags & ~(MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH)) != 0)
        host::NotImplemented("MoveFileExW", "this flag");
    std::string source;
    std::string target;
    if (!host::FindNative(from, source) || !host::FindNative(to, target))
        return FALSE;
    Status status = {};
    if (lstat(source.c_str(), &status) != 0)
        return host::Fail(host::ErrorOf(errno, source));
    if (!CanBeDeleted(status))
        return host::Fail(ERROR_SHARING_VIOLATION);
    if (const DWORD error = ReplaceError(status, target, flags); error != ERROR_SUCCESS)
        return host::Fail(error);
    host::BeforeChange(source);
    host::BeforeChange(target);
    if (rename(source.c_str(), target.c_str()) != 0)
        return host::Fail(host::ErrorOf(errno, target));
    if ((flags & MOVEFILE_WRITE_THROUGH) == 0)
        return TRUE;
    if (!SyncFolderOf(target))
        return host::Fail(host::ErrorOf(errno));
    host::AfterMove(source, target);
    return TRUE;
}

BOOL WINAPI DeleteFileW(LPCWSTR path) {
    if (host::CallFails("DeleteFileW"))
        return FALSE;
    std::string native;
    Status status = {};
    if (!host::FindNative(path, native))
        return FALSE;
    if (native == "/dev/null")
        return host::Fail(ERROR_ACCESS_DENIED);
    if (lstat(native.c_str(), &status) != 0)
        return host::Fail(host::ErrorOf(errno, native));
    if (S_ISDIR(status.st_mode) || IsReadOnly(status))
        return host::Fail(ERROR_ACCESS_DENIED);
    if (!CanBeDeleted(status))
        return host::Fail(ERROR_SHARING_VIOLATION);
    if (!ClaimsOn(status).empty())
        host::NotImplemented("DeleteFileW",
                             "a file that is still open: its name would stay until the last handle");
    host::BeforeChange(native);
    return unlink(native.c_str()) == 0 ? TRUE : host::Fail(host::ErrorOf(errno, native));
}
