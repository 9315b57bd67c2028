// The log as text: encodings and line ends.
#include "launch/log_text.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(LogText, GivesEveryLineFeedItsCarriageReturn) {
    const struct {
        WideView from, to;
    } cases[] = {
        {TEXT(""), TEXT("")},
        {TEXT("\n"), TEXT("\r\n")},
        {TEXT("a\nb"), TEXT("a\r\nb")},
        {TEXT("a\r\nb\r\n"), TEXT("a\r\nb\r\n")},
        {TEXT("a\rb"), TEXT("a\rb")},
        {TEXT("a\r\r\n"), TEXT("a\r\r\n")},
        {TEXT("\n\n\r\n\n"), TEXT("\r\n\r\n\r\n\r\n")},
    };
    for (const auto& c : cases) {
        WideText text(c.from);
        NormalizeLineEnds(text);
        EXPECT_TRUE(text == c.to) << c.from.size() << " characters became " << text.size();
    }
}

TEST(LogText, ReadsUtf8AndElseTheWholeInTheAnsiCodePage) {
    const struct {
        std::string_view bytes;
        WideView text;
    } cases[] = {
        {"", TEXT("")},
        {"d\xC3\xA9marr\xC3\xA9\n", TEXT("démarré\r\n")},
        {{"a\0\n", 3}, {TEXT("a\0\r\n"), 4}},
        // One bad byte sends the good ones through the code page too.
        {"d\xC3\xA9\xE9", TEXT("dÃ©é")},
        // A tail that starts inside a character.
        {"\xA9 prêt", TEXT("© prÃªt")},
    };
    for (const auto& c : cases)
        EXPECT_TRUE(LogText(c.bytes) == c.text) << c.bytes;
}

TEST(LogText, DoublesAtMostWhatItReads) {
    const WideText text = LogText(std::string(0x100000, '\n'));
    EXPECT_EQ(text.size(), 0x200000U);
    EXPECT_TRUE(text.substr(0x1FFFFC) == TEXT("\r\n\r\n"));
}

}  // namespace
