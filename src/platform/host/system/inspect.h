// What a test can see of the system calls' side that the platform does not tell: handles left open, the names
// of files on Linux, where the program believes itself to lie.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace host {

// How many kernel handles are open: files, processes, threads.
std::size_t OpenHandles();

// How many process attribute lists have been initialised and not deleted.
std::size_t OpenAttributeLists();

// From here on files keep what was flushed, and moves only where they were written through; what a loss of
// power then leaves is what LosePower puts there.
void MakeDiskForgetful();
void LosePower();

// Where the program believes that its own file lies, as a Windows path; empty for the true place.
void SetModuleFile(std::u16string path);

// The Linux path of a full Windows path on drive C:, and the other way: "C:\tmp\a" is "/tmp/a". What is no
// such path comes back as an empty string.
std::string NativePath(std::u16string_view path);
std::u16string WidePath(std::string_view native);

}  // namespace host
