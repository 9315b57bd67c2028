// Runs every test of the programs *_tests.exe in its own folder, each in a process of its own, and writes
// rapport.txt. The report is in French, like the window. Writes only into its own folder.
#include <windows.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

constexpr DWORD TEST_LIMIT_MS = 300000;

struct Result {
    bool ended;
    DWORD exit_code;
    std::string output;
};

struct Totals {
    unsigned right = 0;
    unsigned skipped = 0;
    unsigned different = 0;
};

std::string Utf8(const std::wstring& text) {
    const std::u8string utf8 = fs::path(text).u8string();
    return {utf8.begin(), utf8.end()};
}

fs::path OwnFolder() {
    std::array<WCHAR, 32768> path{};
    GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    return fs::path(path.data()).parent_path();
}

// Runs the program and waits until it ends, but not longer than the limit. Then ends the processes that it
// has started.
Result Run(const fs::path& program, const std::wstring& arguments, const fs::path& output) {
    SECURITY_ATTRIBUTES inheritable{sizeof inheritable, nullptr, TRUE};
    const HANDLE file = CreateFileW(output.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_DELETE,
                                    &inheritable, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdOutput = file;
    startup.hStdError = file;
    const HANDLE job = CreateJobObjectW(nullptr, nullptr);
    std::wstring line = L'"' + program.native() + L"\" " + arguments;
    PROCESS_INFORMATION process{};
    Result result{false, 0, {}};
    if (CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, TRUE, CREATE_SUSPENDED, nullptr,
                       nullptr, &startup, &process) != FALSE) {
        AssignProcessToJobObject(job, process.hProcess);
        ResumeThread(process.hThread);
        result.ended = WaitForSingleObject(process.hProcess, TEST_LIMIT_MS) == WAIT_OBJECT_0;
        GetExitCodeProcess(process.hProcess, &result.exit_code);
        TerminateJobObject(job, 1);
        CloseHandle(process.hThread);
        CloseHandle(process.hProcess);
    }
    CloseHandle(job);
    CloseHandle(file);
    std::ifstream text(output, std::ios::binary);
    result.output.assign(std::istreambuf_iterator<char>(text), {});
    std::erase(result.output, '\r');
    return result;
}

// The tests of a program, in the form SUITE.NAME.
std::vector<std::string> ListTests(const fs::path& program, const fs::path& output) {
    std::istringstream lines(Run(program, L"--gtest_list_tests", output).output);
    std::vector<std::string> tests;
    std::string suite;
    for (std::string line; std::getline(lines, line);) {
        const std::string name = line.substr(0, line.find("  #"));
        if (name.starts_with("  "))
            tests.push_back(suite + name.substr(2));
        else if (name.ends_with('.'))
            suite = name;
    }
    return tests;
}

// The lines between the start and the end of the test.
std::string WhatWasSeen(const std::string& output) {
    const std::size_t start = output.find("[ RUN      ]");
    const std::size_t first = start == std::string::npos ? 0 : output.find('\n', start) + 1;
    std::istringstream lines(output.substr(first, output.find("[----------]", first) - first));
    std::string seen;
    for (std::string line; std::getline(lines, line);)
        if (!line.empty() && !line.starts_with("[  "))
            seen += "    " + line + "\n";
    return seen;
}

std::string RunTest(const fs::path& program, const std::string& test, const fs::path& output,
                    Totals& totals) {
    const Result result =
        Run(program, L"--gtest_color=no --gtest_filter=" + std::wstring(test.begin(), test.end()), output);
    if (result.ended && result.exit_code == 0 && result.output.find("[  SKIPPED ]") == std::string::npos) {
        ++totals.right;
        return {};
    }
    if (result.ended && result.exit_code == 0) {
        ++totals.skipped;
        return "Sauté : " + test + "\n" + WhatWasSeen(result.output);
    }
    ++totals.different;
    const std::string how = result.ended ? "code " + std::to_string(result.exit_code) : "sans fin";
    return "ÉCART : " + test + " (" + how + ")\n" + WhatWasSeen(result.output);
}

std::string RegistryText(HKEY key, const WCHAR* path, const WCHAR* name) {
    std::array<WCHAR, 256> text{};
    DWORD bytes = sizeof text - sizeof(WCHAR);
    return RegGetValueW(key, path, name, RRF_RT_REG_SZ, nullptr, text.data(), &bytes) == ERROR_SUCCESS
               ? Utf8(text.data())
               : "?";
}

std::string SystemText() {
    constexpr const WCHAR* VERSION = L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion";
    std::array<WCHAR, LOCALE_NAME_MAX_LENGTH> language{};
    LCIDToLocaleName(GetUserDefaultUILanguage(), language.data(), LOCALE_NAME_MAX_LENGTH, 0);
    DWORD dots_per_inch = 96, bytes = sizeof dots_per_inch;
    RegGetValueW(HKEY_CURRENT_USER, L"Control Panel\\Desktop\\WindowMetrics", L"AppliedDPI", RRF_RT_REG_DWORD,
                 nullptr, &dots_per_inch, &bytes);
    std::ostringstream text;
    text << "Système : " << RegistryText(HKEY_LOCAL_MACHINE, VERSION, L"ProductName") << ", version "
         << RegistryText(HKEY_LOCAL_MACHINE, VERSION, L"DisplayVersion") << ", build "
         << RegistryText(HKEY_LOCAL_MACHINE, VERSION, L"CurrentBuild");
    using WineVersion = const char*(CDECL*)();
    if (const FARPROC found = GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version"))
        text << " (Wine " << reinterpret_cast<WineVersion>(reinterpret_cast<void*>(found))() << ")";
    text << "\nLangue : " << Utf8(language.data()) << "\nÉchelle : " << 100 * dots_per_inch / 96
         << " %\nÉcran : " << GetSystemMetrics(SM_CXSCREEN) << " x " << GetSystemMetrics(SM_CYSCREEN)
         << "\nPages de codes : " << GetACP() << " (ANSI), " << GetOEMCP() << " (console)\n";
    return text.str();
}

}  // namespace

int wmain() {
    SetConsoleOutputCP(CP_UTF8);
    const fs::path folder = OwnFolder();
    const fs::path temporary = folder / L"temporaire";
    fs::create_directories(temporary);
    fs::current_path(folder);
    SetEnvironmentVariableW(L"TEMP", temporary.c_str());
    SetEnvironmentVariableW(L"TMP", temporary.c_str());
    std::vector<fs::path> programs;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder))
        if (entry.path().filename().native().ends_with(L"_tests.exe"))
            programs.push_back(entry.path());
    std::sort(programs.begin(), programs.end());

    Totals totals;
    std::string details;
    for (const fs::path& program : programs) {
        for (const std::string& test : ListTests(program, temporary / L"liste.txt")) {
            std::printf("%s\n", test.c_str());
            std::fflush(stdout);
            details += RunTest(program, test, temporary / L"sortie.txt", totals);
        }
    }
    std::ostringstream report;
    report << "\xEF\xBB\xBFVeldrane VM : rapport de vérification\n\n"
           << SystemText() << "\nTests : " << totals.right << " justes, " << totals.different << " écarts, "
           << totals.skipped << " sautés\n\n"
           << details;
    std::ofstream(folder / L"rapport.txt") << report.str();
    std::error_code ignored;
    fs::remove_all(temporary, ignored);
    std::printf("\n%u justes, %u écarts, %u sautés : voir rapport.txt\n", totals.right, totals.different,
                totals.skipped);
    return totals.right > 0 && totals.different == 0 ? 0 : 1;
}
