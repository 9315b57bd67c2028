// Any bytes as a kernel, and modules of any size: refused with a message, or an image from which an ELF
// loader loads the kernel to the addresses in its own headers, and the added segment after it.
#include "adapter/boot_image.h"

#include <algorithm>

#include "adapter/engine_checks.h"
#include "adapter/kernel_format.h"
#include "fuzz.h"

namespace {

constexpr std::uint64_t LOWEST = 0x100000;
constexpr std::uint64_t MEMORY = 2 << 20;

struct Loaded {
    std::string memory;                                           // from LOWEST on
    std::vector<std::pair<std::uint64_t, std::uint64_t>> ranges;  // of addresses, in the order of the headers
};

Loaded Load(std::string_view file) {
    Loaded loaded;
    const auto elf = RecordAt<ElfHeader>(file, 0);
    for (std::uint64_t at = 0; at < elf.program_header_count; ++at) {
        const auto header =
            RecordAt<ProgramHeader>(file, elf.program_headers_offset + at * elf.program_header_bytes);
        const std::uint64_t address = header.physical_address;
        const std::uint64_t end = address + header.memory_bytes;
        const bool has_only_headers = header.offset == 0 && (header.flags & 1) == 0 && end <= LOWEST;
        if (header.type != ProgramHeader::LOADED || address == end || has_only_headers)
            continue;
        Require(address >= LOWEST && end <= MEMORY && header.file_bytes <= header.memory_bytes);
        Require(std::uint64_t{header.offset} + header.file_bytes <= file.size());
        loaded.memory.resize(std::max(loaded.memory.size(), end - LOWEST));
        loaded.memory.replace(address - LOWEST, header.file_bytes,
                              file.substr(header.offset, header.file_bytes));
        loaded.ranges.emplace_back(address, end);
    }
    return loaded;
}

void TestImage(std::string_view kernel, const std::vector<std::uint64_t>& module_bytes,
               const BootImage& image) {
    std::string file = image.front;
    for (const std::uint64_t bytes : module_bytes)
        file.append(bytes, 'm').append(PaddingBehind(bytes), '\0');
    const std::optional<std::size_t> header = FindMultibootHeader(kernel);
    const bool has_addresses = header && (RecordAt<MultibootHeader>(kernel, *header).flags & 0x10000) != 0;
    const Loaded asked = has_addresses ? Loaded() : Load(kernel);
    const Loaded loaded = Load(file);
    Require(FindMultibootHeader(file).has_value());
    const std::uint64_t own = loaded.ranges.back().first;
    Require(own % 4096 == 0 && own == RecordAt<ElfHeader>(file, 0).entry);
    for (const auto& [first, behind] : asked.ranges)
        Require(behind <= own && loaded.memory.compare(first - LOWEST, behind - first, asked.memory,
                                                       first - LOWEST, behind - first) == 0);
    const std::size_t record = RecordAt<std::uint32_t>(loaded.memory, own - LOWEST + 1) - LOWEST;
    const std::uint32_t entry = RecordAt<std::uint32_t>(loaded.memory, record + 60);
    bool is_entered = false;
    for (std::size_t at = 1; at < loaded.ranges.size(); ++at) {
        const auto& [first, behind] = loaded.ranges[at - 1];
        Require(behind <= loaded.ranges[at].first);
        is_entered = is_entered || (entry >= first && entry < behind);
    }
    Require(is_entered);
    Require(loaded.memory.c_str() + RecordAt<std::uint32_t>(loaded.memory, record) - LOWEST ==
            std::string("arguments"));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view kernel(reinterpret_cast<const char*>(data), size);
    VmConfig config;
    config.ram_mib = MEMORY >> 20;
    config.command = TEXT("arguments");
    std::vector<std::uint64_t> module_bytes;
    for (std::size_t at = 9; at < std::min<std::size_t>(12, size) && data[at] != 0; ++at) {  // unused by ELF
        config.modules.push_back({TEXT("m"), TEXT("module")});
        module_bytes.push_back(data[at] * 100U);
    }
    if (const auto image = ResultOf([&] { return ComposeBootImage(kernel, config, module_bytes); }))
        TestImage(kernel, module_bytes, *image);
    return 0;
}
