// The keys of the file as tables, from which one pass reads and another composes.
#include "config/config_text.h"

#include <algorithm>
#include <array>
#include <stdexcept>

#include "base/text_convert.h"

namespace {

constexpr std::string_view BYTE_ORDER_MARK = "\xEF\xBB\xBF";
constexpr std::string_view VERSION = "1";

struct TextKey {
    std::string_view key;
    WideText VmConfig::*field;
};
struct NumberKey {
    std::string_view key;
    std::uint32_t VmConfig::*field;
    std::uint32_t lowest;
    std::uint32_t highest;
};
struct FlagKey {
    std::string_view key;
    bool VmConfig::*field;
};

// In the order in which they are written and evaluated.
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

std::uint64_t KeyStart(std::string_view key) {
    std::uint64_t start = 0;
    for (std::size_t at = 0; at < sizeof(start); ++at)
        start = (start << 8) | (at < key.size() ? static_cast<unsigned char>(key[at]) : 0U);
    return start;
}

bool IsBlank(char character) {
    return character == ' ' || character == '\t';
}

std::string_view KeyOf(const ConfigTable& table, const ConfigTable::Entry& entry) {
    std::string_view key = table.text.substr(entry.key, entry.equals - entry.key);
    while (IsBlank(key.back()))  // it starts with another character
        key.remove_suffix(1);
    return key;
}

std::string_view ValueOf(const ConfigTable& table, const ConfigTable::Entry& entry) {
    return table.text.substr(entry.equals + 1, entry.end - entry.equals - 1);
}

// Adds the line from `start` to `line_end` where it is an assignment; a blank one and a comment are nothing.
// False for an invalid line.
bool AddLine(ConfigTable& table, std::size_t start, std::size_t line_end) {
    const std::string_view text = table.text;
    if (line_end > start && text[line_end - 1] == '\r')
        --line_end;
    while (start < line_end && IsBlank(text[start]))
        ++start;
    if (start == line_end || text[start] == '#')
        return true;
    const std::size_t equals = std::min(text.find('=', start), line_end);
    if (equals == line_end || equals == start)
        return false;
    ConfigTable::Entry entry{0, static_cast<std::uint32_t>(start), static_cast<std::uint32_t>(equals),
                             static_cast<std::uint32_t>(line_end), false};
    entry.key_start = KeyStart(KeyOf(table, entry));
    table.entries.push_back(entry);
    return true;
}

// Adds the assignments up to the end or to the first invalid line; false for the latter.
bool AddLines(ConfigTable& table) {
    for (std::size_t start = 0; start < table.text.size();) {
        const std::size_t line_end = std::min(table.text.find('\n', start), table.text.size());
        if (!AddLine(table, start, line_end))
            return false;
        start = line_end + 1;
    }
    return true;
}

// The order by key and, for the same key, by place.
void Sort(ConfigTable& table) {
    std::sort(
        table.entries.begin(), table.entries.end(),
        [&table](const ConfigTable::Entry& left, const ConfigTable::Entry& right) {
            if (left.key_start != right.key_start)
                return left.key_start < right.key_start;
            const int order = KeyOf(table, left).compare(KeyOf(table, right));
            return order != 0 ? order < 0 : left.key < right.key;
        });
}

// Of the sorted entries, the one that repeats a key first in the order of the file.
const ConfigTable::Entry* FirstRepeat(const ConfigTable& table) {
    const ConfigTable::Entry* first = nullptr;
    for (std::size_t index = 1; index < table.entries.size(); ++index) {
        const ConfigTable::Entry& entry = table.entries[index];
        const ConfigTable::Entry& before = table.entries[index - 1];
        const bool repeats =
            entry.key_start == before.key_start && KeyOf(table, entry) == KeyOf(table, before);
        if (repeats && (first == nullptr || entry.key < first->key))
            first = &entry;
    }
    return first;
}

std::string_view FlagText(bool flag) {
    return flag ? "1" : "0";
}

// A key that is not there leaves the field at the default of the record.
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
    for (std::uint32_t index = 0; index < count; ++index) {
        ModuleEntry module;
        module.command = WideFromUtf8(TakeConfigValue(table, ModuleKey(index, "command"), {}));
        module.path = WideFromUtf8(TakeConfigValue(table, ModuleKey(index, "path"), {}));
        config.modules.push_back(std::move(module));
    }
}

