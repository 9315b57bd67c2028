// The checks of the stand-in engine on the files that it is given, the same in a dry run and in a run.
#pragma once

#include <string_view>

#include "config/vm_config.h"

// How far into the kernel file a Multiboot header may reach, in bytes.
inline constexpr std::size_t MULTIBOOT_AREA_BYTES = 8192;

enum class HeaderNeed { Required, Optional };

// Throws unless the first bytes of a kernel file are those of a 32-bit little-endian i386 ELF file and, where
// required, hold a Multiboot header whole and at an address divisible by 4.
void CheckKernelImage(std::string_view first_bytes, HeaderNeed need);

// Opens the kernel, the disk images and the modules and tells a line about each on standard output. Throws
// for the first that cannot be read, for a kernel that is none and for a disk image that is not whole sectors
// of 512 bytes.
void CheckFiles(const VmConfig& config);
