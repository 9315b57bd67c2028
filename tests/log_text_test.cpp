// The log as text, by a few literals; its fuzz target knows what any bytes give.
#include "launch/log_text.h"

#include <gtest/gtest.h>

namespace {

TEST(LogText, DecodesTheWholeOneWayAndEndsLinesWithBoth) {
    EXPECT_TRUE(LogText("\nd\xC3\xA9marr\xC3\xA9\r\r\n\n") == TEXT("\r\ndémarré\r\r\n\r\n"));
    // One bad byte sends the good ones through the code page too.
    EXPECT_TRUE(LogText("d\xC3\xA9\xE9") == TEXT("dÃ©é"));
}

}  // namespace
