// Reads an ELF kernel and composes the file that boots it.
#include "adapter/boot_image.h"

#include <algorithm>
#include <array>
#include <stdexcept>

#include "adapter/engine_checks.h"
#include "adapter/kernel_format.h"
#include "base/text_convert.h"

namespace {

// The machine code of stub.S.
constexpr auto STUB = std::to_array<unsigned char>({
#include "stub.inc"
});
constexpr std::size_t STUB_OPERAND = 1;  // the operand of its first instruction: the record's address

// The registers of the emulator's display, and a value of the last one.
enum : std::uint16_t { WIDTH = 1, HEIGHT = 2, BITS = 3, ENABLE = 4, ON = 0x41 };  // ON clears the framebuffer

// The stub's data. All but `display` and `kernel_entry` are fields of the Multiboot information.
struct StubRecord {
    std::uint32_t arguments, module_count, modules;
    std::array<std::uint16_t, 10> display;                          // numbers of registers and their values
    std::array<std::uint32_t, 2> framebuffer;                       // the stub finds the address
    std::uint32_t pitch, width, height;                             // a width of 0: the text screen
    std::array<std::uint8_t, 8> colours{32, 1, 16, 8, 8, 8, 0, 8};  // 32 bits, RGB: place, size
    std::uint32_t kernel_entry;
};
static_assert(sizeof(StubRecord) == 64);

constexpr std::uint32_t PAGE_BYTES = 4096;
constexpr std::uint32_t LOWEST_ADDRESS = 0x100000;  // the emulator's own tables are below this address
constexpr std::uint32_t FIRMWARE_BYTES = 0x40000;   // the firmware uses the end of the memory
constexpr DisplayMode DEFAULT_MODE{800, 600};
constexpr std::size_t SEGMENTS_MAX = 128;  // keeps the composed Multiboot header near the start of the file

struct Segment {
    std::uint32_t address;
    std::string_view content;
    std::uint32_t memory_bytes;
};

struct Kernel {
    std::vector<Segment> segments;
    std::uint32_t entry = 0;
    std::uint64_t end = 0;  // the first address after its memory
};

// Some linkers put the headers of the file into a segment below the kernel, which no kernel needs.
bool HasOnlyHeaders(const ProgramHeader& header) {
    return header.offset == 0 && (header.flags & ProgramHeader::EXECUTABLE) == 0 &&
           std::uint64_t{header.physical_address} + header.memory_bytes <= LOWEST_ADDRESS;
}

void ReadSegment(std::string_view file, const ProgramHeader& header, std::uint32_t elf_entry,
                 Kernel& kernel) {
    if (header.type != ProgramHeader::LOADED || header.memory_bytes == 0 || HasOnlyHeaders(header))
        return;
    if (std::uint64_t{header.offset} + header.file_bytes > file.size() ||
        header.file_bytes > header.memory_bytes)
        throw std::runtime_error("fichier ELF tronqué.");
    // A kernel whose entry is a virtual address starts at the physical one.
    if ((header.flags & ProgramHeader::EXECUTABLE) != 0 && elf_entry >= header.virtual_address &&
        elf_entry - header.virtual_address < header.file_bytes)
        kernel.entry = elf_entry - header.virtual_address + header.physical_address;
    kernel.segments.push_back(
        {header.physical_address, file.substr(header.offset, header.file_bytes), header.memory_bytes});
}

// Replaces all segments by the single one that the addresses in the Multiboot header describe.
void ReplaceSegments(std::string_view file, std::uint64_t header_offset, Kernel& kernel) {
    const auto addresses = RecordAt<MultibootAddresses>(file, header_offset + sizeof(MultibootHeader));
    const std::uint32_t start = addresses.load_start;
    const std::uint32_t bytes_before_header = addresses.header - start;
    const std::uint64_t offset = header_offset - bytes_before_header;
    const std::uint64_t bytes =
        addresses.load_end == 0 ? file.size() - offset : std::uint64_t{addresses.load_end} - start;
    if (bytes_before_header > header_offset || bytes > file.size() - offset)
        throw std::runtime_error("les adresses de l'en-tête Multiboot sont incohérentes.");
    const auto file_bytes = static_cast<std::uint32_t>(bytes);
    const std::uint32_t memory_bytes = addresses.memory_end > start ? addresses.memory_end - start : 0;
    kernel.entry = addresses.entry;
    kernel.segments = {{start, file.substr(offset, file_bytes), std::max(file_bytes, memory_bytes)}};
}

Kernel ReadKernel(std::string_view file, const std::optional<std::size_t>& header_offset) {
    const auto elf = RecordAt<ElfHeader>(file, 0);
    Kernel kernel;
    kernel.entry = elf.entry;
    for (std::uint64_t at = 0; at < elf.program_header_count; ++at)
        ReadSegment(file,
                    RecordAt<ProgramHeader>(file, elf.program_headers_offset + at * elf.program_header_bytes),
                    elf.entry, kernel);
    if (header_offset &&
        (RecordAt<MultibootHeader>(file, *header_offset).flags & MultibootHeader::HAS_ADDRESSES) != 0)
        ReplaceSegments(file, *header_offset, kernel);
    if (kernel.segments.empty() || kernel.segments.size() > SEGMENTS_MAX)
        throw std::runtime_error("le noyau n'a aucun segment à charger, ou plus de 128.");
    std::sort(kernel.segments.begin(), kernel.segments.end(),
              [](const Segment& left, const Segment& right) { return left.address < right.address; });
    if (kernel.segments.front().address < LOWEST_ADDRESS)
        throw std::runtime_error("le noyau demande de la mémoire en dessous de 1 Mio.");
    bool has_entry = false;
    for (const Segment& segment : kernel.segments) {
        // The content of the memory would depend on the order in which the emulator loads the segments.
        if (segment.address < kernel.end)
            throw std::runtime_error("des segments du noyau se chevauchent.");
        kernel.end = std::uint64_t{segment.address} + segment.memory_bytes;
        has_entry = has_entry || (kernel.entry >= segment.address && kernel.entry < kernel.end);
    }
    if (!has_entry)
        throw std::runtime_error("le point d'entrée du noyau n'est dans aucun segment.");
    return kernel;
}

// The mode that the kernel's header requests, if it requests graphics.
std::optional<DisplayMode> ModeOfHeader(std::string_view file,
                                        const std::optional<std::size_t>& header_offset) {
    if (!header_offset)
        return std::nullopt;
    const std::uint32_t flags = RecordAt<MultibootHeader>(file, *header_offset).flags;
    if ((flags & MultibootHeader::UNKNOWN_FLAGS) != 0)
        throw std::runtime_error("l'en-tête Multiboot exige ce que ce moteur ne connaît pas.");
    if ((flags & MultibootHeader::HAS_MODE) == 0)
        return std::nullopt;
    const auto mode =
        RecordAt<MultibootMode>(file, *header_offset + sizeof(MultibootHeader) + sizeof(MultibootAddresses));
    if (mode.type != MultibootMode::GRAPHICS)
        return std::nullopt;
    if (mode.width > SIZE_PIXELS_MAX || mode.height > SIZE_PIXELS_MAX)
        throw std::runtime_error("le noyau demande un écran de plus de 8192 points de côté.");
    DisplayMode asked =
        mode.width == 0 || mode.height == 0 ? DEFAULT_MODE : DisplayMode{mode.width, mode.height};
    asked.bits = mode.bits == 0 ? asked.bits : mode.bits;
    return asked;
}

std::uint32_t Low32(std::uint64_t number) {
    return static_cast<std::uint32_t>(number);
}

// Returns the front of the segment that is added at this address: the stub, its record, the list of the
// modules and all arguments. Stores the first address after the modules, which follow the front.
std::string ComposeFront(std::uint64_t address, std::uint32_t kernel_entry, const VmConfig& config,
                         const std::vector<std::uint64_t>& module_bytes, const DisplayMode& mode,
                         std::uint64_t& end) {
    const std::uint64_t record_address = address + STUB.size();
    const std::uint64_t list = record_address + sizeof(StubRecord);
    const std::uint64_t arguments = list + config.modules.size() * sizeof(MultibootModule);
    std::string texts = Utf8FromWide(config.command) + '\0';
    std::vector<MultibootModule> modules;
    for (const ModuleEntry& module : config.modules) {
        modules.push_back({0, 0, Low32(arguments + texts.size()), 0});
        texts += Utf8FromWide(module.command) + '\0';
    }
    end = arguments + texts.size();
    end += PaddingBehind(end);
    const std::uint64_t front_bytes = end - address;
    for (std::size_t at = 0; at < modules.size(); ++at) {
        modules[at].start = Low32(end);
        modules[at].end = Low32(end + module_bytes[at]);
        end += module_bytes[at] + PaddingBehind(module_bytes[at]);
    }

    const auto width = static_cast<std::uint16_t>(mode.width);
    const auto height = static_cast<std::uint16_t>(mode.height);
    std::string operand;
    AppendRecord(operand, Low32(record_address));
    std::string front(STUB.begin(), STUB.end());
    front.replace(STUB_OPERAND, operand.size(), operand);
    AppendRecord(front, StubRecord{.arguments = Low32(arguments),
                                   .module_count = Low32(modules.size()),
                                   .modules = Low32(list),
                                   .display = {ENABLE, 0, WIDTH, width, HEIGHT, height, BITS, 32, ENABLE, ON},
                                   .framebuffer = {},
                                   .pitch = mode.width * 4,
                                   .width = mode.width,
                                   .height = mode.height,
                                   .kernel_entry = kernel_entry});
    for (const MultibootModule& module : modules)
        AppendRecord(front, module);
    front += texts;
    front.resize(front_bytes, '\0');
    return front;
}

std::string ComposeFileStart(std::string_view kernel_file, const Kernel& kernel, std::uint64_t added_address,
                             std::uint64_t added_bytes) {
    const std::size_t header_count = kernel.segments.size() + 1;
    ElfHeader elf;
    elf.identity = RecordAt<ElfHeader>(kernel_file, 0).identity;
    elf.entry = Low32(added_address);
    elf.program_header_count = static_cast<std::uint16_t>(header_count);
    std::string file;
    AppendRecord(file, elf);
    std::uint64_t offset = sizeof(ElfHeader) + header_count * sizeof(ProgramHeader) + sizeof(MultibootHeader);
    const auto append_header = [&](std::uint64_t address, std::uint64_t file_bytes,
                                   std::uint64_t memory_bytes) {
        AppendRecord(file,
                     ProgramHeader{ProgramHeader::LOADED, Low32(offset), Low32(address), Low32(address),
                                   Low32(file_bytes), Low32(memory_bytes), ProgramHeader::ALL_ACCESS, 4});
        offset += file_bytes;
    };
    for (const Segment& segment : kernel.segments)
        append_header(segment.address, segment.content.size(), segment.memory_bytes);
    append_header(added_address, added_bytes, added_bytes);
    // The loader needs a Multiboot header near the start of the file; no segment has to contain it.
    constexpr std::uint32_t FLAGS = MultibootHeader::ALIGNED_MODULES | MultibootHeader::MEMORY;
    AppendRecord(file, MultibootHeader{MultibootHeader::MAGIC, FLAGS, 0 - (MultibootHeader::MAGIC + FLAGS)});
    for (const Segment& segment : kernel.segments)
        file += segment.content;
    return file;
}

}  // namespace

