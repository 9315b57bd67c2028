// Runs an engine, reads its command line and writes its output.
#include "adapter/engine_process.h"

#include <algorithm>
#include <array>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>

#include "base/text_convert.h"

namespace {

using Values = std::span<const WideText>;

struct OptionRow {
    WideView name;
    std::size_t value_count;
    void (*take)(VmConfig& to, Values value);
};

constexpr WideView DRY_RUN = TEXT("--dry-run");

void TakeScreen(VmConfig& to, Values value) {
    to.explicit_video = true;
    to.width = ParseNumber(value[0]);
    to.height = ParseNumber(value[1]);
}
void TakeModule(VmConfig& to, Values value) {
    to.modules.push_back({value[0], value[1]});
}

constexpr std::array<OptionRow, 14> OPTIONS{{
    {TEXT("--ram"), 1, [](VmConfig& to, Values value) { to.ram_mib = ParseNumber(value[0]); }},
    {TEXT("--zoom"), 1, [](VmConfig& to, Values value) { to.zoom = ParseNumber(value[0]); }},
    {TEXT("--timeout"), 1, [](VmConfig& to, Values value) { to.timeout_ms = ParseNumber(value[0]); }},
    {TEXT("--cmdline"), 1, [](VmConfig& to, Values value) { to.command = value[0]; }},
    {TEXT("--dump-fb"), 1, [](VmConfig& to, Values value) { to.dump = value[0]; }},
    {TEXT("--fb"), 2, TakeScreen},
    {TEXT("--headless"), 0, [](VmConfig& to, Values) { to.headless = true; }},
    {TEXT("--force-no-header"), 0, [](VmConfig& to, Values) { to.force_no_header = true; }},
    {DRY_RUN, 0, [](VmConfig&, Values) {}},
    {TEXT("--ide-primary-master"), 1, [](VmConfig& to, Values value) { to.ide[0] = value[0]; }},
    {TEXT("--ide-primary-slave"), 1, [](VmConfig& to, Values value) { to.ide[1] = value[0]; }},
    {TEXT("--ide-secondary-master"), 1, [](VmConfig& to, Values value) { to.ide[2] = value[0]; }},
    {TEXT("--ide-secondary-slave"), 1, [](VmConfig& to, Values value) { to.ide[3] = value[0]; }},
    {TEXT("--module-args"), 2, TakeModule},
}};

[[noreturn]] void Refuse(const char* message, WideView argument) {
    throw std::runtime_error(message + Utf8FromWide(argument));
}

}  // namespace

void RunEngineProcess(int argc, WCHAR** argv, EngineWork* work) {
    std::uint32_t exit_code = SUCCESS_EXIT_CODE;
    try {
        work(std::vector<WideText>(argv + std::min(argc, 1), argv + argc), exit_code);
    } catch (const std::exception& error) {
        exit_code = std::max(exit_code, FAILURE_EXIT_CODE);
        const std::string line = std::string("Erreur : ") + error.what() + "\n";
        static_cast<void>(WriteAll(GetStdHandle(STD_ERROR_HANDLE), line));
    }
    ExitProcess(exit_code);  // a code returned from main would be cut to 8 bits on Linux
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
        row->take(request.config, left.subspan(1, row->value_count));
        request.dry_run = request.dry_run || row->name == DRY_RUN;
        left = left.subspan(1 + row->value_count);
    }
    ValidateConfig(request.config);
    return request;
}

std::uint32_t ParseNumber(WideView text, std::uint32_t highest) {
    const std::optional<std::uint64_t> number = ParseDigits(text);
    if (!number || *number > highest || (text.size() > 1 && text.front() == TEXT('0')))
        Refuse("Nombre incorrect : ", text);
    return static_cast<std::uint32_t>(*number);
}

bool WriteAll(HANDLE file, std::string_view bytes) {
    DWORD written = 0;
    return WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) != FALSE &&
           written == bytes.size();
}

void Print(std::string_view bytes) {
    if (!WriteAll(GetStdHandle(STD_OUTPUT_HANDLE), bytes))
        throw std::runtime_error("Écriture sur la sortie standard impossible.");
}

void PrintLine(std::string_view text) {
    Print(std::string(text) + "\n");
}
