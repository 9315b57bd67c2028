// The constants of the layer against those of the platform's own headers.
#include <gtest/gtest.h>

#include "platform/win32.h"

// constants.inc is made from the layer's headers: the type, the name and the value of each constant there.
#define CONSTANT(type, name, value) \
    static_assert(static_cast<type>(name) == static_cast<type>(value), "the layer's " #name " is another");
#include "constants.inc"
#undef CONSTANT

TEST(Constants, OfTheLayerAreThoseOfThePlatform) {
    int count = 0;
#define CONSTANT(type, name, value) ++count;
#include "constants.inc"
#undef CONSTANT
    EXPECT_GT(count, 300) << "what has been compared above";
}
