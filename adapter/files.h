// The temporary files for the emulator, and copies into them and out of them.
#pragma once

#include <string>
#include <vector>

#include "adapter/boot_image.h"
#include "config/vm_config.h"

// A new file in the folder for temporary files, which is deleted with its owner.
class TemporaryFile {
public:
    // Creates it, empty. Throws when that fails.
    explicit TemporaryFile(const char* extension);
    ~TemporaryFile();
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    // Its name without the folder, in ASCII. A process that runs in the folder finds the file by this name,
    // whatever encoding it uses for the names of folders.
    const std::string& Name() const {
        return name_;
    }
    const WideText& Path() const {
        return path_;
    }
    // Deletes it now. When the platform does not delete a file in use, the destructor tries again.
    void Delete();

private:
    std::string name_;
    WideText path_;  // empty once the file is deleted
};

// Writes the image's front and the modules. Throws when that fails or a module's size is not that in
// `request`.
void WriteBootFile(const WideText& path, const BootImage& image, const BootRequest& request,
                   const std::vector<ModuleEntry>& modules);

// Copies a file over the target, or creates it. When a step fails, throws, and an old target is untouched.
void ReplaceByCopy(const WideText& source, const WideText& target);