std::uint32_t PaddingBehind(std::uint64_t bytes) {
    return static_cast<std::uint32_t>(-bytes % PAGE_BYTES);
}

BootImage ComposeBootImage(std::string_view kernel_file, const VmConfig& config,
                           const std::vector<std::uint64_t>& module_bytes) {
    const std::optional<std::size_t> header_offset = FindMultibootHeader(kernel_file);
    const Kernel kernel = ReadKernel(kernel_file, header_offset);
    BootImage image;
    image.asked_mode = ModeOfHeader(kernel_file, header_offset);
    if (config.explicit_video)
        image.asked_mode = DisplayMode{config.width, config.height};
    if (image.asked_mode)
        image.mode = DisplayMode{std::max(image.asked_mode->width / 8 * 8, 8U), image.asked_mode->height};
    const std::uint64_t address = kernel.end + PaddingBehind(kernel.end);
    std::uint64_t end = 0;
    const std::string front = ComposeFront(address, kernel.entry, config, module_bytes,
                                           image.mode.value_or(DisplayMode{0, 0}), end);
    if (end + FIRMWARE_BYTES > config.ram_mib * MIB)
        throw std::runtime_error("le noyau et ses modules ne tiennent pas dans la mémoire : il faut " +
                                 NumberText((end + FIRMWARE_BYTES + MIB - 1) / MIB) + " Mio.");
    image.front = ComposeFileStart(kernel_file, kernel, address, end - address) + front;
    return image;
}
