// Shared by the fuzz targets: checks, and conversions by the standard library and by tables.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "platform/win32.h"

// Ends the program if the condition does not hold; the fuzzer reports that as a finding.
inline void Require(bool holds) {
    if (!holds)
        std::abort();
}

// The result of the operation; none if it throws.
template <typename Operation>
auto ResultOf(const Operation& operation) -> std::optional<decltype(operation())> {
    try {
        return operation();
    } catch (const std::runtime_error&) {
        return std::nullopt;
    }
}

// These two throw for ill-formed text.
inline std::string EncodedUtf8(const WideText& wide) {
    const auto bytes = std::filesystem::path(std::u16string(wide.begin(), wide.end())).u8string();
    return {bytes.begin(), bytes.end()};
}
inline WideText DecodedUtf8(std::string_view bytes) {
    const auto wide = std::filesystem::path(std::u8string(bytes.begin(), bytes.end())).u16string();
    const WideText text(wide.begin(), wide.end());
    if (EncodedUtf8(text) != bytes)  // the library decodes surrogates
        throw std::runtime_error("ill-formed");
    return text;
}

// Decoded as UTF-8 or, if ill-formed, all of it as code page 1252.
inline WideText ReadableText(std::string_view bytes) {
    constexpr WideView FROM_80_TO_9F = TEXT("€\u0081‚ƒ„…†‡ˆ‰Š‹Œ\u008DŽ\u008F\u0090‘’“”•–—˜™š›œ\u009DžŸ");
    WideText text;
    for (const char8_t code : std::u8string(bytes.begin(), bytes.end()))
        text += code >= 0x80 && code < 0xA0 ? FROM_80_TO_9F[code - 0x80U] : WCHAR{code};
    return ResultOf([&] { return DecodedUtf8(bytes); }).value_or(text);
}

// The arguments of a command line, as the program that is started sees them.
std::vector<WideText> SplitLine(const WideText& line);
