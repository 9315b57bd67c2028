// Files are copied in pieces, so that a large one needs little memory.
#include "adapter/files.h"

#include <algorithm>
#include <stdexcept>

#include "adapter/emulator.h"
#include "adapter/engine_output.h"
#include "adapter/sized_file.h"
#include "base/file_replacement.h"
#include "base/file_system.h"
#include "base/owned_handle.h"
#include "base/path_ops.h"
#include "base/text_convert.h"

namespace {

constexpr std::size_t PIECE_BYTES = 1 << 20;

void Write(HANDLE file, std::string_view bytes) {
    if (!WriteAll(file, bytes))
        throw std::runtime_error("Écriture d'un fichier impossible.");
}

void Copy(const SizedFile& source, HANDLE target) {
    for (std::uint64_t offset = 0; offset < source.Bytes(); offset += PIECE_BYTES)
        Write(target, source.Read(offset, std::min<std::uint64_t>(PIECE_BYTES, source.Bytes() - offset)));
}

OwnedHandle OpenForWriting(const WideText& path, DWORD disposition) {
    OwnedHandle file(CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, disposition,
                                 FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file)
        ThrowFileSystemError("open", GetLastError(), path);
    return file;
}

}  // namespace

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
        if (module.Bytes() != request.modules[at].bytes)
            throw std::runtime_error("Un fichier a changé pendant la lecture.");
        Copy(module, file.Get());
        Write(file.Get(), std::string(PaddingBehind(module.Bytes()), '\0'));
    }
}

void ReplaceByCopy(const WideText& source, const WideText& target) {
    const SizedFile file(source);
    FileReplacement replacement(target);
    if (replacement.Handle() == nullptr)
        ThrowFileSystemError("open", GetLastError(), target);
    Copy(file, replacement.Handle());
    if (!replacement.Finish())
        ThrowFileSystemError("open", GetLastError(), target);
}
