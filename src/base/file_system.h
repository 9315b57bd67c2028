// Full paths, the current directory, the type of a file, reading. The functions that throw call
// ThrowFileSystemError.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "base/owned_handle.h"
#include "platform/win32.h"

// Throws std::runtime_error with the text `OPERATION: MESSAGE`, where MESSAGE is the system's text for the
// error code. With a path, which may be empty, the text is `OPERATION: MESSAGE: "PATH"`.
[[noreturn]] void ThrowFileSystemError(const char* operation, DWORD code);
[[noreturn]] void ThrowFileSystemError(const char* operation, DWORD code, WideView path);

// Returns the full path; a relative path is relative to the process's current directory. The file need not
// exist. Throws when the platform cannot return the full path.
WideText AbsolutePath(const WideText& path);

// Returns the process's current directory. Throws when the platform cannot return it.
WideText CurrentDirectory();

enum class FileType { Missing, Regular, Other };

// Returns the type of the file at the path. Symbolic links are followed; a folder is Other. Throws, with
// `operation` in the message, if the platform reports an error that does not mean a missing file.
FileType QueryFileType(const WideText& path, const char* operation);

// Opens a file for reading. Others may read, write, move and delete the file meanwhile. Returns a null
// handle if the file cannot be opened or is a folder.
OwnedHandle OpenForReading(const WideText& path);

// Returns the size of an open file in bytes; none for a null handle or if the platform reports an error.
[[nodiscard]] std::optional<std::uint64_t> FileSize(HANDLE file);

// Reads `count` bytes, starting at byte `offset` of the file. Returns the number of bytes read: fewer than
// `count` if the file is too short or the platform reports an error.
[[nodiscard]] std::size_t ReadAt(HANDLE file, std::uint64_t offset, char* buffer, std::size_t count);
