// Conversions in one call each, into the most that the text can become: no byte gives more than one code
// unit.
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

// The text grows to what the addition can take at most, three bytes for a unit, and then shrinks to what it
// took.
void AppendEncoded(std::string& text, WideView addition, DWORD flags) {
    if (addition.empty())
        return;
    const int length = CheckedLength(addition);
    const std::size_t room = std::min(3 * addition.size(), LONGEST_TEXT);
    const std::size_t start = text.size();
    text.resize(start + room);
    const int size = WideCharToMultiByte(CP_UTF8, flags, addition.data(), length, text.data() + start,
                                         static_cast<int>(room), nullptr, nullptr);
    if (size < 1)
        throw std::runtime_error("Texte Unicode invalide.");
    text.resize(start + static_cast<std::size_t>(size));
}

// Decodes into the buffer, or only counts without one; the number of code units.
std::size_t Decode(std::string_view text, WCHAR* buffer, int buffer_size) {
    const int size = MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, text.data(), CheckedLength(text),
                                         buffer, buffer_size);
    if (size < 1)
        throw std::runtime_error("Le fichier doit être encodé en UTF-8.");
    return static_cast<std::size_t>(size);
}

}  // namespace

void AppendUtf8(std::string& text, WideView addition) {
    AppendEncoded(text, addition, WC_ERR_INVALID_CHARS);
}

std::string Utf8FromWide(WideView text) {
    std::string narrow;
    AppendUtf8(narrow, text);
    return narrow;
}

std::string Utf8ForDisplay(WideView text) {
    std::string narrow;
    AppendEncoded(narrow, text, 0);
    return narrow;
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

WideText WideFromAnsi(std::string_view text) {
    const auto length = static_cast<int>(std::min(text.size(), LONGEST_TEXT));
    WideText wide(static_cast<std::size_t>(length), WCHAR{});
    const int size = MultiByteToWideChar(CP_ACP, 0, text.data(), length, wide.data(), length);
    wide.resize(static_cast<std::size_t>(size));
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
