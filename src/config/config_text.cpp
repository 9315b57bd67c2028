#include "config/config_text.h"

#include <algorithm>
#include <array>
#include <stdexcept>

#include "base/text_convert.h"

namespace {

constexpr std::string_view BYTE_ORDER_MARK = "\xEF\xBB\xBF";
constexpr std::string_view BLANKS = " \t";
constexpr std::string_view VERSION = "1";

struct TextKey {
    std::string_view key;
    TextMember field;
};
struct NumberKey {
    std::string_view key;
    NumberMember field;
    std::uint32_t lowest;
    std::uint32_t highest;
};
struct FlagKey {
    std::string_view key;
    FlagMember field;
};

// The keys are written and evaluated in the order of the tables and of the rows in each table.
constexpr std::array<TextKey, 3> TEXT_KEYS{
    {{"kernel", &VmConfig::kernel}, {"command", &VmConfig::command}, {"dump", &VmConfig::dump}}};
constexpr std::array<NumberKey, 5> NUMBER_KEYS{{
    {"ram_mib", &VmConfig::ram_mib, RAM_MIB_MIN, RAM_MIB_MAX},
    {"width", &VmConfig::width, SIZE_PIXELS_MIN, SIZE_PIXELS_MAX},
    {"height", &VmConfig::height, SIZE_PIXELS_MIN, SIZE_PIXELS_MAX},
    {"zoom", &VmConfig::zoom, ZOOM_MIN, ZOOM_MAX},
    {"timeout_ms", &VmConfig::timeout_ms, 0, TIMEOUT_MS_MAX},
}};
constexpr std::array<FlagKey, 3> FLAG_KEYS{{{"explicit_video", &VmConfig::explicit_video},
                                            {"headless", &VmConfig::headless},
                                            {"force_no_header", &VmConfig::force_no_header}}};
constexpr std::array<std::string_view, 4> IDE_KEYS{"ide_primary_master", "ide_primary_slave",
                                                   "ide_secondary_master", "ide_secondary_slave"};

std::string ModuleKey(std::size_t index, std::string_view what) {
    return "module." + NumberText(index) + "." + std::string(what);
}

// Adds the key and the value of one line to the table. Skips blank lines and comments. Throws if the line
// is invalid or repeats a key.
void AddLine(ConfigTable& table, std::string_view line) {
    if (line.ends_with('\r'))
        line.remove_suffix(1);
    line.remove_prefix(std::min(line.find_first_not_of(BLANKS), line.size()));
    if (line.empty() || line.front() == '#')
        return;
    const std::size_t equals = line.find('=');
    if (equals == std::string_view::npos || equals == 0)
        throw std::runtime_error("Ligne de configuration invalide.");
    const std::string_view key = line.substr(0, line.find_last_not_of(BLANKS, equals - 1) + 1);
    if (!table.try_emplace(key, line.substr(equals + 1)).second)
        throw std::runtime_error("Clé répétée : " + std::string(key));
}

std::string_view FlagText(bool flag) {
    return flag ? "1" : "0";
}

// If the file does not contain a key, the field keeps its default value.
void TakeValues(ConfigTable& table, VmConfig& config) {
    for (const TextKey& row : TEXT_KEYS)
        config.*row.field = WideFromUtf8(TakeConfigValue(table, row.key, {}));
    for (const NumberKey& row : NUMBER_KEYS) {
        const std::string missing = NumberText(config.*row.field);
        config.*row.field =
            ParseConfigNumber(TakeConfigValue(table, row.key, missing), row.lowest, row.highest, row.key);
    }
    for (const FlagKey& row : FLAG_KEYS) {
        const std::string_view missing = FlagText(config.*row.field);
        config.*row.field = ParseConfigNumber(TakeConfigValue(table, row.key, missing), 0, 1, row.key) != 0;
    }
    for (std::size_t slot = 0; slot < IDE_KEYS.size(); ++slot)
        config.ide[slot] = WideFromUtf8(TakeConfigValue(table, IDE_KEYS[slot], {}));
}

void TakeModules(ConfigTable& table, VmConfig& config) {
    const std::uint32_t count =
        ParseConfigNumber(TakeConfigValue(table, "module_count", "0"), 0, MAX_MODULES, "module_count");
    config.modules.reserve(count);
    for (std::uint32_t index = 0; index < count; ++index) {
        ModuleEntry module;
        module.command = WideFromUtf8(TakeConfigValue(table, ModuleKey(index, "command"), {}));
        module.path = WideFromUtf8(TakeConfigValue(table, ModuleKey(index, "path"), {}));
        config.modules.push_back(std::move(module));
    }
}

void AppendLine(std::string& text, std::string_view key, std::string_view value) {
    text.append(key).append(1, '=').append(value).append(1, '\n');
}

}  // namespace

