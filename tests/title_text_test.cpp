// The configuration line of a very long path.
#include "form/title_text.h"

#include <gtest/gtest.h>

TEST(TitleText, HasRoomForTheLongestPathAndTheMark) {
    const WideText path(32767, WCHAR{'a'});
    const ConfigLine line = ConfigLineText(path, true);
    EXPECT_TRUE(WideView(line.c_str()) == path + TEXT("  (modifiée)"));
}
