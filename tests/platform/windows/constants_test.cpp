// The constants of the layer, compared with the platform's headers.
#include <gtest/gtest.h>

#include "platform/win32.h"

// constants.inc lists the type, name and value of each constant in the layer's headers.
#define CONSTANT(type, name, value)                                    \
    static_assert(static_cast<type>(name) == static_cast<type>(value), \
                  "the value of " #name " differs in the layer");
#include "constants.inc"
#undef CONSTANT

TEST(Constants, OfTheLayerHaveTheValuesOfThePlatform) {
    int count = 0;
#define CONSTANT(type, name, value) ++count;
#include "constants.inc"
#undef CONSTANT
    EXPECT_GT(count, 300) << "too few constants were compared";
}