ConfigTable ReadConfigTable(std::string_view text) {
    ConfigTable table;
    while (!text.empty()) {
        const std::size_t line_end = std::min(text.find('\n'), text.size());
        AddLine(table, text.substr(0, line_end));
        text.remove_prefix(std::min(line_end + 1, text.size()));
    }
    return table;
}

std::string_view TakeConfigValue(ConfigTable& table, std::string_view key, std::string_view default_value) {
    const auto entry = table.extract(key);
    return entry.empty() ? default_value : entry.mapped();
}

std::uint32_t ParseConfigNumber(std::string_view value, std::uint32_t lowest, std::uint32_t highest,
                                std::string_view key) {
    const std::optional<std::uint64_t> number = ParseDigits(value);
    if (!number)
        throw std::runtime_error("Valeur numérique invalide : " + std::string(key));
    if (*number < lowest || *number > highest)
        throw std::runtime_error("Valeur hors limites : " + std::string(key));
    return static_cast<std::uint32_t>(*number);
}

VmConfig ParseConfigText(std::string_view text) {
    if (text.starts_with(BYTE_ORDER_MARK))
        text.remove_prefix(BYTE_ORDER_MARK.size());
    RequireUtf8(text);  // all of it, before any line
    ConfigTable table = ReadConfigTable(text);
    if (TakeConfigValue(table, "version", {}) != VERSION)
        throw std::runtime_error("Version de configuration non prise en charge (attendu : 1).");
    VmConfig config;
    TakeValues(table, config);
    TakeModules(table, config);
    if (!table.empty())
        throw std::runtime_error("Clé de configuration inconnue : " + std::string(table.begin()->first));
    ValidateConfig(config);
    return config;
}

std::string ComposeConfigText(const VmConfig& config) {
    std::string text = "# Veldrane VM - configuration UTF-8\n";
    AppendLine(text, "version", VERSION);
    for (const TextKey& row : TEXT_KEYS)
        AppendLine(text, row.key, Utf8FromWide(config.*row.field));
    for (const NumberKey& row : NUMBER_KEYS)
        AppendLine(text, row.key, NumberText(config.*row.field));
    for (const FlagKey& row : FLAG_KEYS)
        AppendLine(text, row.key, FlagText(config.*row.field));
    for (std::size_t slot = 0; slot < IDE_KEYS.size(); ++slot)
        AppendLine(text, IDE_KEYS[slot], Utf8FromWide(config.ide[slot]));
    AppendLine(text, "module_count", NumberText(config.modules.size()));
    for (std::size_t index = 0; index < config.modules.size(); ++index) {
        AppendLine(text, ModuleKey(index, "path"), Utf8FromWide(config.modules[index].path));
        AppendLine(text, ModuleKey(index, "command"), Utf8FromWide(config.modules[index].command));
    }
    if (text.size() > MAX_CONFIG_BYTES)
        throw std::runtime_error("Configuration trop volumineuse.");
    return text;
}
