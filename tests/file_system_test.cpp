// The texts of file-system errors, and the types of files.
#include "base/file_system.h"
#include "base/windows_error.h"

#include <gtest/gtest.h>

#include "cases.h"
#include "scratch.h"

TEST(FileSystem, TellsFilesFromAllElse) {
    const ScratchFolder folder;
    WriteBytes(folder.Of(TEXT("file")), "");
    const bool has_links = MakeLink(folder.Of(TEXT("link")), folder.Of(TEXT("file"))) &&
                           MakeLink(folder.Of(TEXT("broken")), folder.Of(TEXT("none")));
    const std::pair<WideText, FileType> cases[] = {
        {folder.Of(TEXT("file")), FileType::Regular},
        {folder.Of(has_links ? TEXT("link") : TEXT("file")), FileType::Regular},
        {folder.path, FileType::Other},
        {TEXT("NUL"), FileType::Other},
        {folder.Of(TEXT("broken")), FileType::Missing},
        {folder.Of(TEXT("none\\a")), FileType::Missing},
        {folder.Of(TEXT("file\\a")), FileType::Missing},
        {folder.Of(TEXT("a|b")), FileType::Missing}};
    for (const auto& [path, type] : cases)
        EXPECT_EQ(QueryFileType(path, "status"), type) << Narrow(path);
}

TEST(FileSystem, MakesPathsFullHoweverLong) {
    ASSERT_NE(SetCurrentDirectoryW(TEXT("C:\\")), FALSE);
    for (const std::size_t length : {1U, 256U, 257U, 258U, 5000U})
        EXPECT_EQ(Narrow(AbsolutePath(WideText(length, WCHAR{'a'}))), "C:\\" + std::string(length, 'a'));
    const std::string message = MessageOf([] { AbsolutePath({}); });
    EXPECT_TRUE(message.starts_with("absolute: ")) << message;
    EXPECT_TRUE(message.ends_with(": \"\"")) << message;
    EXPECT_EQ(message.find_first_of("\r\n"), std::string::npos) << "the system's words end with a line";
    const WCHAR unpaired[] = {TEXT('a'), 0xD800, 0};
    const std::string shown =
        MessageOf([&] { ThrowFileSystemError("status", ERROR_ACCESS_DENIED, unpaired); });
    EXPECT_TRUE(shown.starts_with("status: ") && shown.ends_with(": \"a\xEF\xBF\xBD\"")) << shown;
    EXPECT_FALSE(MessageOf([] { ThrowFileSystemError("x", ERROR_ACCESS_DENIED); }).ends_with("\""));
}

TEST(WindowsError, HasWordsOfItsOwnWhereTheSystemHasNone) {
    EXPECT_EQ(Narrow(WindowsErrorText(0x2000ABCD)), "Erreur Windows 536914893");
}
