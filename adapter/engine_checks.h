// The checks of an engine on the files that it is given, the same in a dry run and in a run.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "config/vm_config.h"

// How far into the kernel file a Multiboot header may reach, in bytes.
inline constexpr std::size_t MULTIBOOT_AREA_BYTES = 8192;

inline constexpr std::uint32_t MULTIBOOT_MAGIC = 0x1BADB002;

// The number in these four bytes, which must be there.
std::uint32_t LittleEndian32(std::string_view bytes, std::size_t offset);

// Where a kernel's Multiboot header stands: whole, at an offset divisible by 4, near the start of the file.
std::optional<std::size_t> FindMultibootHeader(std::string_view file);

enum class HeaderNeed { Required, Optional };

// Throws unless the first bytes of a kernel file are those of a 32-bit little-endian i386 ELF file and, where
// required, hold a Multiboot header.
void CheckKernelImage(std::string_view first_bytes, HeaderNeed need);

// Opens the kernel, the disk images and the modules and tells a line about each on standard output. Throws
// for the first that cannot be read, for a kernel that is none and for a disk image that is not whole sectors
// of 512 bytes.
void CheckFiles(const VmConfig& config);
