// Conversions between the two forms of text.
#include "base/text_convert.h"

#include <gtest/gtest.h>

#include "cases.h"

namespace {

using namespace std::string_literals;

TEST(TextConvert, GoesThereAndBackExactly) {
    const struct {
        std::string narrow;
        WideText wide;
    } cases[] = {{"", {}},
                 {"a\0b"s, {'a', 0, 'b'}},
                 {"\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80", {0x7F, 0x80, 0x7FF, 0x800}},
                 {"\xEF\xBB\xBF\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBF", {0xFEFF, 0xD7FF, 0xE000, 0xFFFF}},
                 {"\xF0\x90\x80\x80\xF0\x9F\x98\x80", {0xD800, 0xDC00, 0xD83D, 0xDE00}},
                 {"\xF4\x8F\xBF\xBF", {0xDBFF, 0xDFFF}}};
    for (const auto& c : cases) {
        EXPECT_TRUE(WideFromUtf8(c.narrow) == c.wide) << c.narrow;
        EXPECT_EQ(Utf8FromWide(c.wide), c.narrow);
    }
}

TEST(TextConvert, RefusesWhatIsIllFormed) {
    for (const std::string& text :
         {"\x80"s, "\xC0\x80"s, "\xC1\xBF"s, "\xE2"s, "\xE2\x82"s, "\xC3("s, "\xED\xA0\x80"s, "\xED\xBF\xBF"s,
          "\xE0\x9F\xBF"s, "\xF0\x9F\x98"s, "a\xC3"s, "\xFF\xFEv"s, "\xF0\x8F\xBF\xBF"s, "\xF4\x90\x80\x80"s,
          "\xF5\x80\x80\x80"s, "\xE2\0\xAC"s, "\xC3\xA9\xE9"s})
        EXPECT_EQ(MessageOf([&] { WideFromUtf8(text); }), "Le fichier doit être encodé en UTF-8.") << text;
    const WideText wide[] = {{0xD800},         {0xDC00},      {'a', 0xD83D},           {0xD83D, 'a'},
                             {0xDE00, 0xD83D}, {0xDE00, 'a'}, {0xD83D, 0xD83D, 0xDE00}};
    for (const WideText& text : wide)
        EXPECT_EQ(MessageOf([&] { Utf8FromWide(text); }), "Texte Unicode invalide.") << &text - wide;
}

TEST(TextConvert, RefusesWhatIsTooLongBeforeLookingAtIt) {
    const WCHAR wide[] = {TEXT('a')};
    const char narrow[] = {'a'};
    EXPECT_EQ(MessageOf([&] { Utf8FromWide(WideView(wide, 0x80000000)); }), "Texte trop long.");
    EXPECT_EQ(MessageOf([&] { WideFromUtf8(std::string_view(narrow, 0x80000000)); }), "Texte trop long.");
}

TEST(TextConvert, ShowsAnyMessage) {
    EXPECT_TRUE(WideFromMessage("Échec à 100 %") == TEXT("Échec à 100 %"));
    EXPECT_TRUE(WideFromMessage("\xE9") == TEXT("é"));
    EXPECT_TRUE(WideFromMessage("\x80\x8A") == TEXT("€Š"));
    EXPECT_TRUE(WideFromMessage("").empty());
}

TEST(TextConvert, WritesNumbersShort) {
    EXPECT_EQ(NumberText(0), "0");
    EXPECT_EQ(NumberText(1048576), "1048576");
    EXPECT_TRUE(WideNumberText(18446744073709551615U) == TEXT("18446744073709551615"));
}

}  // namespace
