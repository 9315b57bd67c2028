// The temporary files for the emulator: creating, filling and copying them.
#pragma once

#include <string>
#include <vector>

#include "adapter/boot_image.h"
#include "config/vm_config.h"

// A new file in the folder for temporary files. The destructor deletes the file.
class TemporaryFile {
public:
    // Creates the file, empty. Throws when that fails.
    explicit TemporaryFile(const char* extension);
    ~TemporaryFile();
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    // The file's name without the folder, in ASCII. A process that runs in the folder can open the file by
    // this name, even when it cannot decode the folder's path.
    const std::string& Name() const {
        return name_;
    }
    const WideText& Path() const {
        return path_;
    }
    // Deletes the file now. When that fails, for example because the file is in use, the destructor tries
    // again.
    void Delete();

private:
    std::string name_;
    WideText path_;  // empty once the file is deleted
};

// Writes the image's front and the modules to an existing file. Throws when that fails, and when a module's
// size is not the size in `request`.
void WriteBootFile(const WideText& path, const BootImage& image, const BootRequest& request,
                   const std::vector<ModuleEntry>& modules);

// Copies a file to the target, which is created or replaced. Throws when a step fails; an existing target is
// then unchanged.
void ReplaceByCopy(const WideText& source, const WideText& target);
