// The file operations of the platform, in the cases that matter to the program.
#include <gtest/gtest.h>

#include "base/owned_handle.h"
#include "scratch.h"

namespace {

constexpr DWORD READ = GENERIC_READ;
constexpr DWORD WRITE = GENERIC_WRITE;
constexpr DWORD QUERY = FILE_READ_ATTRIBUTES;
constexpr DWORD FOLDERS = FILE_FLAG_BACKUP_SEMANTICS;
constexpr DWORD RW = FILE_SHARE_READ | FILE_SHARE_WRITE;
constexpr DWORD REPLACE = MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH;
constexpr DWORD ALL = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

OwnedHandle Open(const WideText& path, DWORD access, DWORD share_mode, DWORD disposition, DWORD flags) {
    return OwnedHandle(CreateFileW(path.c_str(), access, share_mode, nullptr, disposition, flags, nullptr));
}

// The error of the call; 0 for success.
DWORD ErrorOf(BOOL result) {
    return result != FALSE ? 0 : GetLastError();
}

}  // namespace

TEST(PlatformFile, EachFailedOpenReportsItsError) {
    const ScratchFolder scratch;
    WriteBytes(scratch.Of(TEXT("file")), "x");
    MakeFolder(scratch.Of(TEXT("folder")));
    const struct {
        WideText name;
        DWORD access;
        DWORD disposition;
        DWORD flags;
        DWORD error;
    } cases[] = {
        {TEXT("file"), READ, OPEN_EXISTING, 0, 0},
        {TEXT("file"), WRITE, CREATE_NEW, 0, ERROR_FILE_EXISTS},
        {TEXT("missing"), READ, OPEN_EXISTING, 0, ERROR_FILE_NOT_FOUND},
        {TEXT("missing\\a"), READ, OPEN_EXISTING, 0, ERROR_PATH_NOT_FOUND},
        {TEXT("missing\\a"), WRITE, CREATE_NEW, 0, ERROR_PATH_NOT_FOUND},
        {TEXT("file\\a"), QUERY, OPEN_EXISTING, FOLDERS, ERROR_PATH_NOT_FOUND},
        {TEXT("folder"), READ, OPEN_EXISTING, 0, ERROR_ACCESS_DENIED},
        {TEXT("folder"), QUERY, OPEN_EXISTING, 0, ERROR_ACCESS_DENIED},
        {TEXT("folder"), QUERY, OPEN_EXISTING, FOLDERS, 0},
        {TEXT("folder"), WRITE, CREATE_NEW, 0, ERROR_FILE_EXISTS},
        {TEXT("folder"), WRITE, CREATE_ALWAYS, 0, ERROR_ACCESS_DENIED},
        {TEXT("folder\\"), QUERY, OPEN_EXISTING, FOLDERS, 0},
        {TEXT("file\\"), QUERY, OPEN_EXISTING, FOLDERS, ERROR_INVALID_NAME},
        {TEXT("missing\\"), WRITE, CREATE_NEW, 0, ERROR_INVALID_NAME},
        {TEXT("a*"), READ, OPEN_EXISTING, 0, ERROR_INVALID_NAME},
        {TEXT("missing\\a?"), WRITE, CREATE_NEW, 0, ERROR_INVALID_NAME},
        {TEXT("a<"), QUERY, OPEN_EXISTING, FOLDERS, ERROR_INVALID_NAME},
        {TEXT("a>|\""), READ, OPEN_EXISTING, 0, ERROR_INVALID_NAME},
        {TEXT("a\tb"), READ, OPEN_EXISTING, 0, ERROR_INVALID_NAME},
        {TEXT("file. "), READ, OPEN_EXISTING, 0, 0},
        {TEXT("NUL"), READ, OPEN_EXISTING, 0, 0},
    };
    for (const auto& c : cases) {
        const OwnedHandle file = Open(scratch.Of(c.name), c.access, ALL, c.disposition, c.flags);
        EXPECT_EQ(ErrorOf(file ? TRUE : FALSE), c.error) << Narrow(c.name) << " " << c.disposition;
    }
    EXPECT_EQ(ReadBytes(scratch.Of(TEXT("file"))), "x");
    EXPECT_EQ(ListFolder(scratch.path).size(), 2U);
}

TEST(PlatformFile, AMoveReplacesOnlyAClosedFile) {
    const ScratchFolder scratch;
    const struct {
        WideText from;
        WideText to;
        DWORD flags;
        DWORD error;
    } cases[] = {
        {TEXT("new"), TEXT("old"), REPLACE, 0},
        {TEXT("new"), TEXT("fresh"), REPLACE, 0},
        {TEXT("new"), TEXT("old"), MOVEFILE_WRITE_THROUGH, ERROR_ALREADY_EXISTS},
        {TEXT("missing"), TEXT("old"), REPLACE, ERROR_FILE_NOT_FOUND},
        {TEXT("new"), TEXT("missing\\a"), REPLACE, ERROR_PATH_NOT_FOUND},
        {TEXT("new"), TEXT("folder"), REPLACE, ERROR_ACCESS_DENIED},
        {TEXT("new"), TEXT("held"), REPLACE, ERROR_ACCESS_DENIED},
        {TEXT("held"), TEXT("old"), REPLACE, ERROR_SHARING_VIOLATION},
        {TEXT("new"), TEXT("a*"), REPLACE, ERROR_INVALID_NAME},
    };
    MakeFolder(scratch.Of(TEXT("folder")));
    WriteBytes(scratch.Of(TEXT("held")), "held");
    const OwnedHandle holder = Open(scratch.Of(TEXT("held")), READ, RW, OPEN_EXISTING, 0);
    for (const auto& c : cases) {
        SCOPED_TRACE(Narrow(c.from) + " to " + Narrow(c.to));
        WriteBytes(scratch.Of(TEXT("new")), "new");
        WriteBytes(scratch.Of(TEXT("old")), "old");
        EXPECT_EQ(ErrorOf(MoveFileExW(scratch.Of(c.from).c_str(), scratch.Of(c.to).c_str(), c.flags)),
                  c.error);
        EXPECT_EQ(Exists(scratch.Of(TEXT("new"))), c.error != 0);
        EXPECT_EQ(ReadBytes(scratch.Of(c.error == 0 ? c.to : TEXT("old"))), c.error == 0 ? "new" : "old");
    }
    EXPECT_EQ(ErrorOf(DeleteFileW(scratch.Of(TEXT("held")).c_str())), ERROR_SHARING_VIOLATION);
    EXPECT_EQ(ErrorOf(DeleteFileW(scratch.Of(TEXT("folder")).c_str())), ERROR_ACCESS_DENIED);
    EXPECT_EQ(ErrorOf(DeleteFileW(scratch.Of(TEXT("missing")).c_str())), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(ErrorOf(DeleteFileW(scratch.Of(TEXT("old")).c_str())), 0U);
}
