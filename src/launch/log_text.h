// Converts a log to the text for a text control. No window.
#pragma once

#include <string_view>

#include "platform/win32.h"

// Decodes the bytes of a log and normalises its line ends. The bytes are decoded as UTF-8 if all of them are
// valid, and otherwise all in the ANSI code page. Throws only std::bad_alloc; the time is linear in the
// input.
WideText LogText(std::string_view bytes);

// Inserts a carriage return before each line feed that has none, in place.
void NormalizeLineEnds(WideText& text);

// Replaces each zero by a middle dot, in place: a zero would end the text in a control.
void ShowZeros(WideText& text);
