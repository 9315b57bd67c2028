#include "config/config_file.h"

#include <stdexcept>
#include <string>

#include "base/file_replacement.h"
#include "base/file_system.h"
#include "base/path_ops.h"
#include "base/text_convert.h"
#include "config/config_text.h"

namespace {

std::string ReadWholeFile(const WideText& path) {
    const OwnedHandle file = OpenForReading(path);
    const std::optional<std::uint64_t> size = file ? FileSize(file.Get()) : std::nullopt;
    if (!size)
        throw std::runtime_error("Impossible d'ouvrir la configuration.");
    if (*size > MAX_CONFIG_BYTES)
        throw std::runtime_error("Configuration trop volumineuse.");
    std::string text(static_cast<std::size_t>(*size), '\0');
    if (ReadAt(file.Get(), 0, text.data(), text.size()) != text.size())
        throw std::runtime_error("Lecture de la configuration impossible.");
    return text;
}

bool WriteInOneCall(HANDLE file, const std::string& text) {
    DWORD written = 0;
    return WriteFile(file, text.data(), static_cast<DWORD>(text.size()), &written, nullptr) != FALSE &&
           written == text.size();
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
    FileReplacement file(AbsolutePath(path));
    if (file.Handle() == nullptr)
        throw std::runtime_error("Impossible de créer le fichier de configuration.");
    if (!WriteInOneCall(file.Handle(), text) || !file.Finish())
        throw std::runtime_error("Enregistrement impossible ; l'ancienne configuration est conservée.");
}
