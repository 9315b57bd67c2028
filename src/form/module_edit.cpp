#include "form/module_edit.h"

#include <utility>

namespace {

WideText LastElement(const WideText& path) {
    const std::size_t separator = path.find_last_of(TEXT("\\/"));
    return separator == WideText::npos ? path : path.substr(separator + 1);
}

}  // namespace

void AppendModule(VmConfig& config, const WideText& path) {
    ModuleEntry module;
    module.path = path;
    module.command = LastElement(path);
    config.modules.push_back(std::move(module));
}

void EraseModule(VmConfig& config, std::int32_t index) {
    config.modules.erase(config.modules.begin() + index);
}

std::optional<std::int32_t> MoveTarget(const VmConfig& config, std::int32_t selected, std::int32_t delta) {
    const std::int32_t target = selected + delta;
    const auto count = static_cast<std::int32_t>(config.modules.size());
    if (selected < 0 || target < 0 || target >= count)
        return std::nullopt;
    return target;
}

void SwapModules(VmConfig& config, std::int32_t first, std::int32_t second) {
    std::swap(config.modules[static_cast<std::size_t>(first)],
              config.modules[static_cast<std::size_t>(second)]);
}
