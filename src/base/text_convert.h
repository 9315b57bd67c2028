// Conversion of text and numbers: wide text inside the program, UTF-8 in files and messages. A conversion is
// exact or throws, except where its contract says otherwise.
#pragma once

#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>

#include "platform/win32.h"

// Converts wide text to UTF-8. Throws for an unpaired surrogate, and when the text has more than
// 2,147,483,647 code units or the result more than 2,147,483,647 bytes. A NUL is converted like any other
// character.
std::string Utf8FromWide(WideView text);

// As Utf8FromWide, but for display only: an unpaired surrogate becomes a replacement character. Throws
// only when the text is too long.
std::string Utf8ForDisplay(WideView text);

// Converts UTF-8 to wide text. Throws for ill-formed UTF-8 and for more than 2,147,483,647 bytes. A NUL is
// converted like any other character.
WideText WideFromUtf8(std::string_view text);

// Checks that the text is well-formed UTF-8: throws as WideFromUtf8 does, but does not build the wide
// text.
void RequireUtf8(std::string_view text);

// Decodes any bytes for display: as UTF-8 or, if the bytes are not well-formed UTF-8, in the ANSI code
// page. Of more than 2,147,483,647 bytes, only that many are decoded. Returns an empty text if the platform
// reports an error.
WideText WideFromBytes(std::string_view bytes);

// As WideFromBytes, for the text of an exception.
WideText WideFromMessage(const char* message);

// Returns the number as decimal text without leading zeros, independent of the locale.
std::string NumberText(std::uint64_t number);
WideText WideNumberText(std::uint64_t number);

// Converts a text of ASCII digits to a number; leading zeros are accepted. Returns none if the text is
// empty or contains anything else. A number that does not fit in 64 bits becomes the largest 64-bit
// number.
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
