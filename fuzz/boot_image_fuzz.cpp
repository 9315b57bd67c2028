// Any bytes as a kernel, and modules of any size: refused with a message, or an image from which a loader
// that knows nothing but ELF puts the kernel where its own headers say, with our part behind it.
#include "adapter/boot_image.h"

#include <algorithm>

#include "adapter/engine_checks.h"
#include "fuzz.h"

namespace {

constexpr std::uint64_t LOWEST = 0x100000;
constexpr std::uint64_t MEMORY = LOWEST + 0x60000;

struct Loaded {
    std::string memory = std::string(MEMORY - LOWEST, '\0');
    std::vector<std::pair<std::uint64_t, std::uint64_t>> ranges;  // of addresses, as the headers stand
};

Loaded Load(std::string_view file) {
    Loaded loaded;
    const auto word = [&](std::size_t offset) { return std::uint64_t{LittleEndian32(file, offset)}; };
    for (std::uint64_t at = 0; at < (word(44) & 0xFFFF); ++at) {
        const std::size_t header = word(28) + at * (word(42) & 0xFFFF);
        const std::uint64_t bytes = word(header + 16);
        const std::uint64_t address = word(header + 12);
        const std::uint64_t end = address + word(header + 20);
        if (word(header) != 1 || address == end)
            continue;
        Require(address >= LOWEST && end <= MEMORY && bytes <= end - address);
        Require(word(header + 4) + bytes <= file.size());
        loaded.memory.replace(address - LOWEST, bytes, file.substr(word(header + 4), bytes));
        loaded.ranges.emplace_back(address, end);
    }
    return loaded;
}

void TestImage(std::string_view kernel, const BootRequest& request, const BootImage& image) {
    std::string file = image.front;
    for (const BootModule& module : request.modules)
        file.append(module.bytes, 'm').append(PaddingBehind(module.bytes), '\0');
    const std::optional<std::size_t> header = FindMultibootHeader(kernel);
    const bool has_addresses = header && (LittleEndian32(kernel, *header + 4) & 0x10000) != 0;
    const Loaded asked = has_addresses ? Loaded() : Load(kernel);
    const Loaded loaded = Load(file);
    Require(FindMultibootHeader(file).has_value());
    const std::uint64_t own = loaded.ranges.back().first;
    Require(own % 4096 == 0 && own == LittleEndian32(file, 24));
    for (const auto& [first, behind] : asked.ranges)
        Require(behind <= own && loaded.memory.compare(first - LOWEST, behind - first, asked.memory,
                                                       first - LOWEST, behind - first) == 0);
    const std::size_t record = LittleEndian32(loaded.memory, own - LOWEST + 1) - LOWEST;
    const std::uint32_t entry = LittleEndian32(loaded.memory, record + 116);
    bool is_entered = false;
    for (std::size_t at = 1; at < loaded.ranges.size(); ++at) {
        const auto& [first, behind] = loaded.ranges[at - 1];
        Require(behind <= loaded.ranges[at].first);
        is_entered = is_entered || (entry >= first && entry < behind);
    }
    Require(is_entered);
    Require(loaded.memory.c_str() + LittleEndian32(loaded.memory, record + 120) - LOWEST ==
            request.arguments);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view kernel(reinterpret_cast<const char*>(data), size);
    BootRequest request{"arguments", {}, std::nullopt, MEMORY};
    for (std::size_t at = 9; at < std::min<std::size_t>(12, size) && data[at] != 0; ++at)  // unused by ELF
        request.modules.push_back({data[at] * 100U, "module"});
    if (const auto image = ResultOf([&] { return ComposeBootImage(kernel, request); }))
        TestImage(kernel, request, *image);
    return 0;
}
