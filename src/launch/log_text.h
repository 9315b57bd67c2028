// Converts a log to the text for a text control. Needs no window.
#pragma once

#include <string_view>

#include "platform/win32.h"

// Decodes the bytes of a log and normalises the line ends. If all bytes together are valid UTF-8, they are
// decoded as UTF-8; otherwise all of them are decoded in the ANSI code page. Throws only std::bad_alloc.
// The time is linear in the number of bytes.
WideText LogText(std::string_view bytes);

// Inserts a carriage return before each line feed that has none, in place.
void NormalizeLineEnds(WideText& text);

// Replaces each NUL character by a middle dot, in place: a NUL would end the text in a control.
void ShowZeros(WideText& text);
