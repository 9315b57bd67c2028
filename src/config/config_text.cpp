// The keys of the file as tables, from which one pass reads and another composes.
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

enum class Line { Assignment, Nothing, Invalid };

// What a line is; an assignment is put into `entry`. A blank line and a comment are nothing.
Line ReadLine(std::string_view line, ConfigTable::Entry& entry) {
    if (line.ends_with('\r'))
        line.remove_suffix(1);
    const std::size_t start = line.find_first_not_of(BLANKS);
    if (start == std::string_view::npos || line[start] == '#')
        return Line::Nothing;
    const std::size_t equals = line.find('=', start);
    if (equals == std::string_view::npos || equals == start)
        return Line::Invalid;
    const std::string_view key = line.substr(start, equals - start);
    entry.key = key.substr(0, key.find_last_not_of(BLANKS) + 1);
    entry.value = line.substr(equals + 1);
    return Line::Assignment;
}

// Visits the assignments up to the end or to the first invalid line; false for the latter.
template <typename Visit>
bool ForEachAssignment(std::string_view text, const Visit& visit) {
    while (!text.empty()) {
        const std::size_t line_end = std::min(text.find('\n'), text.size());
        ConfigTable::Entry entry;
        const Line line = ReadLine(text.substr(0, line_end), entry);
        if (line == Line::Invalid)
            return false;
        if (line == Line::Assignment)
            visit(entry);
        text.remove_prefix(std::min(line_end + 1, text.size()));
    }
    return true;
}

// Of the sorted entries, the one that repeats a key first in the order of the file.
const ConfigTable::Entry* FirstRepeat(const std::vector<ConfigTable::Entry>& sorted) {
    const ConfigTable::Entry* first = nullptr;
    for (std::size_t index = 1; index < sorted.size(); ++index) {
        const ConfigTable::Entry& entry = sorted[index];
        const bool repeats = entry.key == sorted[index - 1].key;
        if (repeats && (first == nullptr || entry.key.data() < first->key.data()))
            first = &entry;
    }
    return first;
}

bool ComesBefore(const ConfigTable::Entry& left, const ConfigTable::Entry& right) {
    const int order = left.key.compare(right.key);
    return order != 0 ? order < 0 : left.key.data() < right.key.data();
}

// A repeated key is found by sorting, so that the table needs no second structure. An invalid line hides what
// follows it, and a repeat before it is told first.
ConfigTable ReadTable(std::string_view text) {
    ConfigTable table;
    std::size_t count = 0;  // the table is made in its final size: growing would hold it twice
    ForEachAssignment(text, [&](const ConfigTable::Entry&) { ++count; });
    table.entries.reserve(count);
    const bool all_lines_valid =
        ForEachAssignment(text, [&](const ConfigTable::Entry& entry) { table.entries.push_back(entry); });
    std::sort(table.entries.begin(), table.entries.end(), ComesBefore);
    if (const ConfigTable::Entry* repeat = FirstRepeat(table.entries))
        throw std::runtime_error("Clé répétée : " + std::string(repeat->key));
    if (!all_lines_valid)
        throw std::runtime_error("Ligne de configuration invalide.");
    return table;
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
            throw std::runtime_error("Clé de configuration inconnue : " + std::string(entry.key));
}

void AppendLine(std::string& text, std::string_view key, std::string_view value) {
    text.append(key).append(1, '=').append(value).append(1, '\n');
}

}  // namespace

std::string_view TakeConfigValue(ConfigTable& table, std::string_view key, std::string_view default_value) {
    const auto found = std::lower_bound(
        table.entries.begin(), table.entries.end(), key,
        [](const ConfigTable::Entry& entry, std::string_view wanted) { return entry.key < wanted; });
    if (found == table.entries.end() || found->key != key || found->taken)
        return default_value;
    found->taken = true;
    return found->value;
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
    WideFromUtf8(text);  // for its refusal of the whole before a single line is looked at
    ConfigTable table = ReadTable(text);
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
