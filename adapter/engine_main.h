// The start and end of an engine's process, and the exit codes that all engines share.
#pragma once

#include <cstdint>
#include <vector>

#include "platform/win32.h"

inline constexpr std::uint32_t SUCCESS_EXIT_CODE = 0;
inline constexpr std::uint32_t FAILURE_EXIT_CODE = 1;
inline constexpr std::uint32_t USAGE_EXIT_CODE = 2;
inline constexpr std::uint32_t TIME_LIMIT_EXIT_CODE = 124;

// An engine: takes the arguments after its own name and stores its exit code. When it throws, the code that
// it has stored last is the exit code.
using EngineWork = void(const std::vector<WideText>& arguments, std::uint32_t& exit_code);

// Runs the engine and ends the process with its exit code, at first FAILURE_EXIT_CODE. An exception's text is
// written to standard error.
[[noreturn]] void RunEngineProcess(int argc, WCHAR** argv, EngineWork* work);
