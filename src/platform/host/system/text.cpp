// Converts text between UTF-8 and UTF-16, and from code page 1252.
#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>

#include "platform/host/api/kernel32.h"
#include "platform/host/hooks/call_hooks.h"
#include "platform/host/system/native.h"

namespace host {
namespace {

constexpr char32_t REPLACEMENT = 0xFFFD;

// Code page 1252 from 0x80 to 0x9F. The five bytes that it does not define become control characters.
constexpr std::array<WCHAR, 32> HIGH_1252 = {0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                             0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                             0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                             0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

// The output of a conversion. Without a buffer, its units are only counted.
template <typename Unit>
struct Sink {
    Unit* buffer;
    std::size_t size;
    std::size_t used = 0;
};

template <typename Unit>
bool HasRoom(const Sink<Unit>& sink, std::size_t count) {
    return sink.buffer == nullptr || sink.size - sink.used >= count;
}

template <typename Unit>
void Put(Sink<Unit>& sink, unsigned value) {
    if (sink.buffer != nullptr)
        sink.buffer[sink.used] = static_cast<Unit>(value);
    sink.used++;
}

// A well-formed UTF-8 sequence or, with `is_valid` false, the longest start of one, which counts as one
// error.
struct Sequence {
    char32_t point;
    std::size_t length;
    bool is_valid;
};

struct SecondByteRange {
    unsigned char lowest;
    unsigned char highest;
};

// The valid range of the byte after the lead byte. It excludes overlong forms, surrogates and values above
// U+10FFFF.
SecondByteRange SecondBytes(unsigned char lead) {
    switch (lead) {
        case 0xE0:
            return {0xA0, 0xBF};
        case 0xED:
            return {0x80, 0x9F};
        case 0xF0:
            return {0x90, 0xBF};
        case 0xF4:
            return {0x80, 0x8F};
        default:
            return {0x80, 0xBF};
    }
}

Sequence DecodeSequence(std::string_view bytes) {
    const auto lead = static_cast<unsigned char>(bytes.front());
    if (lead < 0xC2 || lead > 0xF4)
        return {REPLACEMENT, 1, false};
    const std::size_t length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    char32_t point = lead & (0xFFU >> (length + 1));
    SecondByteRange range = SecondBytes(lead);
    for (std::size_t at = 1; at < length; at++) {
        const unsigned char byte = at < bytes.size() ? static_cast<unsigned char>(bytes[at]) : 0;
        if (byte < range.lowest || byte > range.highest)
            return {REPLACEMENT, at, false};
        point = (point << 6) | (byte & 0x3FU);
        range = {0x80, 0xBF};
    }
    return {point, length, true};
}

// The number of ASCII units at the start of the text. Tests whole blocks, so that the compiler can use vector
// instructions.
template <typename Unit>
std::size_t AsciiRun(std::basic_string_view<Unit> text) {
    using Bits = std::make_unsigned_t<Unit>;
    constexpr std::size_t BLOCK = 64;
    std::size_t at = 0;
    for (; at + BLOCK <= text.size(); at += BLOCK) {
        Bits seen = 0;
        for (const Unit unit : text.substr(at, BLOCK))
            seen = static_cast<Bits>(seen | static_cast<Bits>(unit));
        if (seen >= 0x80)
            break;
    }
    while (at < text.size() && static_cast<Bits>(text[at]) < 0x80)
        at++;
    return at;
}

template <typename From, typename To>
DWORD PutAscii(std::basic_string_view<From> ascii, Sink<To>& sink) {
    if (!HasRoom(sink, ascii.size()))
        return ERROR_INSUFFICIENT_BUFFER;
    if (sink.buffer != nullptr)
        std::transform(ascii.begin(), ascii.end(), sink.buffer + sink.used,
                       [](From unit) { return static_cast<To>(unit); });
    sink.used += ascii.size();
    return ERROR_SUCCESS;
}

DWORD PutPoint(char32_t point, Sink<WCHAR>& sink) {
    const bool needs_pair = point > 0xFFFF;
    if (!HasRoom(sink, needs_pair ? 2 : 1))
        return ERROR_INSUFFICIENT_BUFFER;
    if (needs_pair) {
        Put(sink, 0xD7C0 + (point >> 10));
        Put(sink, 0xDC00 + (point & 0x3FF));
    } else {
        Put(sink, point);
    }
    return ERROR_SUCCESS;
}

DWORD DecodeUtf8(std::string_view bytes, bool strict, Sink<WCHAR>& sink) {
    while (!bytes.empty()) {
        const std::size_t ascii = AsciiRun(bytes);
        DWORD error = PutAscii(bytes.substr(0, ascii), sink);
        bytes.remove_prefix(ascii);
        if (error == ERROR_SUCCESS && !bytes.empty()) {
            const Sequence next = DecodeSequence(bytes);
            bytes.remove_prefix(next.length);
            error = strict && !next.is_valid ? ERROR_NO_UNICODE_TRANSLATION : PutPoint(next.point, sink);
        }
        if (error != ERROR_SUCCESS)
            return error;
    }
    return ERROR_SUCCESS;
}

DWORD Decode1252(std::string_view bytes, Sink<WCHAR>& sink) {
    if (!HasRoom(sink, bytes.size()))
        return ERROR_INSUFFICIENT_BUFFER;
    for (const char byte : bytes) {
        const auto code = static_cast<unsigned char>(byte);
        Put(sink, code >= 0x80 && code < 0xA0 ? HIGH_1252[code - 0x80U] : code);
    }
    return ERROR_SUCCESS;
}

DWORD PutUtf8(char32_t point, Sink<char>& sink) {
    const unsigned tail = point < 0x80 ? 0 : point < 0x800 ? 1 : point < 0x10000 ? 2 : 3;
    if (!HasRoom(sink, tail + 1))
        return ERROR_INSUFFICIENT_BUFFER;
    constexpr std::array<unsigned, 4> LEADS = {0, 0xC0, 0xE0, 0xF0};
    Put(sink, LEADS[tail] | (point >> (6 * tail)));
    for (unsigned left = tail; left > 0; left--)
        Put(sink, 0x80 | ((point >> (6 * (left - 1))) & 0x3F));
    return ERROR_SUCCESS;
}

DWORD EncodeUtf8(std::u16string_view wide, bool strict, Sink<char>& sink) {
    for (std::size_t at = 0; at < wide.size(); at++) {
        const std::u16string_view ascii = wide.substr(at, AsciiRun(wide.substr(at)));
        if (const DWORD error = PutAscii(ascii, sink); error != ERROR_SUCCESS)
            return error;
        at += ascii.size();
        if (at == wide.size())
            break;
        char32_t point = wide[at];
        if (point >= 0xD800 && point < 0xE000) {
            const char32_t low = at + 1 < wide.size() ? wide[at + 1] : 0;
            if (point < 0xDC00 && low >= 0xDC00 && low < 0xE000) {
                point = 0x10000 + ((point - 0xD800) << 10) + (low - 0xDC00);
                at++;
            } else if (strict) {
                return ERROR_NO_UNICODE_TRANSLATION;
            } else {
                point = REPLACEMENT;
            }
        }
        if (const DWORD error = PutUtf8(point, sink); error != ERROR_SUCCESS)
            return error;
    }
    return ERROR_SUCCESS;
}

// Whether the arguments of a conversion are valid. The buffer may be null only with the size 0, which
// requests the needed size.
template <typename From, typename To>
bool AreValidArguments(const From* text, int count, const To* buffer, int size) {
    return text != nullptr && count != 0 && size >= 0 && (size == 0 || buffer != nullptr);
}

template <typename Unit>
std::basic_string_view<Unit> TextOf(const Unit* text, int count) {
    if (count < 0)
        return {text, std::char_traits<Unit>::length(text) + 1};
    return {text, static_cast<std::size_t>(count)};
}

template <typename Unit>
Sink<Unit> SinkFor(Unit* buffer, int size) {
    return {size == 0 ? nullptr : buffer, static_cast<std::size_t>(size)};
}

template <typename Unit>
int Result(DWORD error, const Sink<Unit>& sink) {
    return error == ERROR_SUCCESS ? static_cast<int>(sink.used) : Fail(error);
}

}  // namespace

std::optional<std::string> ToUtf8(std::u16string_view wide) {
    std::string utf8(wide.size() * 3, '\0');
    Sink<char> sink = {utf8.data(), utf8.size()};
    if (EncodeUtf8(wide, true, sink) != ERROR_SUCCESS)
        return std::nullopt;
    utf8.resize(sink.used);
    return utf8;
}

std::optional<std::u16string> FromUtf8(std::string_view utf8) {
    std::u16string wide(utf8.size(), u'\0');
    Sink<WCHAR> sink = {wide.data(), wide.size()};
    if (DecodeUtf8(utf8, true, sink) != ERROR_SUCCESS)
        return std::nullopt;
    wide.resize(sink.used);
    return wide;
}

}  // namespace host

int WINAPI MultiByteToWideChar(UINT code_page, DWORD flags, LPCSTR bytes, int byte_count, LPWSTR wide,
                               int wide_size) {
    if (host::CallFails("MultiByteToWideChar"))
        return 0;
    if (!host::AreValidArguments(bytes, byte_count, wide, wide_size))
        return host::Fail(ERROR_INVALID_PARAMETER);
    host::Sink<WCHAR> sink = host::SinkFor(wide, wide_size);
    if (code_page == CP_ACP)
        return host::Result(host::Decode1252(host::TextOf(bytes, byte_count), sink), sink);
    if (code_page != CP_UTF8)
        host::NotImplemented("MultiByteToWideChar", "a code page other than CP_ACP and UTF-8");
    if ((flags & ~MB_ERR_INVALID_CHARS) != 0)
        return host::Fail(ERROR_INVALID_FLAGS);
    return host::Result(host::DecodeUtf8(host::TextOf(bytes, byte_count), flags != 0, sink), sink);
}

int WINAPI WideCharToMultiByte(UINT code_page, DWORD flags, LPCWSTR wide, int wide_count, LPSTR bytes,
                               int byte_size, LPCSTR default_char, LPBOOL used_default_char) {
    if (host::CallFails("WideCharToMultiByte"))
        return 0;
    if (!host::AreValidArguments(wide, wide_count, bytes, byte_size))
        return host::Fail(ERROR_INVALID_PARAMETER);
    host::Sink<char> sink = host::SinkFor(bytes, byte_size);
    if (code_page != CP_UTF8)
        host::NotImplemented("WideCharToMultiByte", "a code page other than UTF-8");
    if ((flags & ~WC_ERR_INVALID_CHARS) != 0)
        return host::Fail(ERROR_INVALID_FLAGS);
    if (default_char != nullptr || used_default_char != nullptr)
        return host::Fail(ERROR_INVALID_PARAMETER);
    return host::Result(host::EncodeUtf8(host::TextOf(wide, wide_count), flags != 0, sink), sink);
}
