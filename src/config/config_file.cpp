// Reading a whole file, and the replacement by way of a temporary one.
#include "config/config_file.h"

#include <stdexcept>
#include <string>

#include "base/file_system.h"
#include "base/path_ops.h"
#include "base/text_convert.h"
#include "config/config_text.h"

namespace {

constexpr unsigned CREATE_ATTEMPTS = 100;

std::string ReadWholeFile(const WideText& path) {
    const OwnedHandle file = OpenForReading(path);
    std::uint64_t size = 0;
    if (!file || !FileSize(file.Get(), size))
        throw std::runtime_error("Impossible d'ouvrir la configuration.");
    if (size > MAX_CONFIG_BYTES)
        throw std::runtime_error("Configuration trop volumineuse.");
    std::string text(static_cast<std::size_t>(size), '\0');
    std::size_t read = 0;
    if (!text.empty() && (!ReadAt(file.Get(), 0, text.data(), text.size(), read) || read != text.size()))
        throw std::runtime_error("Lecture de la configuration impossible.");
    return text;
}

struct TemporaryFile {
    OwnedHandle handle;
    WideText path;
};

TemporaryFile CreateTemporaryFile(const WideText& target) {
    const WideText stem = target + TEXT(".tmp-") + WideNumberText(GetCurrentProcessId()) + TEXT("-");
    for (unsigned attempt = 0; attempt < CREATE_ATTEMPTS; ++attempt) {
        TemporaryFile file;
        file.path = stem + WideNumberText(GetTickCount64()) + TEXT("-") + WideNumberText(attempt);
        file.handle = OwnedHandle(CreateFileW(file.path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                              FILE_ATTRIBUTE_NORMAL, nullptr));
        if (file.handle)
            return file;
        if (GetLastError() != ERROR_FILE_EXISTS)
            break;
    }
    throw std::runtime_error("Impossible de créer le fichier de configuration.");
}

bool WriteThrough(HANDLE file, const std::string& text) {
    DWORD written = 0;
    return WriteFile(file, text.data(), static_cast<DWORD>(text.size()), &written, nullptr) != FALSE &&
           written == text.size() && FlushFileBuffers(file) != FALSE;
}

}  // namespace

VmConfig ReadConfigFile(const WideText& path) {
    VmConfig config = ParseConfigText(ReadWholeFile(path));
    const WideText folder = ParentPath(AbsolutePath(path));
    ForEachPath(config, [&folder](WideText& field) { AnchorPath(folder, field); });
    return config;
}

void WriteConfigFile(const WideText& path, const VmConfig& config) {
    ValidateConfig(config);
    const std::string text = ComposeConfigText(config);
    const WideText target = AbsolutePath(path);
    TemporaryFile file = CreateTemporaryFile(target);
    const bool written = WriteThrough(file.handle.Get(), text);
    file.handle.Reset();
    if (written && MoveFileExW(file.path.c_str(), target.c_str(),
                               MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != FALSE)
        return;
    DeleteFileW(file.path.c_str());
    throw std::runtime_error("Enregistrement impossible ; l'ancienne configuration est conservée.");
}
