// Taking an ELF kernel apart and putting the file together that boots it.
#include "adapter/boot_image.h"

#include <algorithm>
#include <array>
#include <stdexcept>

#include "adapter/engine_checks.h"
#include "config/vm_config.h"

namespace {

// The machine code of stub.S.
constexpr auto STUB = std::to_array<unsigned char>({
#include "stub.inc"
});
constexpr std::size_t STUB_RECORD_ADDRESS = 1;  // behind the first byte of its first instruction

constexpr std::uint32_t PAGE_BYTES = 4096;
constexpr std::uint32_t LOWEST_ADDRESS = 0x100000;  // below, the emulator has tables of its own
constexpr std::uint32_t FIRMWARE_BYTES = 0x40000;   // the firmware keeps the end of the memory for itself
constexpr std::size_t RECORD_BYTES = 116;
constexpr std::size_t FIELD_BYTES = 24;  // what the stub reads behind the record
constexpr std::size_t MODULE_ROW_BYTES = 16;
constexpr DisplayMode DEFAULT_MODE{800, 600};

constexpr std::size_t ELF_HEADER_BYTES = 52;
constexpr std::size_t PROGRAM_HEADER_BYTES = 32;
constexpr std::uint32_t SEGMENT_LOADED = 1;
constexpr std::uint32_t SEGMENT_EXECUTABLE = 1;
constexpr std::size_t HEADERS_MAX = 128;  // with our own they stay in front of the area searched for a header

constexpr std::uint32_t MULTIBOOT_ALIGNED_MODULES_AND_MEMORY = 3;
constexpr std::uint32_t MULTIBOOT_MODE = 4;
constexpr std::uint32_t MULTIBOOT_ADDRESSES = 0x10000;
constexpr std::uint32_t MULTIBOOT_UNKNOWN = 0xFFF8;  // features that a loader must know or refuse

struct Segment {
    std::uint32_t address;
    std::string_view content;
    std::uint32_t memory_bytes;
};

struct Kernel {
    std::vector<Segment> segments;
    std::uint32_t entry = 0;
    std::uint64_t end = 0;  // the first address behind it
};

std::uint32_t Number(std::string_view bytes, std::uint64_t offset) {
    if (offset + 4 > bytes.size())
        throw std::runtime_error("fichier ELF tronqué.");
    return LittleEndian32(bytes, static_cast<std::size_t>(offset));
}

std::uint32_t HalfNumber(std::string_view bytes, std::uint64_t offset) {
    return Number(bytes, offset - 2) >> 16;
}

void Append32(std::string& bytes, std::uint64_t number) {
    for (unsigned shift = 0; shift < 32; shift += 8)
        bytes += static_cast<char>(number >> shift);
}

void Replace32(std::string& bytes, std::size_t offset, std::uint64_t number) {
    std::string text;
    Append32(text, number);
    bytes.replace(offset, text.size(), text);
}

void AppendPage(std::string& bytes) {
    bytes.append(PaddingBehind(bytes.size()), '\0');
}

void ReadSegment(std::string_view file, std::uint64_t header, std::uint32_t elf_entry, Kernel& kernel) {
    const std::uint32_t offset = Number(file, header + 4);
    const std::uint32_t virtual_address = Number(file, header + 8);
    const std::uint32_t file_bytes = Number(file, header + 16);
    Segment segment{Number(file, header + 12), {}, Number(file, header + 20)};
    const bool is_executable = (Number(file, header + 24) & SEGMENT_EXECUTABLE) != 0;
    if (Number(file, header) != SEGMENT_LOADED || segment.memory_bytes == 0)
        return;
    if (std::uint64_t{offset} + file_bytes > file.size() || file_bytes > segment.memory_bytes)
        throw std::runtime_error("fichier ELF tronqué.");
    segment.content = file.substr(offset, file_bytes);
    // An entry among the virtual addresses of a segment means the physical one.
    if (is_executable && elf_entry >= virtual_address && elf_entry - virtual_address < file_bytes)
        kernel.entry = elf_entry - virtual_address + segment.address;
    kernel.segments.push_back(segment);
}

// One segment by the addresses in a Multiboot header, which hold instead of the ELF file's where they are
// there.
void ReadSegmentOfHeader(std::string_view file, std::size_t header, Kernel& kernel) {
    const std::uint32_t start = Number(file, header + 16);
    const std::uint32_t behind_header = Number(file, header + 12) - start;
    const std::uint32_t end = Number(file, header + 20);
    const std::uint32_t memory_end = Number(file, header + 24);
    const std::uint64_t offset = std::uint64_t{header} - behind_header;
    const std::uint64_t bytes = end == 0 ? file.size() - offset : std::uint64_t{end} - start;
    if (behind_header > header || bytes > file.size() - offset)
        throw std::runtime_error("les adresses de l'en-tête Multiboot sont incohérentes.");
    const auto file_bytes = static_cast<std::uint32_t>(bytes);
    const std::uint32_t memory_bytes = memory_end > start ? memory_end - start : 0;
    kernel.entry = Number(file, header + 28);
    kernel.segments = {{start, file.substr(offset, file_bytes), std::max(file_bytes, memory_bytes)}};
}

// By their addresses. Where segments overlap, the order of loading counts, and the emulator has one of its
// own.
void OrderSegments(Kernel& kernel) {
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

Kernel ReadKernel(std::string_view file, const std::optional<std::size_t>& header) {
    const std::uint32_t table = Number(file, 28);
    const std::uint32_t stride = HalfNumber(file, 42);
    const std::uint32_t count = HalfNumber(file, 44);
    Kernel kernel;
    kernel.entry = Number(file, 24);
    for (std::uint32_t at = 0; at < count; ++at)
        ReadSegment(file, table + std::uint64_t{at} * stride, Number(file, 24), kernel);
    if (header && (Number(file, *header + 4) & MULTIBOOT_ADDRESSES) != 0)
        ReadSegmentOfHeader(file, *header, kernel);
    if (kernel.segments.empty() || kernel.segments.size() > HEADERS_MAX)
        throw std::runtime_error("le noyau n'a aucun segment à charger, ou plus de 128.");
    if (std::none_of(kernel.segments.begin(), kernel.segments.end(), [&](const Segment& segment) {
            return kernel.entry >= segment.address && kernel.entry - segment.address < segment.memory_bytes;
        }))
        throw std::runtime_error("le point d'entrée du noyau n'est dans aucun segment.");
    OrderSegments(kernel);
    return kernel;
}

// The mode that the kernel's header asks for, if it asks for graphics.
std::optional<DisplayMode> ModeOfHeader(std::string_view file, const std::optional<std::size_t>& header) {
    if (!header)
        return std::nullopt;
    const std::uint32_t flags = Number(file, *header + 4);
    if ((flags & MULTIBOOT_UNKNOWN) != 0)
        throw std::runtime_error("l'en-tête Multiboot exige ce que ce moteur ne connaît pas.");
    if ((flags & MULTIBOOT_MODE) == 0 || Number(file, *header + 32) != 0)
        return std::nullopt;
    const DisplayMode asked{Number(file, *header + 36), Number(file, *header + 40)};
    if (asked.width > SIZE_PIXELS_MAX || asked.height > SIZE_PIXELS_MAX)
        throw std::runtime_error("le noyau demande un écran de plus de 8192 points de côté.");
    return asked.width == 0 || asked.height == 0 ? DEFAULT_MODE : asked;
}

// What lies in our segment in front of the modules, at its addresses.
struct OwnPart {
    std::string bytes;
    std::uint64_t address;

    // The address of a text that is put at the end, with a zero behind it.
    std::uint64_t Put(std::string_view text) {
        const std::uint64_t at = address + bytes.size();
        bytes.append(text).append(1, '\0');
        return at;
    }
};

// Stub, record, the fields that the stub reads behind it, the list of the modules, the texts; `total` becomes
// the segment's size with the modules.
std::string ComposeOwnPart(std::uint64_t address, std::uint32_t entry, const BootRequest& request,
                           const std::optional<DisplayMode>& mode, std::uint64_t& total) {
    OwnPart own{{}, address};
    own.bytes.assign(reinterpret_cast<const char*>(STUB.data()), STUB.size());
    const std::size_t record = own.bytes.size();
    Replace32(own.bytes, STUB_RECORD_ADDRESS, address + record);
    own.bytes.append(RECORD_BYTES, '\0');
    const std::size_t fields = own.bytes.size();
    const std::size_t list = fields + FIELD_BYTES;
    own.bytes.append(FIELD_BYTES + request.modules.size() * MODULE_ROW_BYTES, '\0');
    const std::uint64_t arguments = own.Put(request.arguments);
    std::vector<std::uint64_t> texts;
    for (const BootModule& module : request.modules)
        texts.push_back(own.Put(module.arguments));
    AppendPage(own.bytes);

    const std::array<std::uint64_t, 6> values{entry,
                                              arguments,
                                              request.modules.size(),
                                              address + list,
                                              mode ? mode->width : 0,
                                              mode ? mode->height : 0};
    for (std::size_t at = 0; at < values.size(); ++at)
        Replace32(own.bytes, fields + 4 * at, values[at]);
    total = own.bytes.size();
    for (std::size_t at = 0; at < request.modules.size(); ++at) {
        const std::uint64_t bytes = request.modules[at].bytes;
        const std::size_t row = list + MODULE_ROW_BYTES * at;
        Replace32(own.bytes, row, address + total);
        Replace32(own.bytes, row + 4, address + total + bytes);
        Replace32(own.bytes, row + 8, texts[at]);
        total += bytes + PaddingBehind(bytes);
    }
    return own.bytes;
}

void AppendProgramHeader(std::string& file, std::uint64_t offset, std::uint64_t address,
                         std::uint64_t file_bytes, std::uint64_t memory_bytes) {
    for (const std::uint64_t number : {std::uint64_t{SEGMENT_LOADED}, offset, address, address, file_bytes,
                                       memory_bytes, std::uint64_t{7}, std::uint64_t{4}})
        Append32(file, number);
}

std::string ComposeFile(std::string_view elf_identity, const Kernel& kernel, std::uint64_t address,
                        std::string_view own, std::uint64_t total) {
    const std::size_t headers = kernel.segments.size() + 1;
    std::string file(elf_identity.substr(0, 16));
    for (const std::uint64_t number : {std::uint64_t{0x00030002}, std::uint64_t{1}, address,
                                       std::uint64_t{ELF_HEADER_BYTES}, std::uint64_t{0}, std::uint64_t{0}})
        Append32(file, number);
    Append32(file, PROGRAM_HEADER_BYTES << 16 | ELF_HEADER_BYTES);
    Append32(file, headers);
    Append32(file, 0);
    std::uint64_t offset = ELF_HEADER_BYTES + headers * PROGRAM_HEADER_BYTES + 12;
    for (const Segment& segment : kernel.segments) {
        AppendProgramHeader(file, offset, segment.address, segment.content.size(), segment.memory_bytes);
        offset += segment.content.size();
    }
    AppendProgramHeader(file, offset, address, total, total);
    // The loader wants a Multiboot header near the start of the file; it need not be loaded.
    for (const std::uint32_t number : {MULTIBOOT_MAGIC, MULTIBOOT_ALIGNED_MODULES_AND_MEMORY,
                                       ~(MULTIBOOT_MAGIC + MULTIBOOT_ALIGNED_MODULES_AND_MEMORY) + 1})
        Append32(file, number);
    for (const Segment& segment : kernel.segments)
        file += segment.content;
    return file.append(own);
}

}  // namespace

std::uint32_t PaddingBehind(std::uint64_t bytes) {
    return static_cast<std::uint32_t>(-bytes % PAGE_BYTES);
}

BootImage ComposeBootImage(std::string_view kernel_file, const BootRequest& request) {
    const std::optional<std::size_t> header = FindMultibootHeader(kernel_file);
    const Kernel kernel = ReadKernel(kernel_file, header);
    BootImage image;
    const std::optional<DisplayMode> of_header = ModeOfHeader(kernel_file, header);
    image.asked_mode = request.mode ? request.mode : of_header;
    image.mode = image.asked_mode;
    if (image.mode)
        image.mode->width = std::max(image.mode->width / 8 * 8, 8U);
    const std::uint64_t address = kernel.end + PaddingBehind(kernel.end);
    std::uint64_t total = 0;
    const std::string own = ComposeOwnPart(address, kernel.entry, request, image.mode, total);
    if (address + total + FIRMWARE_BYTES > request.memory_bytes)
        throw std::runtime_error("le noyau et ses modules ne tiennent pas dans la mémoire de la machine.");
    image.front = ComposeFile(kernel_file, kernel, address, own, total);
    return image;
}
