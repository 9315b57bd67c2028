// The list of modules as a value.
#include "form/module_edit.h"

#include <gtest/gtest.h>

namespace {

VmConfig ThreeModules() {
    VmConfig config;
    for (const WCHAR* path : {TEXT("C:\\m\\a.bin"), TEXT("C:\\m/b.tar.gz"), TEXT("c")})
        AppendModule(config, path);
    return config;
}

TEST(ModuleEdit, GivesANewModuleItsFileNameAsArguments) {
    const VmConfig config = ThreeModules();
    ASSERT_EQ(config.modules.size(), 3U);
    EXPECT_TRUE(config.modules[0].path == TEXT("C:\\m\\a.bin"));
    EXPECT_TRUE(config.modules[0].command == TEXT("a.bin"));
    EXPECT_TRUE(config.modules[1].command == TEXT("b.tar.gz"));
    EXPECT_TRUE(config.modules[2].command == TEXT("c"));
}

TEST(ModuleEdit, MovesOnlyWithinTheList) {
    const VmConfig config = ThreeModules();
    const struct {
        std::int32_t selected, delta, target;  // -1: stays
    } cases[] = {{-1, 1, -1}, {-1, -1, -1}, {0, -1, -1}, {0, 1, 1}, {1, -1, 0}, {2, 1, -1}, {2, -1, 1}};
    for (const auto& c : cases)
        EXPECT_EQ(MoveTarget(config, c.selected, c.delta).value_or(-1), c.target)
            << c.selected << " " << c.delta;
}

}  // namespace
