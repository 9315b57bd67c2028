// Reads and checks the files that a configuration names. A dry run and a run make the same checks.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/owned_handle.h"
#include "config/vm_config.h"

// A regular file that is open for reading.
struct InputFile {
    WideText path;
    OwnedHandle handle;
    std::uint64_t bytes;  // its size when it was opened
};

// Throws, with the path and the reason in the message, when the file cannot be opened, and for a folder or a
// device.
InputFile OpenInput(const WideText& path);

// Reads `count` bytes from `offset` on. Throws when that fails or the file ends before.
std::string ReadInput(const InputFile& file, std::uint64_t offset, std::uint64_t count);

// The offset of the kernel's Multiboot header in bytes, a multiple of 4; none when no valid header is
// completely in the first 8192 bytes.
std::optional<std::size_t> FindMultibootHeader(std::string_view file);

// Opens the kernel, the disk images and the modules in this order, and prints a line about each. Returns the
// sizes of the modules in bytes. Throws at the first file that cannot be read, at a kernel that is not a
// 32-bit i386 ELF file or lacks a required Multiboot header, and at a disk image that is empty, larger than
// 128 GiB or does not consist of whole sectors of 512 bytes.
std::vector<std::uint64_t> CheckFiles(const VmConfig& config);