void RequireAllTaken(const ConfigTable& table) {
    for (const ConfigTable::Entry& entry : table.entries)
        if (!entry.taken)
            throw std::runtime_error("Clé de configuration inconnue : " + std::string(KeyOf(table, entry)));
}

void AppendLine(std::string& text, std::string_view key, std::string_view value) {
    text.append(key).append(1, '=').append(value).append(1, '\n');
}

void AppendLine(std::string& text, std::string_view key, const WideText& value) {
    text.append(key).append(1, '=');
    AppendUtf8(text, value);
    text += '\n';
}

}  // namespace

// A repeated key is found by sorting, so that the table needs no second structure. An invalid line hides what
// follows it, and a repeat before it is told first.
ConfigTable ReadConfigTable(std::string_view text) {
    constexpr std::size_t SHORTEST_LINE = 3;
    ConfigTable table{text, {}};
    // The table is made in its final size: growing would hold it twice.
    std::size_t lines = 1;
    for (std::size_t at = text.find('\n'); at != std::string_view::npos; at = text.find('\n', at + 1))
        ++lines;
    table.entries.reserve(std::min(lines, text.size() / SHORTEST_LINE + 1));
    const bool all_lines_valid = AddLines(table);
    Sort(table);
    if (const ConfigTable::Entry* repeat = FirstRepeat(table))
        throw std::runtime_error("Clé répétée : " + std::string(KeyOf(table, *repeat)));
    if (!all_lines_valid)
        throw std::runtime_error("Ligne de configuration invalide.");
    return table;
}

std::string_view TakeConfigValue(ConfigTable& table, std::string_view key, std::string_view default_value) {
    const std::uint64_t key_start = KeyStart(key);
    const auto found = std::lower_bound(
        table.entries.begin(), table.entries.end(), key,
        [&](const ConfigTable::Entry& entry, std::string_view wanted) {
            return entry.key_start != key_start ? entry.key_start < key_start : KeyOf(table, entry) < wanted;
        });
    if (found == table.entries.end() || KeyOf(table, *found) != key || found->taken)
        return default_value;
    found->taken = true;
    return ValueOf(table, *found);
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
    RequireUtf8(text);  // the whole, before a single line is looked at
    ConfigTable table = ReadConfigTable(text);
    if (TakeConfigValue(table, "version", {}) != VERSION)
        throw std::runtime_error("Version de configuration non prise en charge (attendu : 1).");
    VmConfig config;
    TakeValues(table, config);
    TakeModules(table, config);
    RequireAllTaken(table);
    ValidateConfig(config);
    return config;
}

std::string ComposeConfigText(const VmConfig& config) {
    std::string text;
    text.reserve(4 * MAX_CONFIG_BYTES);  // it never moves: a unit is given three bytes before it is encoded
    text = "# Veldrane VM - configuration UTF-8\n";
    AppendLine(text, "version", VERSION);
    for (const TextKey& row : TEXT_KEYS)
        AppendLine(text, row.key, config.*row.field);
    for (const NumberKey& row : NUMBER_KEYS)
        AppendLine(text, row.key, NumberText(config.*row.field));
    for (const FlagKey& row : FLAG_KEYS)
        AppendLine(text, row.key, FlagText(config.*row.field));
    for (std::size_t slot = 0; slot < IDE_KEYS.size(); ++slot)
        AppendLine(text, IDE_KEYS[slot], config.ide[slot]);
    AppendLine(text, "module_count", NumberText(config.modules.size()));
    for (std::size_t index = 0; index < config.modules.size(); ++index) {
        AppendLine(text, ModuleKey(index, "path"), config.modules[index].path);
        AppendLine(text, ModuleKey(index, "command"), config.modules[index].command);
    }
    if (text.size() > MAX_CONFIG_BYTES)
        throw std::runtime_error("Configuration trop volumineuse.");
    return text;
}
