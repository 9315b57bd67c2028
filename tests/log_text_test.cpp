// The text of a log, by examples; the fuzz target tests all other bytes.
#include "launch/log_text.h"

#include <gtest/gtest.h>

TEST(LogText, DecodesTheWholeLogInOneEncodingAndEndsLinesWithCrLf) {
    EXPECT_TRUE(LogText("\nd\xC3\xA9marr\xC3\xA9\r\r\n\n") == TEXT("\r\ndémarré\r\r\n\r\n"));
    // One byte that is not UTF-8: all bytes are decoded by the code page.
    EXPECT_TRUE(LogText("d\xC3\xA9\xE9") == TEXT("dÃ©é"));
}
