// Writing the boot image.
#include "adapter/boot_file.h"

#include <algorithm>
#include <stdexcept>

#include "adapter/emulator.h"
#include "base/file_system.h"
#include "base/path_ops.h"
#include "base/text_convert.h"

namespace {

constexpr std::size_t PIECE_BYTES = 1 << 20;

void Write(HANDLE file, std::string_view bytes) {
    while (!bytes.empty()) {
        DWORD written = 0;
        const auto count = static_cast<DWORD>(std::min(bytes.size(), PIECE_BYTES));
        if (WriteFile(file, bytes.data(), count, &written, nullptr) == FALSE || written == 0)
            throw std::runtime_error("Écriture du fichier temporaire impossible.");
        bytes.remove_prefix(written);
    }
}

void Read(const SizedFile& file, std::uint64_t offset, std::string& piece) {
    std::size_t came = 0;
    if (!ReadAt(file.handle.Get(), offset, piece.data(), piece.size(), came) || came != piece.size())
        throw std::runtime_error("Un fichier a changé pendant la lecture.");
}

void CopyModule(HANDLE target, const WideText& path, std::uint64_t bytes) {
    const SizedFile module(path);
    if (module.bytes != bytes)
        throw std::runtime_error("Un fichier a changé pendant la lecture.");
    std::string piece;
    for (std::uint64_t offset = 0; offset < bytes; offset += piece.size()) {
        piece.resize(static_cast<std::size_t>(std::min<std::uint64_t>(PIECE_BYTES, bytes - offset)));
        Read(module, offset, piece);
        Write(target, piece);
    }
    Write(target, std::string(PaddingBehind(bytes), '\0'));
}

}  // namespace

SizedFile::SizedFile(const WideText& path) : handle(OpenForReading(path)) {
    if (!handle || !FileSize(handle.Get(), bytes))
        throw std::runtime_error(Utf8FromWide(path) + " : lecture impossible.");
}

std::string SizedFile::Read() const {
    std::string content(static_cast<std::size_t>(bytes), '\0');
    ::Read(*this, 0, content);
    return content;
}

BootFile::BootFile(const BootImage& image, const BootRequest& request,
                   const std::vector<ModuleEntry>& modules)
    : path_(JoinPath(TemporaryFolder(), TEXT("tessarun-") + WideNumberText(GetCurrentProcessId()) +
                                            TEXT("-") + WideNumberText(GetTickCount64()) + TEXT(".elf"))) {
    OwnedHandle file(CreateFileW(path_.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_NEW,
                                 FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file)
        throw std::runtime_error("Création du fichier temporaire impossible : " + Utf8FromWide(path_));
    try {
        Write(file.Get(), image.front);
        for (std::size_t at = 0; at < modules.size(); ++at)
            CopyModule(file.Get(), modules[at].path, request.modules[at].bytes);
    } catch (...) {
        file.Reset();
        Delete();
        throw;
    }
}

BootFile::~BootFile() {
    Delete();
}

void BootFile::Delete() {
    if (!path_.empty() && DeleteFileW(path_.c_str()) != FALSE)
        path_.clear();
}
