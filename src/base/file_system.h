// What the program asks of the file system beside reading and writing its own files: full paths, the type of
// a file, the current directory. Failures are file-system errors: the operation's name, the system's message,
// the path.
#pragma once

#include <cstddef>
#include <cstdint>

#include "base/owned_handle.h"
#include "platform/win32.h"

// Throws "OPERATION: MESSAGE" for a Windows error code; with a path, be it empty, "OPERATION: MESSAGE:
// "PATH"".
[[noreturn]] void ThrowFileSystemError(const char* operation, DWORD code);
[[noreturn]] void ThrowFileSystemError(const char* operation, DWORD code, WideView path);

// The full path, against the process's current directory. Does not ask whether the file is there.
WideText AbsolutePath(const WideText& path);

// The process's current directory.
WideText CurrentDirectory();

enum class FileType { Missing, Regular, Other };

// What stands at the path, symbolic links followed. Nothing is read. A failure other than the path's absence
// throws the error of `operation`.
FileType QueryFileType(const WideText& path, const char* operation);

// Opens a file for reading, denying nobody anything; none when that fails, as for a folder.
OwnedHandle OpenForReading(const WideText& path);

// The size in bytes of an open file; false when the platform does not tell.
bool FileSize(HANDLE file, std::uint64_t& size);

// Reads `count` bytes from `offset` on; `read` counts those that came, fewer at the end of the file. False
// when the platform reports an error.
bool ReadAt(HANDLE file, std::uint64_t offset, char* buffer, std::size_t count, std::size_t& read);
