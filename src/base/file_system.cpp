#include "base/file_system.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <string>

#include "base/text_convert.h"
#include "base/windows_error.h"

namespace {

constexpr DWORD SHARE_ALL = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

// If a query fails with one of these errors, the file is reported as missing.
constexpr std::array<DWORD, 7> ABSENT{ERROR_FILE_NOT_FOUND,  ERROR_PATH_NOT_FOUND, ERROR_BAD_NETPATH,
                                      ERROR_NETNAME_DELETED, ERROR_INVALID_NAME,   ERROR_BAD_PATHNAME,
                                      ERROR_DIRECTORY};

std::string FailureText(const char* operation, DWORD code) {
    WideText text = WindowsErrorText(code);
    while (!text.empty() && (text.back() == '\r' || text.back() == '\n'))
        text.pop_back();
    return std::string(operation) + ": " + Utf8FromWide(text);
}

FileType FailedQuery(const WideText& path, const char* operation) {
    const DWORD code = GetLastError();
    if (std::find(ABSENT.begin(), ABSENT.end(), code) == ABSENT.end())
        ThrowFileSystemError(operation, code, path);
    return FileType::Missing;
}

}  // namespace

void ThrowFileSystemError(const char* operation, DWORD code) {
    throw std::runtime_error(FailureText(operation, code));
}

void ThrowFileSystemError(const char* operation, DWORD code, WideView path) {
    throw std::runtime_error(FailureText(operation, code) + ": \"" + Utf8ForDisplay(path) + "\"");
}

WideText AbsolutePath(const WideText& path) {
    WideText full(MAX_PATH, WCHAR{});
    for (;;) {
        const DWORD length =
            GetFullPathNameW(path.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr);
        if (length == 0)
            ThrowFileSystemError("absolute", GetLastError(), path);
        const bool fits = length < full.size();
        full.resize(length);
        if (fits)
            return full;
    }
}

WideText CurrentDirectory() {
    WideText directory(MAX_PATH, WCHAR{});
    for (;;) {
        const DWORD length = GetCurrentDirectoryW(static_cast<DWORD>(directory.size()), directory.data());
        if (length == 0)
            ThrowFileSystemError("current_path()", GetLastError());
        const bool fits = length < directory.size();
        directory.resize(length);
        if (fits)
            return directory;
    }
}

FileType QueryFileType(const WideText& path, const char* operation) {
    // GetFileAttributesW would not follow a link. FILE_FLAG_BACKUP_SEMANTICS is needed to open folders.
    const OwnedHandle file(CreateFileW(path.c_str(), FILE_READ_ATTRIBUTES, SHARE_ALL, nullptr, OPEN_EXISTING,
                                       FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    if (!file)
        return FailedQuery(path, operation);
    SetLastError(NO_ERROR);  // distinguishes an unknown type, which sets no error, from a failure
    const DWORD type = GetFileType(file.Get());
    if (type == FILE_TYPE_UNKNOWN && GetLastError() != NO_ERROR)
        return FailedQuery(path, operation);
    if (type != FILE_TYPE_DISK)
        return FileType::Other;
    BY_HANDLE_FILE_INFORMATION information{};
    if (GetFileInformationByHandle(file.Get(), &information) == FALSE)
        return FailedQuery(path, operation);
    const bool is_folder = (information.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    return is_folder ? FileType::Other : FileType::Regular;
}

OwnedHandle OpenForReading(const WideText& path) {
    return OwnedHandle(CreateFileW(path.c_str(), GENERIC_READ, SHARE_ALL, nullptr, OPEN_EXISTING,
                                   FILE_ATTRIBUTE_NORMAL, nullptr));
}

std::optional<std::uint64_t> FileSize(HANDLE file) {
    LARGE_INTEGER size{};
    if (GetFileSizeEx(file, &size) == FALSE || size.QuadPart < 0)
        return std::nullopt;
    return static_cast<std::uint64_t>(size.QuadPart);
}

std::size_t ReadAt(HANDLE file, std::uint64_t offset, char* buffer, std::size_t count) {
    LARGE_INTEGER position{};
    position.QuadPart = static_cast<LONGLONG>(offset);
    if (SetFilePointerEx(file, position, nullptr, FILE_BEGIN) == FALSE)
        return 0;
    std::size_t read = 0;
    while (read < count) {
        const auto wanted = static_cast<DWORD>(std::min<std::size_t>(count - read, 0x40000000));
        DWORD received = 0;
        if (ReadFile(file, buffer + read, wanted, &received, nullptr) == FALSE || received == 0)
            break;
        read += received;
    }
    return read;
}
