// A few examples of the path operations. Their fuzz target tests every rule.
#include "base/path_ops.h"

#include <gtest/gtest.h>

#include "cases.h"
#include "scratch.h"

TEST(PathOps, JoinsAndBringsIntoNormalForm) {
    const auto rows = Rows(4, R"(
        C:\vm ..\img\d.img C:\vm\..\img\d.img C:\img\d.img      C:/vm/ \boot/k.elf C:\boot/k.elf C:\boot\k.elf
        C: a\.. C:a\.. C:       C:\vm D:k.elf D:k.elf D:k.elf       C:\vm C:..\..\.\k\ C:\vm\..\..\.\k\ C:\k\
        - a\..\ a\..\ .         b ..\..\..\ b\..\..\..\ ..\..       C:\vm //s/x/../k //s/x/../k \\s\k
    )");
    for (const auto& row : rows) {
        EXPECT_EQ(Narrow(JoinPath(Wide(row[0]), Wide(row[1]))), row[2]) << row[0] << " and " << row[1];
        EXPECT_EQ(Narrow(NormalPath(Wide(row[2]))), row[3]) << row[2];
    }
    EXPECT_EQ(Narrow(ParentPath(TEXT("C:\\b.config"))), "C:\\");
}
