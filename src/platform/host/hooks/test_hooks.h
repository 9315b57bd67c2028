// What a test may do to the layer and see of it: faults, the trace, the clock, open handles, loss of power,
// and what controls and boxes do not report.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/host/api/base.h"

namespace host {

// Sets the layer back to its state at the start of the program: no window, no class of the program's own, no
// message, timer, handle or fault, and the real clock. Windows are dropped without a message.
void ResetLayer();

// --- faults ---

// The nth call (1 = the next one) of the named platform call fails with this error code. Faults add up.
void FailCall(const char* name, unsigned nth, DWORD error);

// The nth call (1 = the next one) among all platform calls that can fail fails with this error code.
void FailNthCall(unsigned nth, DWORD error);

// Removes all faults. Returns how many calls they have made fail.
unsigned ClearFaults();

// The next ReadFile or WriteFile, whichever is named, transfers half of what it is asked for and succeeds.
void HalveTransfer(const char* name);

// --- the trace ---

void StartTrace();
// The names of the calls that can fail, in the order in which they were made since StartTrace.
std::vector<std::string> Trace();

// The arguments of the last traced call of this name, without its texts; empty if there was none. They are
// kept for CreateFileW (access, sharing, disposition), MoveFileExW (flags), SetTimer (period), CreateProcessW
// (flags) and InitCommonControlsEx (classes).
std::vector<DWORD> TracedArguments(const std::string& name);

// --- the clock ---

// Replaces the real clock by one that starts at the present time, advances by `ms_per_reading` each time that
// it is read, and otherwise only by AdvanceTestClock.
void UseTestClock(std::uint64_t ms_per_reading = 0);
void AdvanceTestClock(std::uint64_t ms);

// --- files and processes ---

// The number of open kernel handles: files, processes and threads.
std::size_t OpenHandles();

// The number of process attribute lists that were initialised and not deleted.
std::size_t OpenAttributeLists();

// From now on the layer remembers what is on the disk for certain: the contents of files that were flushed,
// and moves that were written through. LosePower sets the files back to that.
void MakeDiskForgetful();
void LosePower();

// The Windows path that GetModuleFileNameW returns; empty for the true one.
void SetModuleFile(std::u16string path);

// --- controls and boxes ---

// The text of a STATIC control as it was last drawn: the prefix characters (&) are missing unless the control
// had SS_NOPREFIX.
std::u16string DrawnText(HWND label);

std::u16string ClipboardText();

// The request of the last file box, with its texts at that time.
struct FileBoxRequest {
    HWND owner = nullptr;
    DWORD flags = 0;
    DWORD capacity = 0;     // characters
    std::u16string filter;  // all texts of the list, each followed by a bar
    std::u16string extension;
    std::u16string folder;
    std::u16string name;
};
const FileBoxRequest& LastFileBox();

}  // namespace host
