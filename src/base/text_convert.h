// Text and numbers between their two forms: wide text inside the program, UTF-8 in files and messages. A
// conversion gives an exact result or fails; nothing is replaced, cut off or passed through.
#pragma once

#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>

#include "platform/win32.h"

// Throws for an unpaired surrogate and for more than 2,147,483,647 code units. Zeros inside the text pass.
std::string Utf8FromWide(WideView text);

// The same at the end of a text, which is of no use after a throw.
void AppendUtf8(std::string& text, WideView addition);

// Text for display alone: what is no well-formed UTF-16 becomes replacement characters. Never fails on bad
// text.
std::string Utf8ForDisplay(WideView text);

// Throws for ill-formed UTF-8 and for more than 2,147,483,647 bytes. Zeros inside the text pass.
WideText WideFromUtf8(std::string_view text);

// Throws what WideFromUtf8 throws, and makes nothing.
void RequireUtf8(std::string_view text);

// Text in the ANSI code page, whatever its bytes.
WideText WideFromAnsi(std::string_view text);

// An error message for display: as UTF-8, or in the ANSI code page where it is not that. Never fails on bad
// text.
WideText WideFromMessage(const char* message);

// Unsigned decimal, as short as can be, in no locale's form.
std::string NumberText(std::uint64_t number);
WideText WideNumberText(std::uint64_t number);

// The number that a text of ASCII digits stands for, leading zeros and all; none if the text is empty or
// holds anything else. What does not fit in 64 bits comes out as the largest number.
template <typename Character>
std::optional<std::uint64_t> ParseDigits(std::basic_string_view<Character> text) {
    constexpr std::uint64_t largest = std::numeric_limits<std::uint64_t>::max();
    std::uint64_t number = 0;
    for (const Character character : text) {
        if (character < '0' || character > '9')
            return std::nullopt;
        const auto digit = static_cast<std::uint64_t>(character - '0');
        number = number > (largest - digit) / 10 ? largest : number * 10 + digit;
    }
    return text.empty() ? std::nullopt : std::optional(number);
}
