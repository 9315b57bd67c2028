// An engine's output: UTF-8 that reaches the log at once, as the launcher reads it during the run.
#pragma once

#include <string_view>

#include "platform/win32.h"

// Writes the bytes to a file; false when the platform does not take them all.
bool WriteAll(HANDLE file, std::string_view bytes);

// Writes the bytes to standard output as they are. Throws when the platform does not take them all.
void Print(std::string_view bytes);

// Writes a line in one piece.
void PrintLine(std::string_view text);

// Writes a line to standard error; there is no one left to tell when that fails.
void PrintErrorLine(std::string_view text);
