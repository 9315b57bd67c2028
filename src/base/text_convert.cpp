// Conversions in two calls each: one for the size, one for the text.
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

std::string Encoded(WideView text, DWORD flags) {
    if (text.empty())
        return {};
    const int length = CheckedLength(text);
    const int size = WideCharToMultiByte(CP_UTF8, flags, text.data(), length, nullptr, 0, nullptr, nullptr);
    if (size < 1)
        throw std::runtime_error("Texte Unicode invalide.");
    std::string narrow(static_cast<std::size_t>(size), '\0');
    if (WideCharToMultiByte(CP_UTF8, flags, text.data(), length, narrow.data(), size, nullptr, nullptr) !=
        size)
        throw std::runtime_error("Texte Unicode invalide.");
    return narrow;
}

}  // namespace

std::string Utf8FromWide(WideView text) {
    return Encoded(text, WC_ERR_INVALID_CHARS);
}

std::string Utf8ForDisplay(WideView text) {
    return Encoded(text, 0);
}

WideText WideFromUtf8(std::string_view text) {
    if (text.empty())
        return {};
    const int length = CheckedLength(text);
    const int size = MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, text.data(), length, nullptr, 0);
    if (size < 1)
        throw std::runtime_error("Le fichier doit être encodé en UTF-8.");
    WideText wide(static_cast<std::size_t>(size), WCHAR{});
    if (MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, text.data(), length, wide.data(), size) != size)
        throw std::runtime_error("Le fichier doit être encodé en UTF-8.");
    return wide;
}

WideText WideFromAnsi(std::string_view text) {
    const auto length = static_cast<int>(std::min(text.size(), LONGEST_TEXT));
    const int size = MultiByteToWideChar(CP_ACP, 0, text.data(), length, nullptr, 0);
    WideText wide(static_cast<std::size_t>(size), WCHAR{});
    MultiByteToWideChar(CP_ACP, 0, text.data(), length, wide.data(), size);
    return wide;
}

WideText WideFromMessage(const char* message) {
    try {
        return WideFromUtf8(message);
    } catch (const std::runtime_error&) {
        return WideFromAnsi(message);
    }
}

std::string NumberText(std::uint64_t number) {
    return std::to_string(number);
}

WideText WideNumberText(std::uint64_t number) {
    const std::string digits = NumberText(number);
    return {digits.begin(), digits.end()};
}
