// Checks of the kernel's headers and of the files that a configuration names.
#include "adapter/engine_checks.h"

#include <algorithm>
#include <stdexcept>

#include "adapter/engine_process.h"
#include "adapter/kernel_format.h"
#include "base/file_system.h"
#include "base/text_convert.h"

namespace {

constexpr std::string_view ELF_32_LITTLE_ENDIAN = "\177ELF\1\1\1";
constexpr std::string_view MULTIBOOT_2_MAGIC = "\xD6\x50\x52\xE8";
constexpr std::size_t MULTIBOOT_AREA_BYTES = 8192;
constexpr std::uint64_t SECTOR_BYTES = 512;
constexpr std::uint64_t SECTORS_MAX = 1 << 28;  // the addresses of sectors have 28 bits

[[noreturn]] void Fail(const WideText& path, const char* message) {
    throw std::runtime_error(Utf8FromWide(path) + " : " + message);
}

void CheckKernel(const VmConfig& config) {
    const InputFile file = OpenInput(config.kernel);
    const std::string start = ReadInput(file, 0, std::min<std::uint64_t>(file.bytes, MULTIBOOT_AREA_BYTES));
    if (start.size() < sizeof(ElfHeader) || !start.starts_with(ELF_32_LITTLE_ENDIAN) ||
        RecordAt<ElfHeader>(start, 0).machine != ElfHeader::I386)
        Fail(config.kernel, "ce n'est pas un fichier ELF i386 de 32 bits, petit-boutiste.");
    if (!config.force_no_header && !FindMultibootHeader(start))
        Fail(config.kernel, start.find(MULTIBOOT_2_MAGIC) != std::string::npos
                                ? "l'en-tête est celui de Multiboot 2 ; il faut un en-tête Multiboot 1."
                                : "aucun en-tête Multiboot valide dans les 8192 premiers octets.");
    PrintLine("Noyau vérifié : " + NumberText(file.bytes) + " octets.");
}

void CheckDisk(const WideText& path) {
    const std::uint64_t size = OpenInput(path).bytes;
    if (size == 0)
        Fail(path, "l'image de disque est vide.");
    if (size % SECTOR_BYTES != 0)
        Fail(path, "l'image de disque n'est pas faite de secteurs entiers de 512 octets.");
    if (size / SECTOR_BYTES > SECTORS_MAX)
        Fail(path, "l'image de disque dépasse 128 Gio.");
    PrintLine("Disque vérifié : " + NumberText(size / SECTOR_BYTES) + " secteurs.");
}

}  // namespace

InputFile OpenInput(const WideText& path) {
    const char* const operation = "lecture impossible";
    const FileType type = QueryFileType(path, operation);
    if (type != FileType::Regular)
        Fail(path, type == FileType::Missing ? "fichier introuvable." : "ce n'est pas un fichier ordinaire.");
    InputFile file{path, OpenForReading(path), 0};
    const std::optional<std::uint64_t> size = FileSize(file.handle.Get());
    if (!size)
        ThrowFileSystemError(operation, GetLastError(), path);
    file.bytes = *size;
    return file;
}

std::string ReadInput(const InputFile& file, std::uint64_t offset, std::uint64_t count) {
    std::string bytes(static_cast<std::size_t>(count), '\0');
    if (ReadAt(file.handle.Get(), offset, bytes.data(), bytes.size()) != bytes.size())
        Fail(file.path, "lecture interrompue, ou fichier raccourci.");
    return bytes;
}

std::optional<std::size_t> FindMultibootHeader(std::string_view file) {
    const std::string_view area = file.substr(0, MULTIBOOT_AREA_BYTES);
    for (std::size_t offset = 0; offset + sizeof(MultibootHeader) <= area.size(); offset += 4) {
        const auto header = RecordAt<MultibootHeader>(area, offset);
        if (header.magic == MultibootHeader::MAGIC && header.magic + header.flags + header.checksum == 0)
            return offset;
    }
    return std::nullopt;
}

std::vector<std::uint64_t> CheckFiles(const VmConfig& config) {
    CheckKernel(config);
    for (const WideText& path : config.ide)
        if (!path.empty())
            CheckDisk(path);
    std::vector<std::uint64_t> module_bytes;
    for (const ModuleEntry& module : config.modules) {
        module_bytes.push_back(OpenInput(module.path).bytes);
        PrintLine("Module vérifié : " + NumberText(module_bytes.back()) + " octets.");
    }
    return module_bytes;
}
