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

TEST(TextConvert, ShowsAnyMessage) {
    EXPECT_TRUE(WideFromMessage("Échec à 100 %") == TEXT("Échec à 100 %"));
    EXPECT_TRUE(WideFromMessage("\xE9") == TEXT("é"));
    EXPECT_TRUE(WideFromMessage("").empty());
}

TEST(TextConvert, ReadsNumbersByDigitsAlone) {
    const std::string outside = "Valeur hors limites : cle";
    const struct {
        std::uint32_t lowest, highest;
        std::string message;
        std::vector<std::string> values;
    } cases[] = {
        {16, 2048, "", {"16", "128", "0128", "2048", std::string(30, '0') + "128"}},
        {0, 0xFFFFFFFF, "", {"4294967295"}},
        {0, 0, "", {"0", "000"}},
        {0, 0, outside, {"1"}},
        // 2^32 + 16, 2^64 + 16 and ten times 2^64 come first among those that a shorter number hides.
        {16,
         2048,
         outside,
         {"15", "2049", "4294967312", "18446744073709551632", "184467440737095516160", std::string(20, '9')}},
        {0,
         9999,
         "Valeur numérique invalide : cle",
         {"", "+128", "-1", " 128", "128 ", "128\t", "0x80", "1e3", "12.5", "true", "128\0"s, "\xD9\xA1",
          std::string(20, '9') + "x"}}};
    for (const auto& c : cases) {
        for (const std::string& value : c.values)
            EXPECT_EQ(MessageOf([&] { ParseConfigNumber(value, c.lowest, c.highest, "cle"); }), c.message)
                << value;
    }
    EXPECT_EQ(ParseConfigNumber(std::string(30, '0') + "128", 16, 2048, "cle"), 128U);
    EXPECT_EQ(ParseConfigNumber("4294967295", 0, 0xFFFFFFFF, "cle"), 0xFFFFFFFFU);
}

TEST(TextConvert, WritesNumbersShort) {
    EXPECT_EQ(NumberText(0), "0");
    EXPECT_EQ(NumberText(1048576), "1048576");
    EXPECT_TRUE(WideNumberText(18446744073709551615U) == TEXT("18446744073709551615"));
}

}  // namespace
