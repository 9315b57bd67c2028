// What the files of this folder share: the conversion of Windows texts, paths and errors to those of Linux,
// the table of handles, and the child processes.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/host/api/kernel32.h"

namespace host {

// --- text ---

// Strict conversions; nothing if the text is ill-formed.
[[nodiscard]] std::optional<std::string> ToUtf8(std::u16string_view wide);
[[nodiscard]] std::optional<std::u16string> FromUtf8(std::string_view utf8);

// --- paths ---

// The Linux path of a Windows path, relative or full. Nothing, with the last error set, if no file can have
// that name.
[[nodiscard]] std::optional<std::string> ToNativePath(LPCWSTR path);

// The Windows path of a full Linux path: "/tmp/a" becomes "C:\tmp\a". Empty for any other path.
std::u16string FromNativePath(std::string_view native);

// Returns a text as the path queries do: copies it with its terminating zero and returns its length, or
// copies nothing and returns the size that the buffer needs. Lengths and sizes in characters.
DWORD CopyIfItFits(std::u16string_view text, LPWSTR buffer, DWORD size);

// --- errors ---

// The Windows error code of an errno value. With the path, a missing file is distinguished from a missing
// folder.
DWORD ErrorOf(int code);
DWORD ErrorOf(int code, const std::string& native);

// Sets the last error and returns false.
bool Fail(DWORD error);

// --- descriptors and handles ---

// Owns a file descriptor; -1 for none.
struct Descriptor {
    int number = -1;

    Descriptor() = default;
    explicit Descriptor(int open_number) : number(open_number) {}
    ~Descriptor();
    Descriptor(Descriptor&& other) noexcept;
    Descriptor& operator=(Descriptor&& other) noexcept;
};

// The access and the share mode of one open file, against which every other open of the same file is checked.
struct ShareClaim {
    std::uint64_t device;
    std::uint64_t inode;
    bool reads;
    bool writes;
    DWORD share_mode;
};

struct OpenFile {
    Descriptor descriptor;
    bool can_read = false;
    bool can_write = false;
    bool is_inheritable = false;
    std::shared_ptr<const ShareClaim> claim;  // null: share modes do not apply
};

struct ChildProcess {
    int process_id = 0;
    bool has_ended = false;
    DWORD exit_code = STILL_ACTIVE;
    std::vector<std::shared_ptr<const ShareClaim>> claims;  // of the files that it inherited
};

// The object of a handle: a file, a process or, with neither, a thread.
struct KernelObject {
    std::shared_ptr<OpenFile> file;
    std::shared_ptr<ChildProcess> process;
};

[[nodiscard]] HANDLE AddHandle(KernelObject object);
// Null with ERROR_INVALID_HANDLE if the handle is not open.
const KernelObject* FindObject(HANDLE handle);
// Null with ERROR_INVALID_HANDLE if the handle is not that of an open file.
OpenFile* FindFile(HANDLE handle);
// The descriptors of all open inheritable files, in ascending order.
std::vector<int> InheritableDescriptors();

// --- the disk that forgets ---

// To be called before the file at a path changes, after an open file was flushed, and after a move was
// written through.
void BeforeChange(const std::string& native);
void AfterFlush(int descriptor);
void AfterMove(const std::string& source, const std::string& target);

// --- children ---

void AddChild(std::shared_ptr<ChildProcess> child);
// Checks whether the child has ended; `options` are those of waitpid, 0 waits for the end.
void Reap(ChildProcess& child, int options);
// Checks all children and forgets those that have ended.
void ReapChildren();

// --- for ResetLayer: each sets the records of its file back to their state at the start of the program ---

void ResetHandles();
void ResetDisk();
void ResetChildren();
void ResetProcessCalls();

}  // namespace host
