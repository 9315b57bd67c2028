// What an engine looks at before it runs a machine: the kernel's headers and the files that are
// named.
#include "adapter/engine_checks.h"

#include <algorithm>
#include <cstdint>
#include <stdexcept>
#include <string>

#include "adapter/engine_output.h"
#include "adapter/sized_file.h"
#include "base/text_convert.h"

namespace {

constexpr std::size_t ELF_HEADER_BYTES = 52;
constexpr std::string_view ELF_32_LITTLE_ENDIAN = "\177ELF\1\1\1";
constexpr std::size_t ELF_MACHINE_OFFSET = 18;
constexpr std::string_view ELF_MACHINE_I386{"\x03\x00", 2};
constexpr std::size_t MULTIBOOT_HEADER_BYTES = 12;
constexpr std::uint64_t SECTOR_BYTES = 512;

[[noreturn]] void Fail(const WideText& path, const char* message) {
    throw std::runtime_error(Utf8FromWide(path) + " : " + message);
}

// The start of a file, as far as a header can reach; also where only its size counts, so that it can be read.
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

std::uint64_t CheckReadable(const WideText& path) {
    const SizedFile file(path);
    ReadStart(file);
    return file.Bytes();
}

void CheckDisk(const WideText& path) {
    const std::uint64_t size = CheckReadable(path);
    if (size % SECTOR_BYTES != 0)
        Fail(path, "l'image de disque n'est pas faite de secteurs entiers de 512 octets.");
    PrintLine("Disque vérifié : " + NumberText(size / SECTOR_BYTES) + " secteurs.");
}

}  // namespace

std::uint32_t LittleEndian32(std::string_view bytes, std::size_t offset) {
    std::uint32_t number = 0;
    for (std::size_t at = 4; at-- > 0;)
        number = number << 8 | static_cast<unsigned char>(bytes[offset + at]);
    return number;
}

std::optional<std::size_t> FindMultibootHeader(std::string_view file) {
    const std::string_view bytes = file.substr(0, MULTIBOOT_AREA_BYTES);
    for (std::size_t at = 0; at + MULTIBOOT_HEADER_BYTES <= bytes.size(); at += 4) {
        const std::uint32_t magic = LittleEndian32(bytes, at);
        const std::uint32_t sum = magic + LittleEndian32(bytes, at + 4) + LittleEndian32(bytes, at + 8);
        if (magic == MULTIBOOT_MAGIC && sum == 0)
            return at;
    }
    return std::nullopt;
}

void CheckKernelImage(std::string_view first_bytes, HeaderNeed need) {
    if (first_bytes.size() < ELF_HEADER_BYTES || !first_bytes.starts_with(ELF_32_LITTLE_ENDIAN) ||
        !first_bytes.substr(ELF_MACHINE_OFFSET).starts_with(ELF_MACHINE_I386))
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
