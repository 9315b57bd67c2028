// Conversion of text and numbers: wide text inside the program, UTF-8 in files and messages. A conversion is
// exact or throws, except where its contract says otherwise.
#pragma once

#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>

#include "platform/win32.h"

// Throws for an unpaired surrogate and for more than 2,147,483,647 code units. A NUL is a character like any
// other.
std::string Utf8FromWide(WideView text);

// For display only: unpaired surrogates become replacement characters. Throws for too long a text only.
std::string Utf8ForDisplay(WideView text);

// Throws for ill-formed UTF-8 and for more than 2,147,483,647 bytes. A NUL is a character like any other.
WideText WideFromUtf8(std::string_view text);

// Throws what WideFromUtf8 throws, and builds no text.
void RequireUtf8(std::string_view text);

// Decodes any bytes by the ANSI code page.
WideText WideFromAnsi(std::string_view text);

// An error message for display, decoded as UTF-8 or, if it is ill-formed, by the ANSI code page.
WideText WideFromMessage(const char* message);

// The shortest unsigned decimal text, independent of any locale.
std::string NumberText(std::uint64_t number);
WideText WideNumberText(std::uint64_t number);

// The number that a text of ASCII digits represents; leading zeros are accepted. None if the text is empty or
// contains anything else. A number that does not fit in 64 bits becomes the largest that does.
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
