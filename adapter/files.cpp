// Files are copied in pieces, so that a large one needs little memory.
#include "adapter/files.h"

#include <algorithm>
#include <stdexcept>

#include "adapter/engine_checks.h"
#include "adapter/engine_process.h"
#include "base/file_replacement.h"
#include "base/file_system.h"
#include "base/path_ops.h"
#include "base/text_convert.h"

namespace {

constexpr std::size_t PIECE_BYTES = 1 << 20;

[[noreturn]] void FailToWrite(const WideText& path) {
    if (GetLastError() == ERROR_SHARING_VIOLATION)
        throw std::runtime_error(Utf8FromWide(path) +
                                 " : ce fichier est nommé deux fois, ou un autre programme l'utilise.");
    ThrowFileSystemError("écriture impossible", GetLastError(), path);
}

void WriteTo(HANDLE file, std::string_view bytes, const WideText& path) {
    if (!WriteAll(file, bytes))
        FailToWrite(path);
}

void Copy(const InputFile& source, HANDLE target, const WideText& target_path) {
    for (std::uint64_t offset = 0; offset < source.bytes; offset += PIECE_BYTES)
        WriteTo(target,
                ReadInput(source, offset, std::min<std::uint64_t>(PIECE_BYTES, source.bytes - offset)),
                target_path);
}

OwnedHandle Open(const WideText& path, DWORD access, DWORD share, DWORD disposition) {
    return OwnedHandle(
        CreateFileW(path.c_str(), access, share, nullptr, disposition, FILE_ATTRIBUTE_NORMAL, nullptr));
}

}  // namespace

TemporaryFile::TemporaryFile(const WideText& folder, const char* extension)
    : name_(std::string(TEMPORARY_PREFIX) + NumberText(GetCurrentProcessId()) + "-" +
            NumberText(GetTickCount64()) + extension),
      path_(JoinPath(folder, WideFromUtf8(name_))),
      handle_(Open(path_, GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, CREATE_NEW)) {
    if (!handle_)
        FailToWrite(path_);
}

TemporaryFile::~TemporaryFile() {
    Delete();
}

void TemporaryFile::Write(const BootImage& image, const std::vector<ModuleEntry>& modules,
                          const std::vector<std::uint64_t>& module_bytes) {
    WriteTo(handle_.Get(), image.front, path_);
    for (std::size_t at = 0; at < modules.size(); ++at) {
        const InputFile module = OpenInput(modules[at].path);
        if (module.bytes != module_bytes[at])
            throw std::runtime_error(Utf8FromWide(modules[at].path) +
                                     " : le fichier a changé pendant la lecture.");
        Copy(module, handle_.Get(), path_);
        WriteTo(handle_.Get(), std::string(PaddingBehind(module.bytes), '\0'), path_);
    }
}

void TemporaryFile::CopyTo(const WideText& target) const {
    const InputFile file = OpenInput(path_);
    FileReplacement replacement(target);
    if (replacement.Handle() == nullptr)
        FailToWrite(target);
    Copy(file, replacement.Handle(), target);
    if (!replacement.Finish())
        FailToWrite(target);
}

void TemporaryFile::Delete() {
    handle_.Reset();
    if (!path_.empty() && DeleteFileW(path_.c_str()) != FALSE)
        path_.clear();
}

void CheckWrittenFiles(const VmConfig& config) {
    // While a file is held open here, it cannot be opened for writing again, whatever its path is.
    std::vector<OwnedHandle> held;
    const auto hold = [&](const WideText& path, DWORD access) -> bool {
        held.push_back(Open(path, access, FILE_SHARE_READ, OPEN_EXISTING));
        return static_cast<bool>(held.back());
    };
    for (const WideText& path : config.ide)
        if (!path.empty() && !hold(path, GENERIC_READ | GENERIC_WRITE))
            FailToWrite(path);
    if (config.dump.empty())
        return;
    if (FileReplacement(config.dump).Handle() == nullptr)
        FailToWrite(config.dump);
    hold(config.kernel, GENERIC_READ);
    for (const ModuleEntry& module : config.modules)
        hold(module.path, GENERIC_READ);
    if (!hold(config.dump, GENERIC_WRITE) && GetLastError() != ERROR_FILE_NOT_FOUND)
        FailToWrite(config.dump);
}
