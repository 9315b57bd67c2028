// Each conversion is one call into a buffer of the largest possible size: a byte becomes at most one code
// unit, a code unit at most three bytes.
#include "base/text_convert.h"

#include <algorithm>
#include <stdexcept>

namespace {

constexpr std::size_t LONGEST_TEXT = 0x7FFFFFFF;

template <typename Text>
int CheckedLength(const Text& text) {
    if (text.size() > LONGEST_TEXT)
        throw std::runtime_error("Texte trop long.");
    return static_cast<int>(text.size());
}

std::string Encode(WideView text, DWORD flags) {
    if (text.empty())
        return {};
    const int length = CheckedLength(text);
    std::string narrow(std::min(3 * text.size(), LONGEST_TEXT), '\0');
    const int size = WideCharToMultiByte(CP_UTF8, flags, text.data(), length, narrow.data(),
                                         static_cast<int>(narrow.size()), nullptr, nullptr);
    if (size < 1)
        throw std::runtime_error("Texte Unicode invalide.");
    narrow.resize(static_cast<std::size_t>(size));
    return narrow;
}

// Decodes the text into the buffer and returns the number of code units. With a null buffer, only counts
// them. Throws for ill-formed UTF-8.
std::size_t Decode(std::string_view text, WCHAR* buffer, int buffer_size) {
    const int size = MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, text.data(), CheckedLength(text),
                                         buffer, buffer_size);
    if (size < 1)
        throw std::runtime_error("Le fichier doit être encodé en UTF-8.");
    return static_cast<std::size_t>(size);
}

WideText WideFromAnsi(std::string_view text) {
    const auto length = static_cast<int>(std::min(text.size(), LONGEST_TEXT));
    WideText wide(static_cast<std::size_t>(length), WCHAR{});
    const int size = MultiByteToWideChar(CP_ACP, 0, text.data(), length, wide.data(), length);
    wide.resize(static_cast<std::size_t>(size));
    return wide;
}

}  // namespace

std::string Utf8FromWide(WideView text) {
    return Encode(text, WC_ERR_INVALID_CHARS);
}

std::string Utf8ForDisplay(WideView text) {
    return Encode(text, 0);
}

void RequireUtf8(std::string_view text) {
    if (!text.empty())
        Decode(text, nullptr, 0);
}

WideText WideFromUtf8(std::string_view text) {
    if (text.empty())
        return {};
    const int length = CheckedLength(text);
    WideText wide(text.size(), WCHAR{});
    wide.resize(Decode(text, wide.data(), length));
    return wide;
}

WideText WideFromBytes(std::string_view bytes) {
    try {
        return WideFromUtf8(bytes);
    } catch (const std::runtime_error&) {
        return WideFromAnsi(bytes);
    }
}

WideText WideFromMessage(const char* message) {
    return WideFromBytes(message);
}

std::string NumberText(std::uint64_t number) {
    return std::to_string(number);
}

WideText WideNumberText(std::uint64_t number) {
    const std::string digits = NumberText(number);
    return {digits.begin(), digits.end()};
}
