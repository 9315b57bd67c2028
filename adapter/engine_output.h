// An engine's output in UTF-8. It is not buffered, because the launcher shows the log during the run.
#pragma once

#include <string_view>

#include "platform/win32.h"

// Writes the bytes to a file. Returns false when not all bytes could be written.
[[nodiscard]] bool WriteAll(HANDLE file, std::string_view bytes);

// Writes the bytes to standard output. Throws when not all bytes could be written.
void Print(std::string_view bytes);

// Writes the text and a line feed together to standard output. Throws as Print does.
void PrintLine(std::string_view text);

// Writes the text and a line feed to standard error. Ignores failures.
void PrintErrorLine(std::string_view text);
