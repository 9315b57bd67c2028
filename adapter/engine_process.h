// What all engines share: their command line, their exit codes and their output. The output is UTF-8 and not
// buffered, because the launcher shows the log during the run.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "config/vm_config.h"

inline constexpr std::uint32_t SUCCESS_EXIT_CODE = 0;
inline constexpr std::uint32_t FAILURE_EXIT_CODE = 1;
inline constexpr std::uint32_t USAGE_EXIT_CODE = 2;
inline constexpr std::uint32_t TIME_LIMIT_EXIT_CODE = 124;

// Runs the work, which receives the arguments without the program name and stores the exit code, and ends the
// process. When the work throws, writes the text of the exception to standard error; a stored
// SUCCESS_EXIT_CODE then becomes FAILURE_EXIT_CODE.
using EngineWork = void(const std::vector<WideText>& arguments, std::uint32_t& exit_code);
[[noreturn]] void RunEngineProcess(int argc, WCHAR** argv, EngineWork* work);

struct EngineRequest {
    VmConfig config;
    bool dry_run = false;
};

// Reads the arguments after the engine's own name: the kernel, then options in any order. Throws for a
// missing kernel, for an option that is unknown or lacks a value, and as ParseNumber and ValidateConfig do.
// Options that are missing leave the defaults of the record.
EngineRequest ParseEngineArguments(const std::vector<WideText>& arguments);

// Converts a text of decimal digits to a number. Throws for any other text, for leading zeros, and for a
// number above `highest`.
std::uint32_t ParseNumber(WideView text, std::uint32_t highest = UINT32_MAX);

// Writes the bytes, less than 4 GiB, to a file. Returns false when not all could be written.
[[nodiscard]] bool WriteAll(HANDLE file, std::string_view bytes);

// Writes the bytes to standard output. Throws when not all bytes could be written.
void Print(std::string_view bytes);

// Writes the text and a line feed together to standard output. Throws as Print does.
void PrintLine(std::string_view text);
