// Configurations for more than one of the programs here.
#pragma once

#include <string>

#include "config/vm_config.h"

// As many modules as a record may have, about `size` bytes of text in all.
inline VmConfig WithModules(std::size_t size) {
    VmConfig config;
    config.modules.assign(MAX_MODULES, {});
    const std::size_t text_length = size / MAX_MODULES / 2 - 32;
    for (ModuleEntry& module : config.modules)
        module = {WideText(text_length, WCHAR{'p'}), WideText(text_length, WCHAR{'c'})};
    return config;
}

// One value fills the whole text.
inline std::string HugeValue(std::size_t size) {
    const std::string start = "version=1\nkernel=C:\\";
    return start + std::string(size - start.size(), 'k');
}
