// The declarations that the files of this folder share: the conversion of texts, paths and errors between
// Windows and Linux, the table of handles, and the child processes.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/host/api/kernel32.h"

namespace host {

// --- text ---

// Strict conversions: none if the text is ill-formed.
[[nodiscard]] std::optional<std::string> ToUtf8(std::u16string_view wide);
[[nodiscard]] std::optional<std::u16string> FromUtf8(std::string_view utf8);

// --- paths ---

// The full Linux path of a Windows path, which may be relative. None, with the last error set, if no file can
// have that name.
[[nodiscard]] std::optional<std::string> ToNativePath(LPCWSTR path);

// The Windows path of a full Linux path: "/tmp/a" becomes "C:\tmp\a". Empty for any other path.
std::u16string FromNativePath(std::string_view native);

// Returns a text as GetCurrentDirectoryW does. If the text fits, copies it with a terminating zero and
// returns its length without the zero; otherwise copies nothing and returns the needed size with the zero. In
// characters.
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

// The access and the share mode of one open file. Every other open of the same file is checked against them.
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
    std::vector<std::shared_ptr<const ShareClaim>> claims;  // of the files that the child inherited
};

// The object of a handle: a file, a process or, with neither, a thread.
struct KernelObject {
    std::shared_ptr<OpenFile> file;
    std::shared_ptr<ChildProcess> process;
};

[[nodiscard]] HANDLE AddHandle(KernelObject object);
// Null with ERROR_INVALID_HANDLE if the handle is not open.
const KernelObject* FindObject(HANDLE handle);
// Null with ERROR_INVALID_HANDLE if the handle is not the handle of an open file.
OpenFile* FindFile(HANDLE handle);
// The descriptors of all open inheritable files, in ascending order.
std::vector<int> InheritableDescriptors();

// --- the simulated loss of power ---

// Call BeforeChange before the content of a file changes, AfterFlush after an open file was flushed, and
// AfterMove after a move was written through. Without MakeDiskForgetful they do nothing.
void BeforeChange(const std::string& native);
void AfterFlush(int descriptor);
void AfterMove(const std::string& source, const std::string& target);

// --- children ---

void AddChild(std::shared_ptr<ChildProcess> child);
// Updates the record if the child has ended. `options` are those of waitpid; 0 waits for the end.
void Reap(ChildProcess& child, int options);
// Updates all children and removes those that have ended from the list.
void ReapChildren();

// --- for ResetLayer: each resets the records of its file to their state at the start of the program ---

void ResetHandles();
void ResetDisk();
void ResetChildren();
void ResetProcessCalls();

}  // namespace host
