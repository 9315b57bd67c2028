// The start and end of an engine's process, and the exit codes that all engines share.
#pragma once

#include <cstdint>
#include <vector>

#include "platform/win32.h"

inline constexpr std::uint32_t SUCCESS_EXIT_CODE = 0;
inline constexpr std::uint32_t FAILURE_EXIT_CODE = 1;
inline constexpr std::uint32_t USAGE_EXIT_CODE = 2;
inline constexpr std::uint32_t TIME_LIMIT_EXIT_CODE = 124;

// The work of an engine: receives the arguments without the program name and stores its exit code. When the
// work throws, the last stored code is the exit code.
using EngineWork = void(const std::vector<WideText>& arguments, std::uint32_t& exit_code);

// Runs the work and ends the process with the stored exit code, or with FAILURE_EXIT_CODE when none was
// stored. Writes the text of an exception to standard error.
[[noreturn]] void RunEngineProcess(int argc, WCHAR** argv, EngineWork* work);
