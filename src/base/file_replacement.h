// Replaces a whole file in one step, or leaves the old file unchanged.
#pragma once

#include "base/owned_handle.h"
#include "platform/win32.h"

// A temporary file in the folder of its target. The caller writes the temporary file, and Finish moves it
// over the target. At every moment the target is the complete old file (or missing, if there was none) or
// the complete new file.
class FileReplacement {
public:
    // Creates the temporary file. If that fails, Handle() is null and GetLastError returns the reason.
    explicit FileReplacement(WideText target);
    // Deletes the temporary file unless Finish has moved it.
    ~FileReplacement();
    FileReplacement(const FileReplacement&) = delete;
    FileReplacement& operator=(const FileReplacement&) = delete;

    // The temporary file, open for writing.
    HANDLE Handle() const {
        return handle_.Get();
    }
    // Flushes the temporary file to disk, closes it and moves it over the target. Returns false when a
    // step fails; GetLastError then returns the reason, and the target is unchanged.
    [[nodiscard]] bool Finish();

private:
    WideText target_;
    WideText path_;  // of the temporary file; empty when there is none
    OwnedHandle handle_;
};
