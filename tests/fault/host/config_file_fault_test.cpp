// A save or a load in which one call fails.
#include <gtest/gtest.h>

#include <algorithm>

#include "base/file_system.h"
#include "base/text_convert.h"
#include "cases.h"
#include "config/config_file.h"
#include "config/config_text.h"
#include "platform/host/hooks/test_hooks.h"
#include "scratch.h"

namespace {

constexpr const char* CANNOT_READ = "Lecture de la configuration impossible.";
constexpr const char* CANNOT_CREATE = "Impossible de créer le fichier de configuration.";
constexpr const char* CANNOT_SAVE = "Enregistrement impossible ; l'ancienne configuration est conservée.";

TEST(ConfigFileFaults, OfAnIncompleteWriteLeaveTheOldFile) {
    const ScratchFolder folder;
    const WideText path = folder.Of(TEXT("a.config"));
    WriteBytes(path, "old");
    host::HalveTransfer("WriteFile");
    EXPECT_EQ(MessageOf([&] { WriteConfigFile(path, {}); }), CANNOT_SAVE) << "a short write is none";
    EXPECT_EQ(ReadBytes(path), "old");
    EXPECT_EQ(ListFolder(folder.path).size(), 1U);
}

TEST(ConfigFileFaults, MakeAReadFailWhole) {
    const ScratchFolder folder;
    const WideText path = folder.Of(TEXT("a.config"));
    WriteBytes(path, "version=1\nzoom=3");
    host::HalveTransfer("ReadFile");
    EXPECT_EQ(ReadConfigFile(path).zoom, 3U) << "a read that comes up short is followed by another";
    const WideText one_byte = folder.Of(TEXT("b.config"));
    WriteBytes(one_byte, "x");
    host::HalveTransfer("ReadFile");
    EXPECT_EQ(MessageOf([&] { ReadConfigFile(one_byte); }), CANNOT_READ) << "a file that has become shorter";
}

TEST(FileSystemFaults, TellAbsenceFromEveryOtherFailure) {
    const ScratchFolder folder;
    WriteBytes(folder.Of(TEXT("ab")), "ab");
    // Not found, no path, no server, a lost share, no name, no path at all, no folder.
    for (const DWORD absent : {2U, 3U, 53U, 64U, 123U, 161U, 267U}) {
        host::FailCall("CreateFileW", 1, absent);
        EXPECT_EQ(QueryFileType(folder.Of(TEXT("ab")), "status"), FileType::Missing) << absent;
    }
    for (const DWORD other : {5U, 32U, 1450U}) {
        host::FailCall("CreateFileW", 1, other);
        EXPECT_NE(MessageOf([&] { QueryFileType(folder.Of(TEXT("ab")), "status"); }), "") << other;
    }
    const OwnedHandle file = OpenForReading(folder.Of(TEXT("ab")));
    char bytes[2]{};
    host::HalveTransfer("ReadFile");
    EXPECT_EQ(ReadAt(file.Get(), 0, bytes, 2), 2U) << "one byte, then the other";
}

TEST(ConfigFileFaults, PassOverTemporaryNamesThatAreTaken) {
    const ScratchFolder folder;
    const WideText path = folder.Of(TEXT("a.config"));
    host::UseTestClock();
    const WideText stem = path + TEXT(".tmp-") + WideNumberText(GetCurrentProcessId()) + TEXT("-") +
                          WideNumberText(GetTickCount64()) + TEXT("-");
    WriteBytes(stem + TEXT("0"), "taken");
    // A temporary file that can be neither moved nor deleted shows its name.
    host::FailCall("MoveFileExW", 1, ERROR_ACCESS_DENIED);
    host::FailCall("DeleteFileW", 1, ERROR_ACCESS_DENIED);
    EXPECT_EQ(MessageOf([&] { WriteConfigFile(path, {}); }), CANNOT_SAVE);
    EXPECT_EQ(ReadBytes(stem + TEXT("0")), "taken");
    EXPECT_EQ(ReadBytes(stem + TEXT("1")), ComposeConfigText({}));
    EXPECT_EQ(ListFolder(folder.path).size(), 2U);

    for (unsigned number = 0; number < 99; ++number)
        WriteBytes(stem + WideNumberText(number), "taken");
    WriteConfigFile(path, {});
    WriteBytes(stem + TEXT("99"), "taken");
    host::StartTrace();
    EXPECT_EQ(MessageOf([&] { WriteConfigFile(path, {}); }), CANNOT_CREATE);
    const std::vector<std::string> calls = host::Trace();
    EXPECT_EQ(std::count(calls.begin(), calls.end(), "CreateFileW"), 100);
    EXPECT_EQ(ReadBytes(path), ComposeConfigText({}));

    host::UseTestClock(1);
    host::ClearFaults();
    const WideText in_no_folder = folder.Of(TEXT("none\\a.config"));
    host::StartTrace();
    EXPECT_EQ(MessageOf([&] { WriteConfigFile(in_no_folder, {}); }), CANNOT_CREATE);
    EXPECT_EQ(host::Trace(), (std::vector<std::string>{"GetFullPathNameW", "CreateFileW"})) << "one attempt";
    for (unsigned nth = 1; nth <= 4; ++nth)
        host::FailCall("CreateFileW", nth, ERROR_FILE_EXISTS);
    const std::uint64_t before = GetTickCount64();
    WriteConfigFile(path, {});
    EXPECT_EQ(GetTickCount64() - before, 6U) << "each of five attempts looks at the clock";
    EXPECT_EQ(host::ClearFaults(), 4U);
}

}  // namespace
