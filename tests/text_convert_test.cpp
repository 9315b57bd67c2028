// The messages and limits of the conversions. Their results for any text are tested by their fuzz target.
#include "base/text_convert.h"

#include <gtest/gtest.h>

#include "cases.h"

TEST(TextConvert, RefusesWhatIsIllFormedOrTooLong) {
    const std::string narrow = "d\xC3\xA9\xE9";
    const WideText wide = {'a', 0xD83D};
    EXPECT_EQ(MessageOf([&] { WideFromUtf8(narrow); }), "Le fichier doit être encodé en UTF-8.");
    EXPECT_EQ(MessageOf([&] { Utf8FromWide(wide); }), "Texte Unicode invalide.");
    // The length is checked before the text is read.
    EXPECT_EQ(MessageOf([&] { WideFromUtf8({narrow.data(), 0x80000000}); }), "Texte trop long.");
    EXPECT_EQ(MessageOf([&] { Utf8FromWide({wide.data(), 0x80000000}); }), "Texte trop long.");
}
