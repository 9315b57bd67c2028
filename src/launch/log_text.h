// The log as text for a text control. Plain values.
#pragma once

#include <string_view>

#include "platform/win32.h"

// The bytes of a log as wide text with normal line ends: as UTF-8 where all of them are that, otherwise all
// of them in the ANSI code page. Cannot fail but by exhaustion of memory; linear in its input.
WideText LogText(std::string_view bytes);

// Puts a carriage return in front of each line feed that has none, in place. Other characters stay.
void NormalizeLineEnds(WideText& text);

// Makes each zero, which would end the text in a control, a middle dot: one character for another, in place.
void ShowZeros(WideText& text);
