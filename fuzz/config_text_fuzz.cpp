// Takes any bytes as a configuration. They are refused with a message, or become a record that is the same
// after it is composed and parsed again.
#include "config/config_text.h"

#include <algorithm>
#include <tuple>

#include "fuzz.h"

namespace {

bool AreSame(const VmConfig& left, const VmConfig& right) {
    const auto fields = [](const VmConfig& config) {
        return std::tie(config.ram_mib, config.width, config.height, config.zoom, config.timeout_ms,
                        config.explicit_video, config.headless, config.force_no_header, config.kernel,
                        config.command, config.dump, config.ide);
    };
    return fields(left) == fields(right) &&
           std::equal(left.modules.begin(), left.modules.end(), right.modules.begin(), right.modules.end(),
                      [](const ModuleEntry& one, const ModuleEntry& other) {
                          return one.path == other.path && one.command == other.command;
                      });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    VmConfig config;
    try {
        config = ParseConfigText(std::string(data, data + size));
    } catch (const std::runtime_error& error) {
        Require(*error.what() != '\0');
        return 0;
    }
    const std::string text = ComposeConfigText(config);
    const VmConfig again = ParseConfigText(text);
    Require(AreSame(config, again));
    Require(ComposeConfigText(again) == text);
    return 0;
}
