// The files that the engine writes: temporary files for the emulator, and the picture of the screen.
#pragma once

#include <string>
#include <vector>

#include "adapter/boot_image.h"
#include "base/owned_handle.h"
#include "config/vm_config.h"

// The names of temporary files start with this text and the identifier of the process that created them.
inline constexpr std::string_view TEMPORARY_PREFIX = "tessarun-";

// A new file in a folder, held open until it is deleted. The destructor deletes the file.
class TemporaryFile {
public:
    // Creates the file, empty. Throws when that fails.
    TemporaryFile(const WideText& folder, const char* extension);
    ~TemporaryFile();

    // The file's name without the folder, in ASCII. A process that runs in the folder can open the file by
    // this name, even when it cannot decode the folder's path.
    const std::string& Name() const {
        return name_;
    }
    // Appends the image's front and the modules. Throws when that fails, and when the size of a module is not
    // the one in `module_bytes`.
    void Write(const BootImage& image, const std::vector<ModuleEntry>& modules,
               const std::vector<std::uint64_t>& module_bytes);
    // Copies the file to the target, which is created or replaced. Throws when a step fails; an existing
    // target is then unchanged.
    void CopyTo(const WideText& target) const;
    // Deletes the file now. When that fails, for example because the file is in use, the destructor tries
    // again.
    void Delete();

private:
    std::string name_;
    WideText path_;
    OwnedHandle handle_;
};

// Throws when a disk image or the screen's picture cannot be written: the file is write-protected, used by
// another program or named twice, also by different paths; the picture's folder is missing; the picture would
// replace the kernel or a module.
void CheckWrittenFiles(const VmConfig& config);
