// Reads the engine's command line.
#include "adapter/engine_request.h"

#include <algorithm>
#include <array>
#include <limits>
#include <optional>
#include <span>
#include <stdexcept>

#include "base/text_convert.h"

namespace {

using Values = std::span<const WideText>;

struct OptionRow {
    WideView name;
    std::size_t value_count;
    void (*take)(EngineRequest& to, Values values);
};

std::uint32_t Number(WideView text) {
    return NumberWithin(text, 0, std::numeric_limits<std::uint32_t>::max());
}

void TakeScreen(EngineRequest& to, Values values) {
    to.config.explicit_video = true;
    to.config.width = Number(values[0]);
    to.config.height = Number(values[1]);
}

constexpr std::array<OptionRow, 14> OPTIONS{{
    {TEXT("--ram"), 1, [](EngineRequest& to, Values values) { to.config.ram_mib = Number(values[0]); }},
    {TEXT("--zoom"), 1, [](EngineRequest& to, Values values) { to.config.zoom = Number(values[0]); }},
    {TEXT("--timeout"), 1,
     [](EngineRequest& to, Values values) { to.config.timeout_ms = Number(values[0]); }},
    {TEXT("--cmdline"), 1, [](EngineRequest& to, Values values) { to.config.command = values[0]; }},
    {TEXT("--dump-fb"), 1, [](EngineRequest& to, Values values) { to.config.dump = values[0]; }},
    {TEXT("--fb"), 2, TakeScreen},
    {TEXT("--headless"), 0, [](EngineRequest& to, Values) { to.config.headless = true; }},
    {TEXT("--force-no-header"), 0, [](EngineRequest& to, Values) { to.config.force_no_header = true; }},
    {TEXT("--dry-run"), 0, [](EngineRequest& to, Values) { to.dry_run = true; }},
    {TEXT("--ide-primary-master"), 1, [](EngineRequest& to, Values values) { to.config.ide[0] = values[0]; }},
    {TEXT("--ide-primary-slave"), 1, [](EngineRequest& to, Values values) { to.config.ide[1] = values[0]; }},
    {TEXT("--ide-secondary-master"), 1,
     [](EngineRequest& to, Values values) { to.config.ide[2] = values[0]; }},
    {TEXT("--ide-secondary-slave"), 1,
     [](EngineRequest& to, Values values) { to.config.ide[3] = values[0]; }},
    {TEXT("--module-args"), 2,
     [](EngineRequest& to, Values values) {
         to.config.modules.push_back({values[0], values[1]});
     }},
}};

[[noreturn]] void Refuse(const char* message, WideView argument) {
    throw std::runtime_error(message + Utf8FromWide(argument));
}

}  // namespace

std::uint32_t NumberWithin(WideView text, std::uint32_t lowest, std::uint32_t highest) {
    const std::optional<std::uint64_t> number = ParseDigits(text);
    const bool is_padded = text.size() > 1 && text.front() == TEXT('0');
    if (!number || is_padded || *number < lowest || *number > highest)
        Refuse("Nombre incorrect : ", text);
    return static_cast<std::uint32_t>(*number);
}

EngineRequest ParseEngineArguments(const std::vector<WideText>& arguments) {
    if (arguments.empty() || arguments.front().empty() || arguments.front().starts_with(TEXT("--")))
        throw std::runtime_error("Noyau manquant.");
    EngineRequest request;
    request.config.kernel = arguments.front();
    for (Values left = Values(arguments).subspan(1); !left.empty();) {
        const auto* const row = std::find_if(OPTIONS.begin(), OPTIONS.end(), [&](const OptionRow& option) {
            return option.name == left.front();
        });
        if (row == OPTIONS.end())
            Refuse("Option inconnue : ", left.front());
        if (left.size() <= row->value_count)
            Refuse("Valeur manquante : ", row->name);
        row->take(request, left.subspan(1, row->value_count));
        left = left.subspan(1 + row->value_count);
    }
    ValidateConfig(request.config);
    return request;
}
