// Runs every command with each of its platform calls failing once.
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <sstream>

#include "fault/host/command_fixture.h"
#include "platform/host/hooks/test_hooks.h"

namespace {

constexpr const char* CANNOT_SAVE = "Enregistrement impossible ; l'ancienne configuration est conservée.";
constexpr const char* NO_MEMORY = "Mémoire insuffisante : l'opération n'a pas abouti.";
constexpr const char* NO_FILE_BOX = "Boîte de sélection de fichier indisponible.";

// The outcome of a command in which a call fails.
enum class Outcome {
    // Without an error box:
    Done,      // as if the call had succeeded
    NotDone,   // nothing has changed
    RunEnded,  // the run has ended, with the text in the status line
    LogLate,   // done, but the log is shown later
    LogWrong,  // done, but the log has a wrong text until it changes
    // With an error box that shows the text:
    Refused,        // nothing has changed; a start fails
    Skipped,        // nothing has changed; a start continues with the defaults
    Partial,        // the record, a file or the log may have changed; a start continues
    SelectionLost,  // done, but there may be no selected module
};
using enum Outcome;

// The first row for a command and a call is valid for the first `count` calls of its names (0: for all), the
// next row for the calls after these. In the text, % is the system's message, and a bar separates two boxes.
struct Row {
    const char* commands;  // "": all
    const char* calls;
    unsigned count;
    Outcome outcome;
    const char* text = "";
};

const Row ROWS[] = {
    {"Start", "GetCurrentDirectoryW", 1, Refused, "current_path(): %"},
    {"Start", "GetModuleFileNameW", 1, Refused, "Chemin du lanceur introuvable."},
    {"Start", "InitCommonControlsEx", 1, Refused, "Contrôles Win32 indisponibles."},
    {"Start", "RegisterClassW", 1, Refused, "Enregistrement de la fenêtre impossible."},
    {"Start", "RegisterClassW", 1, Refused, "Enregistrement du journal impossible."},
    {"Start", "CreateWindowExW", 1, Refused, "Création du lanceur impossible."},
    {"Start", "CreateWindowExW", 56, Refused,
     "Création d'un contrôle impossible.|Création du lanceur impossible."},
    {"Start", "CB_ADDSTRING TCM_INSERTITEMW LVM_INSERTCOLUMNW", 0, Refused,
     "Mémoire insuffisante : l'opération n'a pas abouti.|Création du lanceur impossible."},
    {"Start", "WM_SETTEXT", 12, Refused, NO_MEMORY},
    {"Start", "CB_SETCURSEL LVM_DELETEALLITEMS", 1, Refused, NO_MEMORY},
    {"Start", "CreateFileW GetFileType GetFileInformationByHandle", 1, Refused, "exists: %"},
    {"Start", "BeginDeferWindowPos DeferWindowPos", 0, Done},
    {"Start", "SetTimer", 1, Refused, "Initialisation du suivi VM impossible."},
    {"Start", "GetMessageW", 1, Refused, "Boucle de messages interrompue."},
    {"Load Start", "CreateFileW GetFileSizeEx", 1, Skipped, "Impossible d'ouvrir la configuration."},
    {"Load Start", "SetFilePointerEx ReadFile", 1, Skipped, "Lecture de la configuration impossible."},
    {"Load Start", "MultiByteToWideChar", 0, Skipped, "Le fichier doit être encodé en UTF-8."},
    {"Load Start", "GetFullPathNameW", 1, Skipped, "absolute: %"},
    {"Load Start", "GetFullPathNameW", 1, Partial, "absolute: %"},
    {"", "GetFullPathNameW", 0, Refused, "absolute: %"},
    {"", "GetOpenFileNameW GetSaveFileNameW", 1, Refused, NO_FILE_BOX},
    {"Load Reset", "MessageBoxW", 1, NotDone},
    {"", "MessageBoxW SetCurrentDirectoryW CloseHandle GetModuleHandleW", 0, Done},
    {"Save SaveNew SaveAs", "WideCharToMultiByte", 0, Refused, "Texte Unicode invalide."},
    {"Save SaveNew SaveAs", "CreateFileW", 1, Refused, "Impossible de créer le fichier de configuration."},
    {"Save SaveNew SaveAs", "WriteFile FlushFileBuffers MoveFileExW", 1, Refused, CANNOT_SAVE},
    {"SaveRefused", "MultiByteToWideChar", 0, Refused, "Valeur hors limites : RAM (16..2048 Mio)"},
    // The kernel, the disks, the modules, the engine.
    {"Launch Verify", "CreateFileW", 7, Refused, "status: %"},
    {"Launch Verify", "CreateFileW", 1, Partial, "Impossible de créer veldranevm.log."},
    {"Launch Verify", "CreateFileW", 1, Partial, "Initialisation de l'entrée standard impossible."},
    {"", "InitializeProcThreadAttributeList", 2, Partial, "Initialisation du lancement impossible."},
    {"", "UpdateProcThreadAttribute CreateProcessW", 1, Partial, "Lancement impossible : %"},
    {"", "WaitForSingleObject", 1, NotDone},
    {"", "GetExitCodeProcess", 1, RunEnded, "VM terminée."},
    {"PollFailure ShowLog ShowLogAgain", "CreateFileW", 1, Partial, "status: %"},
    {"", "GetFileType GetFileInformationByHandle", 0, Partial, "status: %"},
    {"", "CreateWindowExW", 2, Partial, "Création du journal impossible."},
    {"PollFailure RefreshLog ShowLog ShowLogAgain", "WM_GETTEXT WM_SETTEXT", 0, LogLate},
    {"", "MultiByteToWideChar", 0, LogWrong},
    {"", "CreateFileW GetFileSizeEx SetFilePointerEx ReadFile", 0, LogLate},
    {"EditArguments", "WM_SETTEXT", 1, NotDone},
    {"EditArguments", "WM_GETTEXT LVM_SETITEMTEXTW", 0, Partial, NO_MEMORY},
    {"Browse", "WM_SETTEXT", 1, Refused, NO_MEMORY},
    {"", "WM_GETTEXT", 0, Skipped, NO_MEMORY},
    {"Save SaveNew SaveAs", "WM_SETTEXT", 12, Partial, NO_MEMORY},
    {"Save SaveNew SaveAs", "CB_SETCURSEL LVM_DELETEALLITEMS LVM_INSERTITEMW LVM_SETITEMTEXTW", 0, Partial,
     NO_MEMORY},
    {"Load Start Reset AddModule RemoveModule MoveModuleUp MoveModuleDown", "WM_SETTEXT", 12, Skipped,
     NO_MEMORY},
    {"", "CB_SETCURSEL LVM_DELETEALLITEMS LVM_INSERTITEMW LVM_SETITEMTEXTW", 0, Skipped, NO_MEMORY},
    {"", "WM_SETTEXT", 0, SelectionLost, NO_MEMORY},
};

const struct {
    DWORD code;
    const char* message;
} ERRORS[] = {
    {ERROR_ACCESS_DENIED, "Access is denied."},
    {ERROR_SHARING_VIOLATION,
     "The process cannot access the file because it is being used by another process."},
    {ERROR_DISK_FULL, "There is not enough space on the disk."},
    {ERROR_NOT_ENOUGH_MEMORY, "Not enough memory resources are available to process this command."},
};

constexpr DWORD SHARE_RW = FILE_SHARE_READ | FILE_SHARE_WRITE;

// The arguments of the last call of this name that a command makes.
const struct {
    const char* command;
    const char* call;
    std::vector<DWORD> arguments;
} ARGUMENTS[] = {
    {"Load", "CreateFileW", {GENERIC_READ, SHARE_RW | FILE_SHARE_DELETE, OPEN_EXISTING}},
    {"Save", "CreateFileW", {GENERIC_WRITE, 0, CREATE_NEW}},  // not shared
    {"Save", "MoveFileExW", {MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH}},
    {"Launch", "CreateFileW", {GENERIC_READ, SHARE_RW, OPEN_EXISTING}},  // the standard input
    {"Launch", "CreateProcessW", {CREATE_NO_WINDOW | EXTENDED_STARTUPINFO_PRESENT}},
};

bool HasWord(const std::string& words, const std::string& word) {
    return (" " + words + " ").find(" " + word + " ") != std::string::npos;
}

struct Expected {
    Outcome outcome;
    std::string text;

