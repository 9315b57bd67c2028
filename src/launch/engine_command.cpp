#include "launch/engine_command.h"

#include <algorithm>
#include <array>
#include <stdexcept>

#include "base/text_convert.h"

namespace {

constexpr std::size_t LINE_LIMIT_CHARACTERS = 32766;
constexpr WCHAR QUOTE = TEXT('"');
constexpr WCHAR BACKSLASH = TEXT('\\');
constexpr std::array<const WCHAR*, 4> IDE_OPTIONS{TEXT("--ide-primary-master"), TEXT("--ide-primary-slave"),
                                                  TEXT("--ide-secondary-master"),
                                                  TEXT("--ide-secondary-slave")};

using Arguments = std::vector<WideText>;

void AddOption(Arguments& arguments, const WCHAR* option, std::uint32_t number) {
    arguments.insert(arguments.end(), {option, WideNumberText(number)});
}

void AddUnlessEmpty(Arguments& arguments, const WCHAR* option, const WideText& value) {
    if (value.empty())
        return;
    arguments.emplace_back(option);
    arguments.push_back(value);
}

void AddFlag(Arguments& arguments, const WCHAR* option, bool set) {
    if (set)
        arguments.emplace_back(option);
}

// Doubles the backslashes that precede a quotation mark or the end of the argument, and inserts one more
// backslash before each quotation mark.
void AppendQuoted(WideText& line, WideView argument) {
    line += QUOTE;
    for (auto at = argument.begin(); at != argument.end();) {
        const auto plain_end =
            std::find_if(at, argument.end(), [](WCHAR unit) { return unit == BACKSLASH || unit == QUOTE; });
        line.append(at, plain_end);
        at = std::find_if(plain_end, argument.end(), [](WCHAR unit) { return unit != BACKSLASH; });
        const auto backslashes = static_cast<std::size_t>(at - plain_end);
        const bool at_quote = at != argument.end() && *at == QUOTE;
        line.append(at_quote || at == argument.end() ? 2 * backslashes : backslashes, BACKSLASH);
        if (at_quote) {
            line.append({BACKSLASH, QUOTE});
            ++at;
        }
    }
    line += QUOTE;
}

}  // namespace

std::vector<WideText> BuildEngineArguments(const VmConfig& config, bool dry_run) {
    ValidateConfig(config);
    if (config.kernel.empty())
        throw std::runtime_error("Choisissez un fichier noyau ELF.");
    Arguments arguments{config.kernel};
    AddOption(arguments, TEXT("--ram"), config.ram_mib);
    AddOption(arguments, TEXT("--zoom"), config.zoom);
    AddOption(arguments, TEXT("--timeout"), config.timeout_ms);
    AddUnlessEmpty(arguments, TEXT("--cmdline"), config.command);
    AddUnlessEmpty(arguments, TEXT("--dump-fb"), config.dump);
    if (config.explicit_video) {
        AddOption(arguments, TEXT("--fb"), config.width);
        arguments.push_back(WideNumberText(config.height));
    }
    AddFlag(arguments, TEXT("--headless"), config.headless);
    AddFlag(arguments, TEXT("--force-no-header"), config.force_no_header);
    AddFlag(arguments, TEXT("--dry-run"), dry_run);
    for (std::size_t slot = 0; slot < IDE_OPTIONS.size(); ++slot)
        AddUnlessEmpty(arguments, IDE_OPTIONS[slot], config.ide[slot]);
    for (const ModuleEntry& module : config.modules)
        arguments.insert(arguments.end(), {TEXT("--module-args"), module.path, module.command});
    return arguments;
}

WideText QuoteEngineArgument(WideView argument) {
    WideText quoted;
    AppendQuoted(quoted, argument);
    return quoted;
}

WideText BuildEngineCommandLine(WideView engine_path, const VmConfig& config, bool dry_run) {
    WideText line;
    line.reserve(LINE_LIMIT_CHARACTERS + 1);
    AppendQuoted(line, engine_path);
    for (const WideText& argument : BuildEngineArguments(config, dry_run)) {
        line += TEXT(' ');
        AppendQuoted(line, argument);
    }
    if (line.size() > LINE_LIMIT_CHARACTERS)
        throw std::runtime_error("Commande de lancement trop longue.");
    return line;
}
