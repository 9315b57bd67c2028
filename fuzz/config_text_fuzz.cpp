// Any bytes as a configuration: refused with a message, or a record that is composed and read back the same.
#include <cstdint>
#include <cstdlib>
#include <stdexcept>
#include <tuple>

#include "config/config_text.h"

namespace {

auto Numbers(const VmConfig& config) {
    return std::tie(config.ram_mib, config.width, config.height, config.zoom, config.timeout_ms,
                    config.explicit_video, config.headless, config.force_no_header);
}

auto Texts(const VmConfig& config) {
    return std::tie(config.kernel, config.command, config.dump, config.ide);
}

void Require(bool holds) {
    if (!holds)
        std::abort();
}

void RequireSame(const VmConfig& left, const VmConfig& right) {
    Require(Numbers(left) == Numbers(right) && Texts(left) == Texts(right));
    Require(left.modules.size() == right.modules.size());
    for (std::size_t index = 0; index < left.modules.size(); ++index) {
        Require(left.modules[index].path == right.modules[index].path);
        Require(left.modules[index].command == right.modules[index].command);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    VmConfig config;
    try {
        config = ParseConfigText({reinterpret_cast<const char*>(data), size});
    } catch (const std::runtime_error& error) {
        Require(*error.what() != '\0');
        return 0;
    }
    const std::string text = ComposeConfigText(config);
    const VmConfig again = ParseConfigText(text);
    RequireSame(config, again);
    Require(ComposeConfigText(again) == text);
    return 0;
}
