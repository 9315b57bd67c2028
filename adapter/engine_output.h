// An engine's output in UTF-8. It reaches the log at once, because the launcher shows the log during the run.
#pragma once

#include <string_view>

#include "platform/win32.h"

// Writes the bytes to a file. False when the platform does not write them all.
[[nodiscard]] bool WriteAll(HANDLE file, std::string_view bytes);

// Writes the bytes to standard output. Throws when the platform does not write them all.
void Print(std::string_view bytes);

// Writes a line in one call, with its line feed. Throws as Print does.
void PrintLine(std::string_view text);

// Writes a line to standard error. Failures are ignored.
void PrintErrorLine(std::string_view text);
