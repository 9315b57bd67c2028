// The way in and out of an engine's process, and the exit codes that engines have in common.
#pragma once

#include <cstdint>
#include <vector>

#include "platform/win32.h"

inline constexpr std::uint32_t CHECK_EXIT_CODE = 1;
inline constexpr std::uint32_t USAGE_EXIT_CODE = 2;
inline constexpr std::uint32_t TIME_LIMIT_EXIT_CODE = 124;

// Runs the engine on the arguments behind its own name and ends the process with the code that it gives; when
// it throws, with a line of the reason on standard error and the code that it has left in `failure_code`.
using EngineWork = std::uint32_t(const std::vector<WideText>& arguments, std::uint32_t& failure_code);
[[noreturn]] void RunEngineProcess(int argc, WCHAR** argv, EngineWork* work);
