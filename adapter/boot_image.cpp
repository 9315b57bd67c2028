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

// The registers of the emulator's display.
enum DisplayRegister : std::uint16_t { WIDTH = 1, HEIGHT = 2, BITS = 3, ENABLE = 4 };
constexpr std::uint16_t DISPLAY_ON = 0x41;  // cleared, with a linear framebuffer

// What the stub needs. It copies the first and the third part into the loader's Multiboot information.
struct StubRecord {
    std::uint32_t arguments, module_count, modules;
    std::array<std::uint16_t, 10> display;                          // numbers of registers and their values
    std::array<std::uint32_t, 2> framebuffer;                       // the stub finds the address
    std::uint32_t pitch, width, height;                             // a width of 0: the text screen
    std::array<std::uint8_t, 8> colours{32, 1, 16, 8, 8, 8, 0, 8};  // direct: position and size of each
    std::uint32_t kernel_entry;
};
static_assert(sizeof(StubRecord) == 64);

constexpr std::uint32_t PAGE_BYTES = 4096;
constexpr std::uint32_t LOWEST_ADDRESS = 0x100000;  // the emulator's own tables are below this address
constexpr std::uint32_t FIRMWARE_BYTES = 0x40000;   // the firmware uses the end of the memory
constexpr std::uint32_t DEFAULT_WIDTH = 800;
constexpr std::uint32_t DEFAULT_HEIGHT = 600;
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

// Whether a segment below the kernel contains nothing but the headers of the file: some linkers add such a
// segment, and no kernel needs it.
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
    // When the entry is a virtual address in an executable segment, the kernel starts at its physical
    // address.
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

// Sorts the segments by address. Refuses overlapping segments: the content of the memory would depend on the
// order of loading, and the emulator does not load segments in the file's order.
void SortSegments(Kernel& kernel) {
    std::sort(kernel.segments.begin(), kernel.segments.end(),
              [](const Segment& left, const Segment& right) { return left.address < right.address; });
    if (kernel.segments.front().address < LOWEST_ADDRESS)
        throw std::runtime_error("le noyau demande de la mémoire en dessous de 1 Mio.");
    for (const Segment& segment : kernel.segments) {
        if (segment.address < kernel.end)
            throw std::runtime_error("des segments du noyau se chevauchent.");
        kernel.end = std::uint64_t{segment.address} + segment.memory_bytes;
    }
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
    if (std::none_of(kernel.segments.begin(), kernel.segments.end(), [&](const Segment& segment) {
            return kernel.entry >= segment.address && kernel.entry - segment.address < segment.memory_bytes;
        }))
        throw std::runtime_error("le point d'entrée du noyau n'est dans aucun segment.");
    SortSegments(kernel);
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
    const std::uint32_t bits = mode.bits == 0 ? 32 : mode.bits;
    if (mode.width == 0 || mode.height == 0)
        return DisplayMode{DEFAULT_WIDTH, DEFAULT_HEIGHT, bits};
    return DisplayMode{mode.width, mode.height, bits};
}

// The segment that is added after the kernel's segments.
struct AddedSegment {
    std::uint64_t address;
    std::string front;          // up to the first module
    std::uint64_t total_bytes;  // with the modules
};

std::uint32_t Low32(std::uint64_t number) {
    return static_cast<std::uint32_t>(number);
}

// The front consists of the stub, its record, the list of the modules and their arguments.
AddedSegment ComposeAddedSegment(const Kernel& kernel, const VmConfig& config,
                                 const std::vector<std::uint64_t>& module_bytes, const DisplayMode& mode) {
    const std::uint64_t address = kernel.end + PaddingBehind(kernel.end);
    const std::uint64_t record_address = address + STUB.size();
    const std::uint64_t list = record_address + sizeof(StubRecord);
    const std::uint64_t arguments = list + config.modules.size() * sizeof(MultibootModule);
    std::string texts = Utf8FromWide(config.command) + '\0';
    std::vector<MultibootModule> modules;
    for (const ModuleEntry& module : config.modules) {
        modules.push_back({0, 0, Low32(arguments + texts.size()), 0});
        texts += Utf8FromWide(module.command) + '\0';
    }
    std::uint64_t end = arguments + texts.size();
    end += PaddingBehind(end);
    const std::uint64_t front_bytes = end - address;
    for (std::size_t at = 0; at < modules.size(); ++at) {
        modules[at].start = Low32(end);
        modules[at].end = Low32(end + module_bytes[at]);
        end += module_bytes[at] + PaddingBehind(module_bytes[at]);
    }

    std::string operand;
    AppendRecord(operand, Low32(record_address));
    std::string front(STUB.begin(), STUB.end());
    front.replace(STUB_OPERAND, operand.size(), operand);
    StubRecord record{};
    record.arguments = Low32(arguments);
    record.module_count = Low32(modules.size());
    record.modules = Low32(list);
    record.width = mode.width;
    record.height = mode.height;
    record.pitch = mode.width * 4;
    record.display = {ENABLE, 0,
                      HEIGHT, static_cast<std::uint16_t>(mode.height),
                      WIDTH,  static_cast<std::uint16_t>(mode.width),
                      BITS,   32,
                      ENABLE, DISPLAY_ON};
    record.kernel_entry = kernel.entry;
    AppendRecord(front, record);
    for (const MultibootModule& module : modules)
        AppendRecord(front, module);
    front += texts;
    front.resize(front_bytes, '\0');
    return {address, front, end - address};
}

std::string ComposeFile(std::string_view kernel_file, const Kernel& kernel, const AddedSegment& added) {
    const std::size_t header_count = kernel.segments.size() + 1;
    ElfHeader elf{};
    elf.identity = RecordAt<ElfHeader>(kernel_file, 0).identity;
    elf.type = ElfHeader::EXECUTABLE;
    elf.machine = ElfHeader::I386;
    elf.version = 1;
    elf.entry = Low32(added.address);
    elf.program_headers_offset = elf.header_bytes = sizeof(ElfHeader);
    elf.program_header_bytes = sizeof(ProgramHeader);
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
    append_header(added.address, added.total_bytes, added.total_bytes);
    // The loader needs a Multiboot header near the start of the file; no segment has to contain it.
    constexpr std::uint32_t FLAGS = MultibootHeader::ALIGNED_MODULES | MultibootHeader::MEMORY;
    AppendRecord(file, MultibootHeader{MultibootHeader::MAGIC, FLAGS, 0 - (MultibootHeader::MAGIC + FLAGS)});
    for (const Segment& segment : kernel.segments)
        file += segment.content;
    return file + added.front;
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
    const AddedSegment added =
        ComposeAddedSegment(kernel, config, module_bytes, image.mode.value_or(DisplayMode{0, 0}));
    const std::uint64_t needed_bytes = added.address + added.total_bytes + FIRMWARE_BYTES;
    if (needed_bytes > config.ram_mib * MIB)
        throw std::runtime_error("le noyau et ses modules ne tiennent pas dans la mémoire : il faut " +
                                 NumberText((needed_bytes + MIB - 1) / MIB) + " Mio.");
    image.front = ComposeFile(kernel_file, kernel, added);
    return image;
}
