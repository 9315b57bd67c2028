// The Windows error codes of errno values.
#include <sys/stat.h>

#include <array>
#include <cerrno>

#include "platform/host/system/native.h"

namespace host {
namespace {

struct ErrorPair {
    int native;
    DWORD windows;
};

constexpr auto ERRORS = std::to_array<ErrorPair>({
    {ENOENT, ERROR_FILE_NOT_FOUND},
    {ENOTDIR, ERROR_PATH_NOT_FOUND},
    {EACCES, ERROR_ACCESS_DENIED},
    {EPERM, ERROR_ACCESS_DENIED},
    {EISDIR, ERROR_ACCESS_DENIED},
    {EROFS, ERROR_WRITE_PROTECT},
    {EEXIST, ERROR_FILE_EXISTS},
    {ENOTEMPTY, ERROR_DIR_NOT_EMPTY},
    {EXDEV, ERROR_NOT_SAME_DEVICE},
    {ENOSPC, ERROR_DISK_FULL},
    {EDQUOT, ERROR_DISK_FULL},
    {EFBIG, ERROR_DISK_FULL},
    {EMFILE, ERROR_TOO_MANY_OPEN_FILES},
    {ENFILE, ERROR_TOO_MANY_OPEN_FILES},
    {ENOMEM, ERROR_NOT_ENOUGH_MEMORY},
    {EAGAIN, ERROR_NO_SYSTEM_RESOURCES},
    {EIO, ERROR_IO_DEVICE},
    {EPIPE, ERROR_NO_DATA},
    {ETXTBSY, ERROR_SHARING_VIOLATION},
    {EBUSY, ERROR_SHARING_VIOLATION},
    {EINVAL, ERROR_INVALID_PARAMETER},
    {EBADF, ERROR_INVALID_HANDLE},
    {ENAMETOOLONG, ERROR_FILENAME_EXCED_RANGE},
    {ELOOP, ERROR_CANT_RESOLVE_FILENAME},
    {ENXIO, ERROR_NOT_READY},
    {ENODEV, ERROR_NOT_READY},
    {ENOEXEC, ERROR_BAD_EXE_FORMAT},
});

}  // namespace

DWORD ErrorOf(int code) {
    for (const ErrorPair& pair : ERRORS)
        if (pair.native == code)
            return pair.windows;
    return ERROR_GEN_FAILURE;
}

DWORD ErrorOf(int code, const std::string& native) {
    struct stat folder = {};
    const std::string parent = native.substr(0, native.find_last_of('/', native.find_last_not_of('/')) + 1);
    if (code == ENOENT && stat(parent.c_str(), &folder) != 0)
        return ERROR_PATH_NOT_FOUND;
    return ErrorOf(code);
}

bool Fail(DWORD error) {
    SetLastError(error);
    return false;
}

}  // namespace host
