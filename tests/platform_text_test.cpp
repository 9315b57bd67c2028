// What the program relies on in the platform's text conversions.
#include <gtest/gtest.h>

#include "platform/win32.h"
#include "scratch.h"

namespace {

int Length(std::string_view text) {
    return static_cast<int>(text.size());
}

// The strict conversion, or the error.
std::string WideOf(std::string_view bytes, WideText& wide) {
    const int size =
        MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, bytes.data(), Length(bytes), nullptr, 0);
    if (size == 0)
        return "error " + std::to_string(GetLastError());
    wide.resize(static_cast<std::size_t>(size));
    MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, bytes.data(), Length(bytes), wide.data(), size);
    return {};
}

std::string BytesOf(const WideText& wide) {
    const int count = static_cast<int>(wide.size());
    const int size =
        WideCharToMultiByte(CP_UTF8, WC_ERR_INVALID_CHARS, wide.data(), count, nullptr, 0, nullptr, nullptr);
    if (size == 0)
        return "error " + std::to_string(GetLastError());
    std::string bytes(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_UTF8, WC_ERR_INVALID_CHARS, wide.data(), count, bytes.data(), size, nullptr,
                        nullptr);
    return bytes;
}

}  // namespace

TEST(PlatformText, WellFormedUtf8GoesBothWays) {
    const struct {
        std::string bytes;
        WideText wide;
    } cases[] = {
        {"plain, and longer than one machine word", TEXT("plain, and longer than one machine word")},
        {"12345678\xC3\xA9"
         "9",
         TEXT("12345678\u00E99")},
        {"\x7F\xC2\x80\xDF\xBF", TEXT("\u007F\u0080\u07FF")},
        {"\xE0\xA0\x80\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBF", TEXT("\u0800\uD7FF\uE000\uFFFF")},
        {"\xF0\x90\x80\x80\xF0\x9F\x98\x80\xF4\x8F\xBF\xBF", TEXT("\U00010000\U0001F600\U0010FFFF")},
        {std::string("a\0b", 3), WideText(TEXT("a\0b"), 3)},
        {"\xEF\xBB\xBF!", TEXT("\uFEFF!")},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.bytes);
        WideText wide;
        EXPECT_EQ(WideOf(c.bytes, wide), "");
        EXPECT_EQ(Narrow(wide), Narrow(c.wide));
        EXPECT_EQ(BytesOf(c.wide), c.bytes);
    }
}

TEST(PlatformText, IllFormedTextIsRefused) {
    for (const char* bytes :
         {"\x80", "a\xBF", "\xC0\x80", "\xC1\xBF", "\xE2", "\xE2\x82", "\xE2\x82z", "\xE0\x9F\xBF",
          "\xED\xA0\x80", "\xED\xBF\xBF", "\xF0\x8F\xBF\xBF", "\xF0\x9F\x98", "\xF4\x90\x80\x80",
          "\xF5\x80\x80\x80", "\xFF", "12345678\xE9"}) {
        WideText wide;
        EXPECT_EQ(WideOf(bytes, wide), "error 1113") << testing::PrintToString(bytes);
    }
    const WCHAR high = 0xD83D;
    const WCHAR low = 0xDE00;
    for (const WideText& wide : {WideText{high}, WideText{low}, WideText{u'a', high, u'b'},
                                 WideText{low, high}, WideText{high, high, low}, WideText{high, low, low}})
        EXPECT_EQ(BytesOf(wide), "error 1113") << Narrow(wide);
}

TEST(PlatformText, SizesAreChecked) {
    const struct {
        int count;
        int size;
        int result;
        DWORD error;
    } cases[] = {
        {3, 4, 3, 0},
        {3, 3, 3, 0},
        {3, 2, 0, ERROR_INSUFFICIENT_BUFFER},
        {-1, 4, 4, 0},
        {0, 4, 0, ERROR_INVALID_PARAMETER},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.count << " into " << c.size);
        WCHAR wide[4] = {};
        SetLastError(0);
        EXPECT_EQ(MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, "abc", c.count, wide, c.size), c.result);
        EXPECT_EQ(GetLastError(), c.error);
        char bytes[4] = {};
        SetLastError(0);
        EXPECT_EQ(WideCharToMultiByte(CP_UTF8, WC_ERR_INVALID_CHARS, TEXT("abc"), c.count, bytes, c.size,
                                      nullptr, nullptr),
                  c.result);
        EXPECT_EQ(GetLastError(), c.error);
    }
}

TEST(PlatformText, TheAnsiCodePageIs1252) {
    const std::string_view bytes = "A\x80\x81\x8A\x9F\xA0\xE9\xFF";
    WideText wide(bytes.size(), TEXT('\0'));
    ASSERT_EQ(MultiByteToWideChar(CP_ACP, 0, bytes.data(), Length(bytes), nullptr, 0), Length(bytes));
    ASSERT_EQ(MultiByteToWideChar(CP_ACP, 0, bytes.data(), Length(bytes), wide.data(), Length(bytes)),
              Length(bytes));
    EXPECT_EQ(Narrow(wide), "A\u20AC\u0081\u0160\u0178\u00A0\u00E9\u00FF");
    std::string back(bytes.size() + 1, '\0');
    BOOL used_default = FALSE;
    wide += TEXT('\u4E00');
    EXPECT_EQ(WideCharToMultiByte(CP_ACP, 0, wide.data(), Length(back), back.data(), Length(back), nullptr,
                                  &used_default),
              Length(back));
    EXPECT_EQ(back, std::string(bytes) + "?");
    EXPECT_NE(used_default, FALSE);
}
