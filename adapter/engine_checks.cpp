// Checks of the kernel's headers and of the files that a configuration names.
#include "adapter/engine_checks.h"

#include <algorithm>
#include <cstdint>
#include <stdexcept>
#include <string>

#include "adapter/engine_output.h"
#include "adapter/kernel_format.h"
#include "adapter/sized_file.h"
#include "base/text_convert.h"

namespace {

constexpr std::string_view ELF_32_LITTLE_ENDIAN = "\177ELF\1\1\1";
constexpr std::uint64_t SECTOR_BYTES = 512;

[[noreturn]] void Fail(const WideText& path, const char* message) {
    throw std::runtime_error(Utf8FromWide(path) + " : " + message);
}

// The first bytes of a file, up to MULTIBOOT_AREA_BYTES.
std::string ReadStart(const SizedFile& file) {
    return file.Read(0, std::min<std::uint64_t>(file.Bytes(), MULTIBOOT_AREA_BYTES));
}

void CheckKernel(const VmConfig& config) {
    const SizedFile file(config.kernel);
    const std::string start = ReadStart(file);
    try {
        CheckKernelImage(start, config.force_no_header ? HeaderNeed::Optional : HeaderNeed::Required);
    } catch (const std::runtime_error& error) {
        Fail(config.kernel, error.what());
    }
    PrintLine("Noyau vérifié : " + NumberText(file.Bytes()) + " octets.");
}

// Returns the size in bytes of a file that can be read.
std::uint64_t CheckReadable(const WideText& path) {
    const SizedFile file(path);
    ReadStart(file);  // a file that can be opened may still fail to be read
    return file.Bytes();
}

void CheckDisk(const WideText& path) {
    const std::uint64_t size = CheckReadable(path);
    if (size % SECTOR_BYTES != 0)
        Fail(path, "l'image de disque n'est pas faite de secteurs entiers de 512 octets.");
    PrintLine("Disque vérifié : " + NumberText(size / SECTOR_BYTES) + " secteurs.");
}

}  // namespace

std::optional<std::size_t> FindMultibootHeader(std::string_view file) {
    const std::string_view area = file.substr(0, MULTIBOOT_AREA_BYTES);
    for (std::size_t offset = 0; offset + sizeof(MultibootHeader) <= area.size(); offset += 4) {
        const auto header = RecordAt<MultibootHeader>(area, offset);
        if (header.magic == MultibootHeader::MAGIC && header.magic + header.flags + header.checksum == 0)
            return offset;
    }
    return std::nullopt;
}

void CheckKernelImage(std::string_view first_bytes, HeaderNeed need) {
    if (first_bytes.size() < sizeof(ElfHeader) || !first_bytes.starts_with(ELF_32_LITTLE_ENDIAN) ||
        RecordAt<ElfHeader>(first_bytes, 0).machine != ElfHeader::I386)
        throw std::runtime_error("ce n'est pas un fichier ELF i386 de 32 bits, petit-boutiste.");
    if (need == HeaderNeed::Required && !FindMultibootHeader(first_bytes))
        throw std::runtime_error("aucun en-tête Multiboot valide dans les 8192 premiers octets.");
}

void CheckFiles(const VmConfig& config) {
    CheckKernel(config);
    for (const WideText& path : config.ide)
        if (!path.empty())
            CheckDisk(path);
    for (const ModuleEntry& module : config.modules)
        PrintLine("Module vérifié : " + NumberText(CheckReadable(module.path)) + " octets.");
}
