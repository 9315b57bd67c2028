// The checks of the files that a configuration names. A dry run and a run make the same checks.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include "config/vm_config.h"

// The whole Multiboot header must be within this many bytes from the start of the kernel file.
inline constexpr std::size_t MULTIBOOT_AREA_BYTES = 8192;

// The offset of the kernel's Multiboot header in bytes, a multiple of 4; none when the first
// MULTIBOOT_AREA_BYTES contain no valid header.
std::optional<std::size_t> FindMultibootHeader(std::string_view file);

enum class HeaderNeed { Required, Optional };

// Throws unless the first bytes of a kernel file are those of a 32-bit little-endian i386 ELF file and, where
// required, contain a Multiboot header.
void CheckKernelImage(std::string_view first_bytes, HeaderNeed need);

// Opens the kernel, the disk images and the modules in this order, and prints a line about each. Throws at
// the first file that cannot be read, at a kernel that CheckKernelImage refuses, and at a disk image that
// does not consist of whole sectors of 512 bytes.
void CheckFiles(const VmConfig& config);
