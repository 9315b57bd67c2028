// A child for the tests of processes: child.exe report [ARG ...] tells what it was started with, child.exe
// exit CODE ends with the code, child.exe sleep says so and goes on for a minute.
#include <string>
#include <string_view>

#include "platform/win32.h"

namespace {

void Print(HANDLE to, std::string_view text) {
    DWORD written = 0;
    WriteFile(to, text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
}

void PrintLine(WideView text) {
    std::string line(text.size() * 3 + 1, '\n');
    const int size = text.empty()
                         ? 0
                         : WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()),
                                               line.data(), static_cast<int>(line.size()), nullptr, nullptr);
    line.resize(static_cast<std::size_t>(size));
    Print(GetStdHandle(STD_OUTPUT_HANDLE), line + "\n");
}

void Report(int argc, WCHAR** argv) {
    for (int at = 2; at < argc; at++)
        PrintLine(argv[at]);
    WideText folder(1000, TEXT('\0'));
    folder.resize(GetCurrentDirectoryW(1000, folder.data()));
    PrintLine(folder);
    char byte = 0;
    DWORD read = 1;
    const BOOL has_read = ReadFile(GetStdHandle(STD_INPUT_HANDLE), &byte, 1, &read, nullptr);
    Print(GetStdHandle(STD_OUTPUT_HANDLE), has_read != FALSE && read == 0 ? "no input\n" : "bad input\n");
    Print(GetStdHandle(STD_ERROR_HANDLE), "error stream\n");
}

}  // namespace

extern "C" int wmain(int argc, WCHAR** argv) {
    const WideView task = argc > 1 ? WideView(argv[1]) : WideView();
    if (task == TEXT("exit") && argc > 2)
        ExitProcess(static_cast<UINT>(std::stoul(std::string(argv[2], argv[2] + WideView(argv[2]).size()))));
    if (task == TEXT("sleep")) {
        Print(GetStdHandle(STD_OUTPUT_HANDLE), "asleep\n");
        Sleep(60000);
    }
    if (task == TEXT("report"))
        Report(argc, argv);
    return 0;
}
