// Changes of the module list.
#include "form/module_edit.h"

#include <gtest/gtest.h>

TEST(ModuleEdit, UsesTheFileNameAsArgumentsOfANewModuleAndMovesOnlyWithinTheList) {
    VmConfig config;
    for (const WCHAR* path : {TEXT("C:\\m\\a.bin"), TEXT("C:\\m/b.tar.gz"), TEXT("c")})
        AppendModule(config, path);
    EXPECT_TRUE(config.modules[1].command == TEXT("b.tar.gz"));
    EXPECT_TRUE(config.modules[2].command == TEXT("c"));
    EXPECT_FALSE(MoveTarget(config, 2, 1) || MoveTarget(config, 0, -1) || MoveTarget(config, -1, 1));
}
