// The text of a configuration file, version 1: one `key=value` a line, in UTF-8. Composing and parsing, apart
// from the file itself.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "config/vm_config.h"

// The most that a configuration file may hold, in bytes, its byte order mark included.
inline constexpr std::size_t MAX_CONFIG_BYTES = 1048576;

// The keys of a file with their values, ordered by the keys' bytes: places in the text, which must outlive
// it.
struct ConfigTable {
    // Small, as there can be very many.
    struct Entry {
        std::uint64_t key_start;  // the key's first eight bytes as a number, which mostly settles the order
        std::uint32_t key;
        std::uint32_t equals;
        std::uint32_t end;  // of the value
        bool taken;
    };
    std::string_view text;
    std::vector<Entry> entries;
};

// Throws for an invalid line and for a repeated key, whichever comes first in the text.
ConfigTable ReadConfigTable(std::string_view text);

// The value of the key, which is then used up, or the default where the table does not hold the key.
std::string_view TakeConfigValue(ConfigTable& table, std::string_view key, std::string_view default_value);

// The number of a configuration value, from `lowest` to `highest`. Throws, naming the key, for anything but
// ASCII digits and for a number out of bounds, however many digits it has.
std::uint32_t ParseConfigNumber(std::string_view value, std::uint32_t lowest, std::uint32_t highest,
                                std::string_view key);

// The record that the whole content of a file stands for, validated, its paths as they were written. Throws
// with the first thing that is wrong: the encoding of the whole, the lines, the version, the values, unknown
// keys, the limits.
VmConfig ParseConfigText(std::string_view text);

// The canonical text of a record: every key in a fixed order, no byte order mark, each line ended by a line
// feed. Throws when a field is not well-formed UTF-16 or the text would be longer than MAX_CONFIG_BYTES.
std::string ComposeConfigText(const VmConfig& config);
