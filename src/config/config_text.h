// The text of a configuration file, version 1: UTF-8, one `key=value` a line. Parses and composes it; touches
// no file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>

#include "config/vm_config.h"

// The largest configuration file, in bytes, its byte order mark included.
inline constexpr std::size_t MAX_CONFIG_BYTES = 1048576;

// The keys of a file that nobody has taken yet, with their values, ordered by the keys' bytes. Keys and
// values are parts of the text, which must outlive the table.
using ConfigTable = std::map<std::string_view, std::string_view>;

// The keys and values of the text, line by line. Throws at the first line that is invalid or repeats a key.
ConfigTable ReadConfigTable(std::string_view text);

// Removes the key from the table and returns its value, or the default if the table does not contain the key.
std::string_view TakeConfigValue(ConfigTable& table, std::string_view key, std::string_view default_value);

// The number that a value consists of, from `lowest` to `highest`. Throws, with the key in the message, for
// anything but ASCII digits and for a number out of bounds, however many digits it has.
std::uint32_t ParseConfigNumber(std::string_view value, std::uint32_t lowest, std::uint32_t highest,
                                std::string_view key);

// The validated record of a file's whole content; its paths stay as they were written. Throws for the first
// fault, looked for in this order: the encoding of the whole text, the lines, the version, the values,
// unknown keys, the record's limits.
VmConfig ParseConfigText(std::string_view text);

// The canonical text of a record: every key in a fixed order, a line feed after each line, no byte order
// mark. Throws when a field is not well-formed UTF-16 or the text would be longer than MAX_CONFIG_BYTES.
std::string ComposeConfigText(const VmConfig& config);