    bool HasBox() const {
        return outcome >= Refused;
    }
};

// The expected outcome when the nth call fails with ERRORS[error].
Expected FindRow(const char* command, const std::vector<std::string>& calls, std::size_t nth,
                 std::size_t error) {
    const auto end = calls.begin() + static_cast<std::ptrdiff_t>(nth);
    auto nth_of_name = std::count(calls.begin(), end, calls[nth - 1]);
    for (const Row& row : ROWS) {
        if (!HasWord(row.calls, calls[nth - 1]) || (*row.commands != 0 && !HasWord(row.commands, command)))
            continue;
        std::string text = row.text;
        const std::size_t mark = text.find('%');
        if (row.count == 0 || nth_of_name <= row.count)
            return {row.outcome,
                    mark == std::string::npos ? text : text.replace(mark, 1, ERRORS[error].message)};
        nth_of_name -= row.count;
    }
    ADD_FAILURE() << "no row for " << calls[nth - 1];
    return {Done, ""};
}

RequiredState Require(const CommandFixture& fixture, const TestedCommand& command, const std::string& status,
                      const Expected& expected) {
    EXPECT_EQ(fixture.error_boxes.size(), expected.HasBox() ? 1U : 0U);
    if (expected.outcome == RunEnded || (expected.HasBox() && expected.outcome != SelectionLost))
        EXPECT_TRUE(status.starts_with(expected.text)) << status;
    const Outcome outcome = expected.outcome;
    return {.is_done = expected.HasBox() ? command.completes_on_error || outcome == SelectionLost
                                         : outcome != NotDone,
            .may_be_partial =
                outcome == RunEnded || outcome == LogLate || outcome == LogWrong || outcome == Partial,
            .may_lose_selection = outcome == SelectionLost,
            .cannot_repeat = outcome == LogWrong};
}

class CommandFaults : public testing::TestWithParam<TestedCommand> {};

TEST_P(CommandFaults, AreReportedAndLeaveTheStateFromBeforeOrAfterTheCommand) {
    const TestedCommand& command = GetParam();
    CommandFixture fixture;
    fixture.RunProgram([&] {
        fixture.SetUp(command);
        host::StartTrace();
        fixture.Run(command);
        const std::vector<std::string> calls = host::Trace();
        for (const auto& row : ARGUMENTS)
            if (HasWord(row.command, command.name))
                EXPECT_EQ(host::TracedArguments(row.call), row.arguments) << row.call;
        for (const unsigned shift : {0U, 1U}) {
            const auto error = [&](unsigned nth) { return (nth + shift) % std::size(ERRORS); };
            const auto inject_fault = [&](unsigned nth) { host::FailNthCall(nth, ERRORS[error(nth)].code); };
            const auto clear_fault = [] { return host::ClearFaults() != 0; };
            SweepCommand(
                fixture, command, inject_fault, clear_fault, [&](unsigned nth, const std::string& status) {
                    return Require(fixture, command, status, FindRow(command.name, calls, nth, error(nth)));
                });
        }
    });
}

INSTANTIATE_TEST_SUITE_P(Commands, CommandFaults, testing::ValuesIn(TestedCommands()),
                         [](const auto& tested) { return tested.param.name; });

// Starts the program with this fault. Returns the texts of the boxes, the file name in the configuration
// line, and the exit code.
std::vector<std::string> ResultOfStart(bool has_file, const std::function<void()>& inject_fault) {
    CommandFixture fixture;
    if (has_file)
        fixture.run.WriteConfig(TEXT("veldranevm.config"), "ram_mib=256\n");
    std::string line;
    const int exit_code = fixture.RunProgram(
        [&] {
            line = fixture.TakeSnapshot().at("line");
            EXPECT_FALSE(fixture.run.launcher.dirty);
        },
        inject_fault);
    std::vector<std::string> result = fixture.error_boxes;
    result.push_back(line.substr(line.find_last_of('\\') + 1));
    result.push_back(std::to_string(exit_code));
    return result;
}

class StartFaults : public testing::TestWithParam<bool> {};

TEST_P(StartFaults, AreReportedAndEndTheProgramOrLeaveTheDefaults) {
    const std::string new_line = "Nouvelle configuration — non enregistrée";
    const std::string line = GetParam() ? "veldranevm.config" : new_line;
    EXPECT_EQ(ResultOfStart(GetParam(), host::StartTrace), (std::vector<std::string>{line, "0"}));
    const std::vector<std::string> calls = host::Trace();
    for (unsigned nth = 1; nth == 1 || calls[nth - 2] != "GetMessageW"; ++nth) {
        SCOPED_TRACE(std::to_string(nth) + " " + calls[nth - 1]);
        const std::size_t error = nth % std::size(ERRORS);
        const Expected expected = FindRow("Start", calls, nth, error);
        const bool continues = expected.outcome != Refused;
        std::vector<std::string> wanted = {continues ? (expected.HasBox() ? new_line : line) : "",
                                           continues ? "0" : "1"};
        std::istringstream boxes(expected.text);
        for (std::string box; std::getline(boxes, box, '|');)
            wanted.insert(wanted.end() - 2, "Veldrane VM\n" + box);
        const auto result = ResultOfStart(GetParam(), [&] { host::FailNthCall(nth, ERRORS[error].code); });
        EXPECT_EQ(host::ClearFaults(), 1U);
        EXPECT_TRUE(std::equal(result.begin(), result.end(), wanted.begin(), wanted.end(),
                               [](const auto& seen, const auto& start) { return seen.starts_with(start); }))
            << testing::PrintToString(result) << testing::PrintToString(wanted);
    }
}

INSTANTIATE_TEST_SUITE_P(RunLauncher, StartFaults, testing::Bool(),
                         [](const auto& tested) { return tested.param ? "WithAFile" : "WithoutAFile"; });

}  // namespace
