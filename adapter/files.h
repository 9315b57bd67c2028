// The files that lie for a while where the emulator runs, and what is copied into them and out of them.
#pragma once

#include <string>
#include <vector>

#include "adapter/boot_image.h"
#include "config/vm_config.h"

// A file of its own in the folder for temporary files. It goes with its owner.
class TemporaryFile {
public:
    // Makes it, empty. Throws where that fails.
    explicit TemporaryFile(const char* extension);
    ~TemporaryFile();
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    // Its name in the folder, in ASCII: whoever runs there finds it by that, however he reads names.
    const std::string& Name() const {
        return name_;
    }
    const WideText& Path() const {
        return path_;
    }
    // Deletes it ahead of time, where the platform deletes files that are in use.
    void Delete();

private:
    std::string name_;
    WideText path_;
};

// Writes the front and the modules behind it, of which `request` has the sizes. Throws where that fails.
void WriteBootFile(const WideText& path, const BootImage& image, const BootRequest& request,
                   const std::vector<ModuleEntry>& modules);

// Puts a copy in place of what stands at the target. Throws where that fails.
void CopyOver(const WideText& source, const WideText& target);
