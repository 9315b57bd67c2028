// Replaces a whole file in one step, or leaves the old one.
#pragma once

#include "base/owned_handle.h"
#include "platform/win32.h"

// A temporary file beside its target, which is written and then moved over the target. At every moment the
// target is the complete old file or the complete new one; without an old file, none or the complete new one.
class FileReplacement {
public:
    // Creates the temporary file. Handle() is null when that fails; GetLastError then returns the reason.
    explicit FileReplacement(WideText target);
    // Deletes the temporary file unless Finish has moved it.
    ~FileReplacement();
    FileReplacement(const FileReplacement&) = delete;
    FileReplacement& operator=(const FileReplacement&) = delete;

    // The temporary file, open for writing.
    HANDLE Handle() const {
        return handle_.Get();
    }
    // Forces what was written to disk, closes the temporary file and moves it over the target. False when a
    // step fails; GetLastError then returns the reason, and the old file is untouched.
    [[nodiscard]] bool Finish();

private:
    WideText target_;
    WideText path_;  // of the temporary file; empty when there is none
    OwnedHandle handle_;
};
