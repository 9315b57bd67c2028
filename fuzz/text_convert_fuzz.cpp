// Any bytes and any code units through the conversions, against those of the standard library.
#include "base/text_convert.h"

#include <cstring>

#include "fuzz.h"

namespace {

// The text with a replacement character for each unpaired surrogate.
WideText Repaired(WideText text) {
    const auto kind = [&text](std::size_t at) { return at < text.size() ? text[at] & 0xFC00U : 0; };
    for (std::size_t at = 0; at < text.size(); ++at)
        if (kind(at) == 0xD800 && kind(at + 1) == 0xDC00)
            ++at;
        else if (kind(at) == 0xD800 || kind(at) == 0xDC00)
            text[at] = 0xFFFD;
    return text;
}

// The shortest digits of the same number, or of the largest number of 64 bits; none for other text.
std::optional<std::string> ShortDigits(std::string text) {
    const std::string largest = "18446744073709551615";
    if (text.empty() || text.find_first_not_of("0123456789") != std::string::npos)
        return std::nullopt;
    text.erase(0, std::min(text.find_first_not_of('0'), text.size() - 1));
    return text.size() > largest.size() || (text.size() == largest.size() && text > largest) ? largest : text;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(data, data + size);
    WideText units(size / 2, WCHAR{});
    std::memcpy(units.data(), bytes.data(), size / 2 * 2);
    Require(ResultOf([&] { return WideFromUtf8(bytes); }) == ResultOf([&] { return DecodedUtf8(bytes); }));
    Require(ResultOf([&] { return Utf8FromWide(units); }) == ResultOf([&] { return EncodedUtf8(units); }));
    Require(Utf8ForDisplay(units) == EncodedUtf8(Repaired(units)));
    Require(WideFromMessage(bytes.c_str()) == ReadableText(bytes.c_str()));
    const std::optional<std::uint64_t> number = ParseDigits(std::string_view(bytes));
    const std::optional<std::string> digits = ShortDigits(bytes);
    Require(number.has_value() == digits.has_value());
    Require(!number || (NumberText(*number) == digits && WideNumberText(*number) == DecodedUtf8(*digits)));
    return 0;
}
