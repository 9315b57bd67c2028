// Path operations on text alone.
#include "base/path_ops.h"

#include <gtest/gtest.h>

#include "cases.h"
#include "scratch.h"

namespace {

TEST(PathOps, KnowsWhichPathsAreAbsolute) {
    for (const auto& row :
         Rows(1, R"(C:\a c:/ a:\ z:\ \\server //server/a \\?\C:\a \\.\x \??\C:\a \\? \\?\\x \\.x)"))
        EXPECT_TRUE(IsAbsolutePath(Wide(row[0]))) << row[0];
    for (const auto& row :
         Rows(1, R"(- a \ \a \\ \\\a C: C:a \?? \??\\a \?x\a \x?\a é:\a 1:\a [:\a @:\a ab:\c ?\C:\a)"))
        EXPECT_FALSE(IsAbsolutePath(Wide(row[0]))) << row[0];
}

TEST(PathOps, FindsTheParent) {
    const auto rows = Rows(2, R"(
        C:\a\b.config C:\a          C:\b.config C:\         C:\ C:\         C:\\\a C:\\\    C:\a\\b C:\a
        b.config -      a\ a        a\b\/ a\b               C:a/b C:a       C:a C:          C: C:
        \a \            - -         \\server\a \\server\    \\server \\server               \\?\C:\a \\?\C:
    )");
    for (const auto& row : rows)
        EXPECT_EQ(Narrow(ParentPath(Wide(row[0]))), row[1]) << row[0];
}

TEST(PathOps, JoinsTwoPaths) {
    const auto rows = Rows(3, R"(
        C:\vm a C:\vm\a         C:\ a C:\a          C:/vm/ a/b C:/vm/a/b    C: a C:a            - a a
        C:\vm D:\a D:\a         C:\vm \\s\a \\s\a   C:\vm D:a D:a           C:\vm c:a c:a       a - a\
        C:\vm C:a C:\vm\a       C:\vm C: C:\vm\     C:\vm \a C:\a           C:\vm /a C:/a       b \a \a
        \\server\s \a \\server\a                    \\server a \\server\a
    )");
    for (const auto& row : rows)
        EXPECT_EQ(Narrow(JoinPath(Wide(row[0]), Wide(row[1]))), row[2]) << row[0] << " and " << row[1];
}

TEST(PathOps, BringsAPathIntoItsNormalForm) {
    const auto rows = Rows(2, R"(
        - -             . .             .\ .                a\.. .          a\..\ .         a\..\.. ..
        ..\a ..\a       ..\..\ ..\..    ..\a\..\ ..         a\b\..\..\..\c\ ..\c\           a\.\b\ a\b\
        a\b\.. a\       a\. a\          a\.\..\b b          A//b\/C A\b\C   a\...\..b\.c a\...\..b\.c
        \..\.\.. \      \\\a \a         C:/vm/../a.elf C:\a.elf             C:\..\vm\..\.. C:\
        C:a\.. C:       C:..\a C:..\a   //server/s//x/.. \\server\s\        \\server\..\x \\server\x
        \\?/C:\a\.. \\?\C:\
    )");
    for (const auto& row : rows)
        EXPECT_EQ(Narrow(NormalPath(Wide(row[0]))), row[1]) << row[0];
}

TEST(PathOps, AnchorsWhatIsRelative) {
    const auto rows = Rows(2, R"(
        kernel.elf C:\vm\kernel.elf     ..\img\d.img C:\img\d.img       .\m/x.bin C:\vm\m\x.bin
        \boot\k.elf C:\boot\k.elf       ..\..\..\k.elf C:\k.elf         C:k.elf C:\vm\k.elf
        D:k.elf D:k.elf                 D:\x\k.elf D:\x\k.elf           C:/vm/../k.elf C:/vm/../k.elf
        \\s\share\..\k \\s\share\..\k   \\?\C:\k.elf \\?\C:\k.elf       - -
    )");
    for (const auto& row : rows) {
        WideText field = Wide(row[0]);
        AnchorPath(TEXT("C:\\vm"), field);
        EXPECT_EQ(Narrow(field), row[1]) << row[0];
    }
}

}  // namespace
