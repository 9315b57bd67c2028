// What the program relies on in the platform's processes.
#include <gtest/gtest.h>

#include "platform/win32.h"
#include "scratch.h"

namespace {

WideText ChildFile() {
    WideText path(1000, TEXT('\0'));
    path.resize(GetModuleFileNameW(nullptr, path.data(), 1000));
    return path.substr(0, path.rfind(TEXT('\\')) + 1) + TEXT("child.exe");
}

// A child with its output in the file "out" of the folder, started as the program starts its own.
struct Child {
    PROCESS_INFORMATION process = {};
    DWORD error = 0;

    Child(const ScratchFolder& scratch, const WideText& program, const WideText& arguments,
          const WideText& folder) {
        SECURITY_ATTRIBUTES inherit = {sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
        HANDLE handles[] = {CreateFileW(scratch.Of(TEXT("out")).c_str(), GENERIC_WRITE, 3, &inherit,
                                        CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr),
                            CreateFileW(TEXT("NUL"), GENERIC_READ, 3, &inherit, OPEN_EXISTING, 0, nullptr)};
        SIZE_T size = 0;
        EXPECT_FALSE(InitializeProcThreadAttributeList(nullptr, 1, 0, &size));
        EXPECT_EQ(GetLastError(), ERROR_INSUFFICIENT_BUFFER);
        std::string buffer(size, '\0');
        STARTUPINFOEXW startup = {};
        startup.StartupInfo.cb = sizeof(startup);
        startup.StartupInfo.dwFlags = STARTF_USESTDHANDLES;
        startup.StartupInfo.hStdInput = handles[1];
        startup.StartupInfo.hStdOutput = handles[0];
        startup.StartupInfo.hStdError = handles[0];
        startup.lpAttributeList = reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(buffer.data());
        EXPECT_TRUE(InitializeProcThreadAttributeList(startup.lpAttributeList, 1, 0, &size));
        EXPECT_TRUE(UpdateProcThreadAttribute(startup.lpAttributeList, 0, PROC_THREAD_ATTRIBUTE_HANDLE_LIST,
                                              handles, sizeof(handles), nullptr, nullptr));
        WideText line = TEXT("\"") + program + TEXT("\" ") + arguments;
        if (CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, TRUE,
                           CREATE_NO_WINDOW | EXTENDED_STARTUPINFO_PRESENT, nullptr, folder.c_str(),
                           &startup.StartupInfo, &process) == FALSE)
            error = GetLastError();
        DeleteProcThreadAttributeList(startup.lpAttributeList);
        CloseHandle(handles[1]);
        CloseHandle(handles[0]);
    }
    ~Child() {
        if (error == 0) {
            CloseHandle(process.hThread);
            CloseHandle(process.hProcess);
        }
    }
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;
};

DWORD ExitCode(const Child& child) {
    DWORD code = 0;
    EXPECT_EQ(WaitForSingleObject(child.process.hProcess, INFINITE), WAIT_OBJECT_0);
    EXPECT_TRUE(GetExitCodeProcess(child.process.hProcess, &code));
    return code;
}

}  // namespace

TEST(PlatformProcess, ArgumentsFolderAndStreamsReachTheChild) {
    const ScratchFolder scratch;
    const WideText line = TEXT(
        "report plain \"with blank\" \"\" \"\u00E9\U0001F600\" \"a\\\\\" \"a\\\"b\" a\\\\b\\c \"x\"y\tz");
    const Child child(scratch, ChildFile(), line, scratch.path);
    ASSERT_EQ(child.error, 0U);
    EXPECT_EQ(ExitCode(child), 0U);
    EXPECT_EQ(ReadBytes(scratch.Of(TEXT("out"))),
              "plain\nwith blank\n\n\u00E9\U0001F600\na\\\na\"b\na\\\\b\\c\nxy\nz\n" + Narrow(scratch.path) +
                  "\nno input\nerror stream\n");
}

TEST(PlatformProcess, ExitCodesComeBackWhole) {
    const ScratchFolder scratch;
    const struct {
        const char* text;
        DWORD code;
    } cases[] = {{"0", 0}, {"1", 1}, {"255", 255}, {"3221225477", 0xC0000005}, {"3221225620", 0xC0000094}};
    for (const auto& c : cases)
        EXPECT_EQ(ExitCode(Child(scratch, ChildFile(), TEXT("exit ") + Wide(c.text), scratch.path)), c.code);
}

TEST(PlatformProcess, AStartThatCannotBeFailsAtOnce) {
    const ScratchFolder scratch;
    WriteBytes(scratch.Of(TEXT("text.exe")), "no program");
    const struct {
        WideText program;
        WideText folder;
        DWORD error;
    } cases[] = {
        {scratch.Of(TEXT("missing.exe")), scratch.path, ERROR_FILE_NOT_FOUND},
        {scratch.Of(TEXT("text.exe")), scratch.path, ERROR_BAD_EXE_FORMAT},
        {ChildFile(), scratch.Of(TEXT("missing")), ERROR_DIRECTORY},
        {ChildFile(), scratch.Of(TEXT("text.exe")), ERROR_DIRECTORY},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(Child(scratch, c.program, TEXT("report"), c.folder).error, c.error)
            << Narrow(c.program) << " in " << Narrow(c.folder);
    }
    EXPECT_EQ(ReadBytes(scratch.Of(TEXT("out"))), "");
}
