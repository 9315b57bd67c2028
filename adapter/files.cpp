// Making, writing and copying files in pieces.
#include "adapter/files.h"

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
            throw std::runtime_error("Écriture d'un fichier impossible.");
        bytes.remove_prefix(written);
    }
}

void Read(const SizedFile& file, std::uint64_t offset, std::string& piece) {
    std::size_t came = 0;
    if (!ReadAt(file.handle.Get(), offset, piece.data(), piece.size(), came) || came != piece.size())
        throw std::runtime_error("Un fichier a changé pendant la lecture.");
}

void Copy(const SizedFile& source, HANDLE target) {
    std::string piece;
    for (std::uint64_t offset = 0; offset < source.bytes; offset += piece.size()) {
        piece.resize(static_cast<std::size_t>(std::min<std::uint64_t>(PIECE_BYTES, source.bytes - offset)));
        Read(source, offset, piece);
        Write(target, piece);
    }
}

OwnedHandle OpenForWriting(const WideText& path, DWORD disposition) {
    OwnedHandle file(CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, disposition,
                                 FILE_ATTRIBUTE_NORMAL, nullptr));
    const DWORD code = GetLastError();
    if (!file)
        ThrowFileSystemError("open", code, path);
    return file;
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

TemporaryFile::TemporaryFile(const char* extension)
    : name_("tessarun-" + NumberText(GetCurrentProcessId()) + "-" + NumberText(GetTickCount64()) + extension),
      path_(JoinPath(TemporaryFolder(), WideFromUtf8(name_))) {
    OpenForWriting(path_, CREATE_NEW);
}

TemporaryFile::~TemporaryFile() {
    Delete();
}

void TemporaryFile::Delete() {
    if (!path_.empty() && DeleteFileW(path_.c_str()) != FALSE)
        path_.clear();
}

void WriteBootFile(const WideText& path, const BootImage& image, const BootRequest& request,
                   const std::vector<ModuleEntry>& modules) {
    const OwnedHandle file = OpenForWriting(path, OPEN_EXISTING);
    Write(file.Get(), image.front);
    for (std::size_t at = 0; at < modules.size(); ++at) {
        const SizedFile module(modules[at].path);
        if (module.bytes != request.modules[at].bytes)
            throw std::runtime_error("Un fichier a changé pendant la lecture.");
        Copy(module, file.Get());
        Write(file.Get(), std::string(PaddingBehind(module.bytes), '\0'));
    }
}

void CopyOver(const WideText& source, const WideText& target) {
    const SizedFile file(source);
    Copy(file, OpenForWriting(target, CREATE_ALWAYS).Get());
}
