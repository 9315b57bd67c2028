// The boot image as a file, for as long as the emulator needs it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "adapter/boot_image.h"
#include "base/owned_handle.h"
#include "config/vm_config.h"

// A file opened for reading, and its size. Throws where that fails.
struct SizedFile {
    explicit SizedFile(const WideText& path);
    // All of it.
    std::string Read() const;

    OwnedHandle handle;
    std::uint64_t bytes = 0;
};

// A file of its own in the folder for temporary files. It goes with its owner.
class BootFile {
public:
    // Writes the front and the modules behind it, of which `request` has the sizes. Throws where that fails.
    BootFile(const BootImage& image, const BootRequest& request, const std::vector<ModuleEntry>& modules);
    ~BootFile();
    BootFile(const BootFile&) = delete;
    BootFile& operator=(const BootFile&) = delete;

    const WideText& Path() const {
        return path_;
    }
    // Deletes it ahead of time, where the platform deletes files that are in use.
    void Delete();

private:
    WideText path_;
};
