// The records of an ELF file and of Multiboot as they are stored: little-endian, without gaps.
#pragma once

#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <string>
#include <string_view>

static_assert(std::endian::native == std::endian::little, "the records are copied as they are");

// The defaults are those of the file that this engine composes.
struct ElfHeader {
    enum : std::uint16_t { EXECUTABLE = 2, I386 = 3 };

    std::array<char, 16> identity{};
    std::uint16_t type = EXECUTABLE, machine = I386;
    std::uint32_t version = 1, entry = 0, program_headers_offset = 52, section_headers_offset = 0, flags = 0;
    std::uint16_t header_bytes = 52, program_header_bytes = 32, program_header_count = 0;
    std::array<std::uint16_t, 3> section_header_numbers{};
};

struct ProgramHeader {
    enum : std::uint32_t { LOADED = 1, EXECUTABLE = 1, ALL_ACCESS = 7 };

    std::uint32_t type, offset, virtual_address, physical_address, file_bytes, memory_bytes, flags, alignment;
};

struct MultibootHeader {
    enum : std::uint32_t { MAGIC = 0x1BADB002 };
    enum : std::uint32_t { ALIGNED_MODULES = 1, MEMORY = 2, HAS_MODE = 4, HAS_ADDRESSES = 0x10000 };
    enum : std::uint32_t { UNKNOWN_FLAGS = 0xFFF8 };  // a loader must refuse a kernel that sets one of them

    std::uint32_t magic, flags, checksum;
};

// Follows the header; valid with HAS_ADDRESSES. A `load_end` of 0 means the end of the file. A `memory_end`
// of 0 means that no memory is reserved after the loaded bytes.
struct MultibootAddresses {
    std::uint32_t header, load_start, load_end, memory_end, entry;
};

// Follows the addresses; valid with HAS_MODE.
struct MultibootMode {
    enum : std::uint32_t { GRAPHICS = 0 };

    std::uint32_t type, width, height, bits;
};

// An entry of the module list that the kernel reads. The fields are addresses in memory.
struct MultibootModule {
    std::uint32_t start, end, arguments, reserved;
};

static_assert(sizeof(ElfHeader) == 52 && sizeof(ProgramHeader) == 32 && sizeof(MultibootHeader) == 12 &&
              sizeof(MultibootAddresses) == 20 && sizeof(MultibootModule) == 16);

// Reads the record at an offset in bytes. Throws when `bytes` does not contain the whole record.
template <typename Record>
Record RecordAt(std::string_view bytes, std::uint64_t offset) {
    if (offset + sizeof(Record) > bytes.size())
        throw std::runtime_error("fichier ELF tronqué.");
    Record record;
    std::memcpy(&record, bytes.data() + offset, sizeof record);
    return record;
}

template <typename Record>
void AppendRecord(std::string& bytes, const Record& record) {
    bytes.append(reinterpret_cast<const char*>(&record), sizeof record);
}
