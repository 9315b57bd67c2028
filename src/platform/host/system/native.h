// What the files of this floor share on the way from the names, handles and errors of Windows to those of
// Linux.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/host/api/kernel32.h"

namespace host {

// --- text ---

// Strict conversions; false where the text is ill-formed.
bool ToUtf8(std::u16string_view wide, std::string& utf8);
bool FromUtf8(std::string_view utf8, std::u16string& wide);

// --- paths ---

// The Linux path of any path by the Windows rules. False with the last error set where no file can have that
// name.
bool FindNative(LPCWSTR path, std::string& native);

// Copies the text and its end into the caller's buffer as the path queries do: gives the length, or the size
// needed when the buffer is too small.
DWORD CopyOut(std::u16string_view text, LPWSTR buffer, DWORD size);

// --- errors ---

// The Windows code of an errno value, and the same for a file whose absence may be that of its folder.
DWORD ErrorOf(int code);
DWORD ErrorOf(int code, const std::string& native);

// Sets the last error; always false.
bool Fail(DWORD error);

// --- descriptors and handles ---

// Owns a descriptor.
struct Descriptor {
    int number = -1;

    Descriptor() = default;
    explicit Descriptor(int open_number) : number(open_number) {}
    ~Descriptor();
    Descriptor(Descriptor&& other) noexcept;
    Descriptor& operator=(Descriptor&& other) noexcept;
};

// What one open of a file asks of every other open of the same file.
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
    std::shared_ptr<const ShareClaim> claim;  // null where the open takes no part in sharing
};

struct ChildProcess {
    int process_id = 0;
    bool has_ended = false;
    DWORD exit_code = STILL_ACTIVE;
    std::vector<std::shared_ptr<const ShareClaim>> claims;  // of the files that it took over
};

// What a handle stands for: a file, a process or, with neither, a thread.
struct KernelObject {
    std::shared_ptr<OpenFile> file;
    std::shared_ptr<ChildProcess> process;
};

HANDLE AddHandle(KernelObject object);
// Null with ERROR_INVALID_HANDLE set for a handle that is not open.
const KernelObject* FindObject(HANDLE handle);
// Null with ERROR_INVALID_HANDLE set for what is no open file.
OpenFile* FindFile(HANDLE handle);
// The descriptors of all open files that may be inherited, in ascending order.
std::vector<int> InheritableDescriptors();

// --- the disk that forgets ---

// Each to be told: ahead of whatever changes the file at a path, once an open file is on the disk, and once a
// move is.
void BeforeChange(const std::string& native);
void AfterFlush(int descriptor);
void AfterMove(const std::string& source, const std::string& target);

// --- children ---

void AddChild(std::shared_ptr<ChildProcess> child);
// Looks whether the child has ended; with no options of waitpid it waits for that.
void Reap(ChildProcess& child, int options);
// Sees which children have ended and lets them go.
void ReapChildren();

}  // namespace host
