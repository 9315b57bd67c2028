// Parses and composes the text of a configuration file, version 1: UTF-8, one `key=value` per line.
// Accesses no file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>

#include "config/vm_config.h"

// The maximum size of a configuration file, in bytes, including the byte order mark.
inline constexpr std::size_t MAX_CONFIG_BYTES = 1048576;

// The keys of a file that TakeConfigValue has not removed yet, with their values, ordered by the bytes of
// the keys. Keys and values are views into the text, which must outlive the table.
using ConfigTable = std::map<std::string_view, std::string_view>;

// Returns the keys and values of all lines of the text. Throws at the first line that is invalid or
// repeats a key.
ConfigTable ReadConfigTable(std::string_view text);

// Removes the key from the table and returns its value, or the default if the table does not contain the key.
std::string_view TakeConfigValue(ConfigTable& table, std::string_view key, std::string_view default_value);

// Converts the value to a number. Throws, with `key` in the message, if the value is empty or contains
// anything but ASCII digits, and if the number, of any length, is below `lowest` or above `highest`.
std::uint32_t ParseConfigNumber(std::string_view value, std::uint32_t lowest, std::uint32_t highest,
                                std::string_view key);

// Parses the whole content of a file and returns the validated record. Paths are not changed. Throws at
// the first error. The checks have this order: the encoding of the whole text, the lines, the version, the
// values, unknown keys, the record's limits.
VmConfig ParseConfigText(std::string_view text);

// Returns the canonical text of a record: every key in a fixed order, a line feed after each line, no byte
// order mark. Does not validate the record. Throws when a field is not well-formed UTF-16 or the text is
// longer than MAX_CONFIG_BYTES.
std::string ComposeConfigText(const VmConfig& config);
