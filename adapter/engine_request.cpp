// Reads the engine's command line. The table of options is in the order of the command line.
#include "adapter/engine_request.h"

#include <algorithm>
#include <array>
#include <optional>
#include <span>
#include <stdexcept>

#include "base/text_convert.h"

namespace {

using Values = std::span<const WideText>;

const WideText& Filled(const WideText& value) {
    if (value.empty())
        throw std::runtime_error("Valeur vide.");
    return value;
}

void TakeModule(EngineRequest& request, Values values) {
    if (request.config.modules.size() == MAX_MODULES)
        throw std::runtime_error("Maximum : 128 modules.");
    request.config.modules.push_back({Filled(values[0]), values[1]});
}

struct OptionRow {
    WideView name;
    std::size_t value_count;
    enum class Presence { Always, Once, Repeated } presence;
    void (*take)(EngineRequest& request, Values values);
};
using enum OptionRow::Presence;

constexpr std::array<OptionRow, 14> OPTIONS{{
    {TEXT("--ram"), 1, Always,
     [](EngineRequest& request, Values values) {
         request.config.ram_mib = NumberWithin(values[0], RAM_MIB_MIN, RAM_MIB_MAX);
     }},
    {TEXT("--zoom"), 1, Always,
     [](EngineRequest& request, Values values) {
         request.config.zoom = NumberWithin(values[0], ZOOM_MIN, ZOOM_MAX);
     }},
    {TEXT("--timeout"), 1, Always,
     [](EngineRequest& request, Values values) {
         request.config.timeout_ms = NumberWithin(values[0], 0, TIMEOUT_MS_MAX);
     }},
    {TEXT("--cmdline"), 1, Once,
     [](EngineRequest& request, Values values) { request.config.command = Filled(values[0]); }},
    {TEXT("--dump-fb"), 1, Once,
     [](EngineRequest& request, Values values) { request.config.dump = Filled(values[0]); }},
    {TEXT("--fb"), 2, Once,
     [](EngineRequest& request, Values values) {
         request.config.explicit_video = true;
         request.config.width = NumberWithin(values[0], SIZE_PIXELS_MIN, SIZE_PIXELS_MAX);
         request.config.height = NumberWithin(values[1], SIZE_PIXELS_MIN, SIZE_PIXELS_MAX);
     }},
    {TEXT("--headless"), 0, Once, [](EngineRequest& request, Values) { request.config.headless = true; }},
    {TEXT("--force-no-header"), 0, Once,
     [](EngineRequest& request, Values) { request.config.force_no_header = true; }},
    {TEXT("--dry-run"), 0, Once, [](EngineRequest& request, Values) { request.dry_run = true; }},
    {TEXT("--ide-primary-master"), 1, Once,
     [](EngineRequest& request, Values values) { request.config.ide[0] = Filled(values[0]); }},
    {TEXT("--ide-primary-slave"), 1, Once,
     [](EngineRequest& request, Values values) { request.config.ide[1] = Filled(values[0]); }},
    {TEXT("--ide-secondary-master"), 1, Once,
     [](EngineRequest& request, Values values) { request.config.ide[2] = Filled(values[0]); }},
    {TEXT("--ide-secondary-slave"), 1, Once,
     [](EngineRequest& request, Values values) { request.config.ide[3] = Filled(values[0]); }},
    {TEXT("--module-args"), 2, Repeated, TakeModule},
}};

[[noreturn]] void Refuse(const char* message, WideView argument) {
    throw std::runtime_error(message + Utf8FromWide(argument));
}

[[noreturn]] void RefuseOption(WideView argument) {
    const bool is_known = std::any_of(OPTIONS.begin(), OPTIONS.end(),
                                      [&](const OptionRow& row) { return row.name == argument; });
    Refuse(is_known ? "Option répétée ou hors de sa place : " : "Option inconnue : ", argument);
}

void TakeOption(const OptionRow& row, Values& left, EngineRequest& request) {
    if (left.size() <= row.value_count)
        Refuse("Valeur manquante : ", row.name);
    try {
        row.take(request, left.subspan(1, row.value_count));
    } catch (const std::runtime_error& error) {
        throw std::runtime_error(Utf8FromWide(row.name) + " : " + error.what());
    }
    left = left.subspan(1 + row.value_count);
}

}  // namespace

std::uint32_t NumberWithin(WideView text, std::uint32_t lowest, std::uint32_t highest) {
    const std::optional<std::uint64_t> number = ParseDigits(text);
    const bool is_padded = text.size() > 1 && text.front() == TEXT('0');
    if (!number || is_padded || *number < lowest || *number > highest)
        throw std::runtime_error("Nombre incorrect : " + Utf8FromWide(text));
    return static_cast<std::uint32_t>(*number);
}

EngineRequest ParseEngineArguments(const std::vector<WideText>& arguments) {
    if (arguments.empty() || arguments.front().empty() || arguments.front().starts_with(TEXT("--")))
        throw std::runtime_error("Noyau manquant.");
    EngineRequest request;
    request.config.kernel = arguments.front();
    Values left = Values(arguments).subspan(1);
    for (const OptionRow& row : OPTIONS) {
        std::size_t taken = 0;
        for (; !left.empty() && left.front() == row.name && (taken == 0 || row.presence == Repeated); ++taken)
            TakeOption(row, left, request);
        if (taken == 0 && row.presence == Always)
            Refuse("Option absente de sa place : ", row.name);
    }
    if (!left.empty())
        RefuseOption(left.front());
    return request;
}
