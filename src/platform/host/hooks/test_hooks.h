// Functions for tests: faults, the trace, the clock, open handles, loss of power, and the contents of
// controls and boxes that no platform call returns.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/host/api/base.h"

namespace host {

// Sets the layer back to its state at the start of the program: no window, no class that the program
// registered, no message, timer, handle or fault, and the real clock. Windows are removed without any message
// to them.
void ResetLayer();

// --- faults ---

// Makes the nth call (1 = the next one) of this function or message fail with the error code. A new fault
// does not replace earlier ones.
void FailCall(const char* name, unsigned nth, DWORD error);

// As FailCall, but counts the calls of all functions and messages together.
void FailNthCall(unsigned nth, DWORD error);

// Removes all faults. Returns the number of calls that have failed because of them.
unsigned ClearFaults();

// The next call of `name`, ReadFile or WriteFile, transfers half of the requested bytes and succeeds.
void HalveTransfer(const char* name);

// --- the trace ---

void StartTrace();
// The names of the calls that can fail, in the order in which they were made since StartTrace.
std::vector<std::string> Trace();

// Some numbers among the arguments of the last traced call of this name; empty if there was none. They are
// stored for CreateFileW (access, sharing, disposition), MoveFileExW (flags), SetTimer (period),
// CreateProcessW (flags), InitCommonControlsEx (classes) and MessageBoxW (flags).
std::vector<DWORD> TracedArguments(const std::string& name);

// --- the clock ---

// Replaces the real clock by a test clock. The test clock starts at the present time, advances by
// `ms_per_reading` at each reading, and otherwise only by AdvanceTestClock and Sleep.
void UseTestClock(std::uint64_t ms_per_reading = 0);
void AdvanceTestClock(std::uint64_t ms);

// --- files and processes ---

// The number of open kernel handles: files, processes and threads.
std::size_t OpenHandles();

// The number of process attribute lists that were initialised and not deleted.
std::size_t OpenAttributeLists();

// From now on the layer records which changes of files are certainly on the disk: contents that were flushed
// and moves that were written through. LosePower undoes all other changes.
void MakeDiskForgetful();
void LosePower();

// Sets the Windows path that GetModuleFileNameW returns; an empty path restores the true one.
void SetModuleFile(std::u16string path);

// --- controls and boxes ---

// The text of a STATIC control as it was last drawn: without the prefix characters (&), unless the control
// has SS_NOPREFIX.
std::u16string DrawnText(HWND label);

// From now on each call of ExcludeClipRect adds its rectangle to `rectangles`; none does for null.
void RecordExcludedRectangles(std::vector<RECT>* rectangles);

std::u16string ClipboardText();

// A copy of a request for a file box. LastFileBox returns that of the last box.
struct FileBoxRequest {
    HWND owner = nullptr;
    DWORD flags = 0;
    DWORD capacity = 0;     // characters
    std::u16string filter;  // all texts of the filter list, each followed by a bar
    std::u16string extension;
    std::u16string folder;
    std::u16string name;
};
const FileBoxRequest& LastFileBox();

}  // namespace host
