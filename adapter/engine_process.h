// What all engines share: the start and the end of the process, its exit codes and its output. The output is
// UTF-8 and not buffered, because the launcher shows the log during the run.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "platform/win32.h"

inline constexpr std::uint32_t SUCCESS_EXIT_CODE = 0;
inline constexpr std::uint32_t FAILURE_EXIT_CODE = 1;
inline constexpr std::uint32_t USAGE_EXIT_CODE = 2;
inline constexpr std::uint32_t TIME_LIMIT_EXIT_CODE = 124;

// The work of an engine: receives the arguments without the program name and stores its exit code.
using EngineWork = void(const std::vector<WideText>& arguments, std::uint32_t& exit_code);

// Runs the work and ends the process with the stored exit code. When the work throws, writes the text of the
// exception to standard error; a stored SUCCESS_EXIT_CODE then becomes FAILURE_EXIT_CODE.
[[noreturn]] void RunEngineProcess(int argc, WCHAR** argv, EngineWork* work);

// Writes the bytes to a file. Returns false when not all bytes could be written.
[[nodiscard]] bool WriteAll(HANDLE file, std::string_view bytes);

// Writes the bytes to standard output. Throws when not all bytes could be written.
void Print(std::string_view bytes);

// Writes the text and a line feed together to standard output. Throws as Print does.
void PrintLine(std::string_view text);
