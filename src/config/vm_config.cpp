#include "config/vm_config.h"

#include <algorithm>
#include <stdexcept>

namespace {

void Require(bool holds, const char* message) {
    if (!holds)
        throw std::runtime_error(message);
}

bool IsWithin(std::uint32_t value, std::uint32_t lowest, std::uint32_t highest) {
    return value >= lowest && value <= highest;
}

}  // namespace

void RequireOneLine(WideView text) {
    const auto breaks = [](WCHAR unit) { return unit == '\r' || unit == '\n' || unit == '\0'; };
    Require(std::none_of(text.begin(), text.end(), breaks),
            "Les valeurs de configuration doivent tenir sur une ligne.");
}

void ValidateConfig(const VmConfig& config) {
    Require(IsWithin(config.ram_mib, RAM_MIB_MIN, RAM_MIB_MAX), "RAM : choisir entre 16 et 2048 Mio.");
    Require(IsWithin(config.width, SIZE_PIXELS_MIN, SIZE_PIXELS_MAX) &&
                IsWithin(config.height, SIZE_PIXELS_MIN, SIZE_PIXELS_MAX),
            "Résolution : choisir des dimensions entre 1 et 8192 pixels.");
    Require(IsWithin(config.zoom, ZOOM_MIN, ZOOM_MAX), "Zoom : choisir entre 100 et 400 %.");
    Require(config.timeout_ms <= TIMEOUT_MS_MAX, "Délai : choisir entre 0 et 3600000 ms.");
    Require(config.modules.size() <= MAX_MODULES, "Maximum : 128 modules.");
    RequireOneLine(config.kernel);
    RequireOneLine(config.command);
    RequireOneLine(config.dump);
    for (const WideText& image : config.ide)
        RequireOneLine(image);
    for (const ModuleEntry& module : config.modules) {
        Require(!module.path.empty(), "Le fichier d'un module est vide.");
        RequireOneLine(module.path);
        RequireOneLine(module.command);
    }
}
