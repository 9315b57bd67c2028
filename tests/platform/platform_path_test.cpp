// Full paths by the platform.
#include <gtest/gtest.h>

#include "scratch.h"

namespace {

std::string FullPath(const WideText& path) {
    WideText full(32768, TEXT('\0'));
    full.resize(GetFullPathNameW(path.c_str(), 32768, full.data(), nullptr));
    return Narrow(full);
}

}  // namespace

TEST(PlatformPath, FullPathsFollowTheWindowsRules) {
    const struct {
        WideText path;
        const char* full;
    } cases[] = {
        {TEXT("C:\\a"), "C:\\a"},
        {TEXT("C:/a//b/./../c"), "C:\\a\\c"},
        {TEXT("C:\\"), "C:\\"},
        {TEXT("C:\\.."), "C:\\"},
        {TEXT("C:\\a\\.."), "C:\\"},
        {TEXT("C:\\a\\b\\..\\"), "C:\\a\\"},
        {TEXT("C:\\a\\."), "C:\\a"},
        {TEXT("C:\\a\\..\\..\\..\\b"), "C:\\b"},
        {TEXT("C:\\a. . "), "C:\\a"},
        {TEXT("C:\\a \\b"), "C:\\a \\b"},
        {TEXT("C:\\a.\\b"), "C:\\a\\b"},
        {TEXT("C:\\a\\.. "), "C:\\a\\"},
        {TEXT("C:\\ a"), "C:\\ a"},
        {TEXT("C:\\a*?<>|\""), "C:\\a*?<>|\""},
        {TEXT("D:a"), "D:\\a"},
        {TEXT("d:a\\..\\.."), "d:\\"},
        {TEXT("D:"), "D:\\"},
        {TEXT("\\a"), "C:\\a"},
        {TEXT("\\\\server\\share\\a\\..\\..\\b"), "\\\\server\\share\\b"},
        {TEXT("//server/share/x"), "\\\\server\\share\\x"},
        {TEXT("\\\\server"), "\\\\server"},
        {TEXT("\\\\?\\C:\\a\\..\\b"), "\\\\?\\C:\\b"},
        {TEXT("\\\\.\\C:\\a\\b."), "\\\\.\\C:\\a\\b"},
        {TEXT("NUL"), "\\\\.\\NUL"},
        {TEXT("C:\\x\\nul.txt"), "\\\\.\\nul"},
        {TEXT("a\\con :b"), "\\\\.\\con"},
        {TEXT("C:COM1"), "\\\\.\\COM1"},
        {TEXT("C:\\COM0"), "C:\\COM0"},
        {TEXT("C:\\NUL\\a"), "C:\\NUL\\a"},
        {TEXT(""), ""},
        {TEXT(" "), ""},
    };
    ASSERT_TRUE(SetCurrentDirectoryW(TEXT("C:\\")));
    for (const auto& c : cases)
        EXPECT_EQ(FullPath(c.path), c.full) << Narrow(c.path);
}
