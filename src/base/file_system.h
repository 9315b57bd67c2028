// Full paths, the type of a file, the current directory, reading. The operations that throw report the
// operation's name, the system's message and the path.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "base/owned_handle.h"
#include "platform/win32.h"

// Throws `OPERATION: MESSAGE` for a Windows error code; with a path, which may be empty, `OPERATION: MESSAGE:
// "PATH"`.
[[noreturn]] void ThrowFileSystemError(const char* operation, DWORD code);
[[noreturn]] void ThrowFileSystemError(const char* operation, DWORD code, WideView path);

// The full path, seen from the process's current directory. The file need not exist.
WideText AbsolutePath(const WideText& path);

// The process's current directory.
WideText CurrentDirectory();

enum class FileType { Missing, Regular, Other };

// The type of the file at the path; symbolic links are followed. Throws if the type cannot be found out, with
// `operation` in the message.
FileType QueryFileType(const WideText& path, const char* operation);

// Opens a file for reading, with full sharing. No handle if that fails, which it does for a folder.
OwnedHandle OpenForReading(const WideText& path);

// The size of an open file in bytes; none for a null handle or if the platform reports an error.
[[nodiscard]] std::optional<std::uint64_t> FileSize(HANDLE file);

// Reads `count` bytes that start at `offset`. Returns how many were read: fewer than `count` if the file ends
// before that or the platform reports an error.
[[nodiscard]] std::size_t ReadAt(HANDLE file, std::uint64_t offset, char* buffer, std::size_t count);
