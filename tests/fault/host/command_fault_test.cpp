// Runs every command, and the start, with each of its platform calls failing once.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <iterator>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "form/form_exchange.h"
#include "form/form_ids.h"
#include "form/title.h"
#include "host/snapshot.h"
#include "launch/engine_run.h"
#include "launch/log_window.h"
#include "launcher_run.h"
#include "platform/host/hooks/call_hooks.h"
#include "platform/host/hooks/test_hooks.h"
#include "shell/config_commands.h"

namespace {

// --- the expected outcomes ---

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

constexpr const char* ANY_COMMAND = "";
constexpr unsigned EACH = 0;

// What happens when one of the calls fails. A row is for the first `count` of the calls that a command makes,
// the next row with the same command and call for the calls behind these. In the text, % is the system's
// message, and a bar separates two boxes.
struct Row {
    const char* commands;
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
    {"Start", "CB_ADDSTRING TCM_INSERTITEMW LVM_INSERTCOLUMNW", EACH, Refused,
     "Mémoire insuffisante : l'opération n'a pas abouti.|Création du lanceur impossible."},
    {"Start", "WM_SETTEXT", 12, Refused, NO_MEMORY},
    {"Start", "CB_SETCURSEL LVM_DELETEALLITEMS", 1, Refused, NO_MEMORY},
    {"Start", "CreateFileW GetFileType GetFileInformationByHandle", 1, Refused, "exists: %"},
    {"Start", "BeginDeferWindowPos DeferWindowPos", EACH, Done},
    {"Start", "SetTimer", 1, Refused, "Initialisation du suivi VM impossible."},
    {"Start", "GetMessageW", 1, Refused, "Boucle de messages interrompue."},
    {"Load Start", "CreateFileW GetFileSizeEx", 1, Skipped, "Impossible d'ouvrir la configuration."},
    {"Load Start", "SetFilePointerEx ReadFile", 1, Skipped, "Lecture de la configuration impossible."},
    {"Load Start", "MultiByteToWideChar", EACH, Skipped, "Le fichier doit être encodé en UTF-8."},
    {"Load Start", "GetFullPathNameW", 1, Skipped, "absolute: %"},
    {"Load Start", "GetFullPathNameW", 1, Partial, "absolute: %"},
    {ANY_COMMAND, "GetFullPathNameW", EACH, Refused, "absolute: %"},
    {ANY_COMMAND, "GetOpenFileNameW GetSaveFileNameW", 1, Refused, NO_FILE_BOX},
    {"Load Reset", "MessageBoxW", 1, NotDone},
    {ANY_COMMAND, "MessageBoxW SetCurrentDirectoryW CloseHandle GetModuleHandleW", EACH, Done},
    {"Save SaveNew SaveAs", "WideCharToMultiByte", EACH, Refused, "Texte Unicode invalide."},
    {"Save SaveNew SaveAs", "CreateFileW", 1, Refused, "Impossible de créer le fichier de configuration."},
    {"Save SaveNew SaveAs", "WriteFile FlushFileBuffers MoveFileExW", 1, Refused, CANNOT_SAVE},
    {"SaveRefused", "MultiByteToWideChar", EACH, Refused, "Valeur hors limites : RAM (16..2048 Mio)"},
    // The kernel, the disks, the modules, the engine.
    {"Launch Verify", "CreateFileW", 7, Refused, "status: %"},
    {"Launch Verify", "CreateFileW", 1, Partial, "Impossible de créer veldranevm.log."},
    {"Launch Verify", "CreateFileW", 1, Partial, "Initialisation de l'entrée standard impossible."},
    {ANY_COMMAND, "InitializeProcThreadAttributeList", 2, Partial, "Initialisation du lancement impossible."},
    {ANY_COMMAND, "UpdateProcThreadAttribute CreateProcessW", 1, Partial, "Lancement impossible : %"},
    {ANY_COMMAND, "WaitForSingleObject", 1, NotDone},
    {ANY_COMMAND, "GetExitCodeProcess", 1, RunEnded, "VM terminée."},
    {"PollFailure ShowLog ShowLogAgain", "CreateFileW", 1, Partial, "status: %"},
    {ANY_COMMAND, "GetFileType GetFileInformationByHandle", EACH, Partial, "status: %"},
    {ANY_COMMAND, "CreateWindowExW", 2, Partial, "Création du journal impossible."},
    {"PollFailure RefreshLog ShowLog ShowLogAgain", "WM_GETTEXT WM_SETTEXT", EACH, LogLate},
    {ANY_COMMAND, "MultiByteToWideChar", EACH, LogWrong},
    {ANY_COMMAND, "CreateFileW GetFileSizeEx SetFilePointerEx ReadFile", EACH, LogLate},
    {"EditArguments", "WM_SETTEXT", 1, NotDone},
    {"EditArguments", "WM_GETTEXT LVM_SETITEMTEXTW", EACH, Partial, NO_MEMORY},
    {"Browse", "WM_SETTEXT", 1, Refused, NO_MEMORY},
    {ANY_COMMAND, "WM_GETTEXT", EACH, Skipped, NO_MEMORY},
    {"Save SaveNew SaveAs", "WM_SETTEXT", 12, Partial, NO_MEMORY},
    {"Save SaveNew SaveAs", "CB_SETCURSEL LVM_DELETEALLITEMS LVM_INSERTITEMW LVM_SETITEMTEXTW", EACH, Partial,
     NO_MEMORY},
    {"Load Start Reset AddModule RemoveModule MoveModuleUp MoveModuleDown", "WM_SETTEXT", 12, Skipped,
     NO_MEMORY},
    {ANY_COMMAND, "CB_SETCURSEL LVM_DELETEALLITEMS LVM_INSERTITEMW LVM_SETITEMTEXTW", EACH, Skipped,
     NO_MEMORY},
    {ANY_COMMAND, "WM_SETTEXT", EACH, SelectionLost, NO_MEMORY},
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
    bool MayBePartial() const {
        return outcome == RunEnded || outcome == LogLate || outcome == LogWrong || outcome == Partial;
    }
    // Whether the state is as after the command; `completes_on_error` is of the command.
    bool IsDone(bool completes_on_error) const {
        return HasBox() ? completes_on_error || outcome == SelectionLost : outcome != NotDone;
    }
};

// The expected outcome when the nth call fails with ERRORS[error].
Expected FindRow(const char* command, const std::vector<std::string>& calls, std::size_t nth,
                 std::size_t error) {
    const auto end = calls.begin() + static_cast<std::ptrdiff_t>(nth);
    auto nth_of_name = std::count(calls.begin(), end, calls[nth - 1]);
    for (const Row& row : ROWS) {
        if (!HasWord(row.calls, calls[nth - 1]) ||
            (row.commands != ANY_COMMAND && !HasWord(row.commands, command)))
            continue;
        std::string text = row.text;
        const std::size_t mark = text.find('%');
        if (row.count == EACH || nth_of_name <= row.count)
            return {row.outcome,
                    mark == std::string::npos ? text : text.replace(mark, 1, ERRORS[error].message)};
        nth_of_name -= row.count;
    }
    ADD_FAILURE() << "no row for " << calls[nth - 1];
    return {Done, ""};
}

// --- the program in a prepared state, and the commands that a user can give in that state ---

const char* const FIRST =
    "version=1\nkernel=noyau.elf\ncommand=demo.duree=0\nide_primary_master=d.img\n"
    "ide_secondary_slave=d.img\nmodule_count=3\nmodule.0.path=d.img\nmodule.1.path=noyau.elf\n"
    "module.1.command=un assez long argument\nmodule.2.path=d.img\nmodule.2.command=2\n";
const char* const SECOND =
    "version=1\nkernel=autre noyau.elf\nram_mib=256\nheadless=1\nide_primary_slave=d.img\nmodule_count=2\n"
    "module.0.path=noyau.elf\nmodule.1.path=d.img\nmodule.1.command=un autre argument\n";

struct TestedCommand;

// A folder with two configurations, disks and modules, and the program with the first configuration, an
// unsaved edit, and the second of three modules selected. All runs on one thread: the user is called from a
// timer and answers boxes: the question about changes with No, file boxes with `chosen_file`.
struct CommandFixture {
    LauncherRun run;
    WideText chosen_file;
    std::vector<std::string> error_boxes;  // since the start of the last command
    std::function<void()> when_shown;

    // Runs the program: `inject_fault` just before its start, `test` when the window is visible; then the
    // window is closed. Returns the exit code.
    int RunProgram(const std::function<void()>& test, const std::function<void()>& inject_fault = {});
    unsigned Step();
    void AnswerBox(HWND box);
    void SetUp(const TestedCommand& command);
    void Run(const TestedCommand& command);
    Snapshot TakeSnapshot() const;
    void Press(UINT id) const;
    void Tick() const;
};

struct TestedCommand {
    const char* name;
    std::function<void(CommandFixture&)> prepare;
    std::function<void(CommandFixture&)> run;
    // The names in a snapshot that may be neither as before nor as after the command when a call failed.
    std::vector<std::string> partial;
    bool completes_on_error = false;  // reports an error only after its work is done
};

void PrintTo(const TestedCommand& command, std::ostream* out) {
    *out << command.name;
}

constexpr unsigned STEP_MS = 10;

// The contents of a new log depend on how far the engine has run.
void AddFiles(const ScratchFolder& folder, Snapshot& snapshot) {
    for (const WideText& name : ListFolder(folder.path)) {
        const std::string bytes = ReadBytes(folder.Of(name));
        snapshot["file " + Narrow(name)] =
            name.ends_with(TEXT(".log")) && bytes != "ancien" ? "another log" : bytes;
    }
}

void CloseEngine(Launcher& launcher) {
    if (launcher.engine_process == nullptr)
        return;
    WaitForSingleObject(launcher.engine_process, INFINITE);
    CloseHandle(launcher.engine_process);
    launcher.engine_process = nullptr;
}

void PrepareFiles(const ScratchFolder& folder) {
    for (const WideText& name : ListFolder(folder.path))
        if (name != TEXT("noyau.elf"))
            Remove(folder.Of(name));
    WriteBytes(folder.Of(TEXT("a.config")), FIRST);
    WriteBytes(folder.Of(TEXT("b.config")), SECOND);
    WriteBytes(folder.Of(TEXT("d.img")), std::string(512, 'd'));
    WriteBytes(folder.Of(TEXT("veldranevm.log")), "ancien");
}

void CommandFixture::AnswerBox(HWND box) {
    const host::SuspendHooks suspended;
    int answer = IDOK;
    if (GetDlgItem(box, IDYES) != nullptr)
        answer = GetDlgItem(box, IDCANCEL) != nullptr ? IDNO : IDYES;
    else if (const HWND name = GetDlgItem(box, 0x47C))
        SetWindowTextW(name, chosen_file.c_str());
    else
        error_boxes.push_back(user::BoxText());
    PostMessageW(box, WM_COMMAND, static_cast<WPARAM>(answer), 0);
}

unsigned CommandFixture::Step() {
    if (const HWND box = user::Box()) {
        AnswerBox(box);
        return STEP_MS;
    }
    if (!when_shown || IsWindowVisible(user::MainWindow()) == FALSE)
        return STEP_MS;
    KillTimer(user::MainWindow(), 1);
    std::exchange(when_shown, {})();
    return 0;
}

int CommandFixture::RunProgram(const std::function<void()>& test, const std::function<void()>& inject_fault) {
    constexpr std::uint64_t MS_PER_READING = 5;
    host::ResetLayer();
    host::UseTestClock(MS_PER_READING);
    when_shown = [&] {
        test();
        run.launcher.dirty = false;
    };
    error_boxes.clear();
    bool has_started = false;
    const auto pass_time = [&](unsigned ms) {
        host::AdvanceTestClock(ms);
        if (!std::exchange(has_started, true) && inject_fault)
            inject_fault();
    };
    const auto step = [this] { return Step(); };
    const int exit_code = user::RunWithUserCallback(run.launcher, step, pass_time);
    EXPECT_EQ(host::OpenHandles(), 0U) << "the handle of a running engine is closed too";
    return exit_code;
}

void CommandFixture::SetUp(const TestedCommand& command) {
    Launcher& launcher = run.launcher;
    CloseEngine(launcher);
    if (launcher.log_window != nullptr)
        DestroyWindow(launcher.log_window);
    launcher.log_window = nullptr;
    launcher.log_path.clear();
    launcher.run_is_dry = false;
    PrepareFiles(run.folder);
    LoadConfiguration(launcher, run.folder.Of(TEXT("a.config")));
    SelectModuleRow(launcher, 1);
    SetDlgItemTextW(launcher.main_window, IDC_RAM_MIB, TEXT("64"));
    command.prepare(*this);
    SetWindowTextW(launcher.status_label, TEXT("-"));
}

void CommandFixture::Run(const TestedCommand& command) {
    error_boxes.clear();
    command.run(*this);
}

void CommandFixture::Press(UINT id) const {
    EXPECT_EQ(SendMessageW(run.launcher.main_window, WM_COMMAND, MAKEWPARAM(id, BN_CLICKED), 0), 0);
}

void CommandFixture::Tick() const {
    EXPECT_EQ(SendMessageW(run.launcher.main_window, WM_TIMER, 1, 0), 0);
}

Snapshot CommandFixture::TakeSnapshot() const {
    Snapshot snapshot = ::TakeSnapshot(run.launcher);
    snapshot["run is dry"] = std::to_string(run.launcher.run_is_dry);
    snapshot["filling"] = std::to_string(run.launcher.filling);
    AddFiles(run.folder, snapshot);
    return snapshot;
}

std::function<void(CommandFixture&)> PressButton(UINT id) {
    return [id](CommandFixture& fixture) { fixture.Press(id); };
}

std::function<void(CommandFixture&)> ChooseFile(const WCHAR* name) {
    return [name](CommandFixture& fixture) { fixture.chosen_file = fixture.run.folder.Of(name); };
}

std::function<void(CommandFixture&)> SetField(int id, const WCHAR* text) {
    return [=](CommandFixture& fixture) { SetDlgItemTextW(fixture.run.launcher.main_window, id, text); };
}

void Nothing(CommandFixture&) {}

void Tick(CommandFixture& fixture) {
    fixture.Tick();
}

void SetLogPath(CommandFixture& fixture) {
    fixture.run.launcher.log_path = fixture.run.folder.Of(TEXT("veldranevm.log"));
}

void OpenLog(CommandFixture& fixture) {
    SetLogPath(fixture);
    ShowLogWindow(fixture.run.launcher);
    WriteBytes(fixture.run.launcher.log_path, "un journal qui a été allongé\n");
}

std::function<void(CommandFixture&)> RunEngine(const WCHAR* command) {
    return [command](CommandFixture& fixture) {
        SetField(IDC_KERNEL_COMMAND, command)(fixture);
        LaunchEngine(fixture.run.launcher, false);
        WaitForSingleObject(fixture.run.launcher.engine_process, INFINITE);
    };
}

// When the log could not be shown after a failed run, the user asks for it.
void TickOrShowLog(CommandFixture& fixture) {
    if (fixture.run.launcher.engine_process != nullptr)
        fixture.Tick();
    else
        fixture.Press(IDC_SHOW_LOG);
}

const TestedCommand COMMANDS[] = {
    {"Load",
     ChooseFile(TEXT("b.config")),
     PressButton(IDC_LOAD),
     {"kernel", "command", "ram_mib", "headless", "ide_primary_master", "ide_primary_slave",
      "ide_secondary_slave", "modules"}},
    {"Save", Nothing, PressButton(IDC_SAVE), {"file a.config"}},
    {"SaveNew",
     [](CommandFixture& fixture) {
         fixture.run.launcher.config_path.clear();
         RefreshTitle(fixture.run.launcher);
     },
     PressButton(IDC_SAVE),
     {"file veldranevm.config"}},
    {"SaveRefused", SetField(IDC_RAM_MIB, TEXT("9")), PressButton(IDC_SAVE), {}},
    {"SaveAs", ChooseFile(TEXT("c.config")), PressButton(IDC_SAVE_AS), {"file c.config"}},
    {"Reset",
     [](CommandFixture& fixture) { SelectModuleRow(fixture.run.launcher, 0); },
     PressButton(IDC_RESET),
     {}},
    {"Launch", Nothing, PressButton(IDC_LAUNCH), {"log_path", "file veldranevm.log"}},
    {"Verify", Nothing, PressButton(IDC_VERIFY), {"log_path", "file veldranevm.log"}},
    {"PollSuccess", RunEngine(TEXT("demo.duree=0")), Tick, {}, true},
    {"PollFailure",
     RunEngine(TEXT("demo.duree=0 demo.code=7")),
     TickOrShowLog,
     {"log", "log text", "status"},
     true},
    {"RefreshLog", OpenLog, Tick, {"log", "log text"}, true},
    {"ShowLog", SetLogPath, PressButton(IDC_SHOW_LOG), {"log", "log text"}, true},
    {"ShowLogAgain", OpenLog, PressButton(IDC_SHOW_LOG), {"log", "log text"}, true},
    {"Browse", ChooseFile(TEXT("d.img")), PressButton(IDC_KERNEL_BROWSE), {}},
    {"EditArguments", Nothing, SetField(IDC_MODULE_ARGS, TEXT("neuf")), {"field 307"}},
    {"AddModule", ChooseFile(TEXT("d.img")), PressButton(IDC_MODULE_ADD), {}},
    {"RemoveModule", Nothing, PressButton(IDC_MODULE_REMOVE), {}},
    {"MoveModuleUp", Nothing, PressButton(IDC_MODULE_UP), {}},
    {"MoveModuleDown", Nothing, PressButton(IDC_MODULE_DOWN), {}},
};

void ExpectSame(const Snapshot& seen, const Snapshot& expected, const std::vector<std::string>& ignored) {
    Snapshot names = seen;
    names.insert(expected.begin(), expected.end());
    for (const auto& entry : names) {
        const std::string& name = entry.first;
        if (std::find(ignored.begin(), ignored.end(), name) != ignored.end())
            continue;
        const auto value = [&name](const Snapshot& snapshot) {
            return snapshot.contains(name) ? snapshot.at(name) : "(none)";
        };
        EXPECT_EQ(value(seen), value(expected)) << name;
    }
}

// --- the tests ---

class CommandFaults : public testing::TestWithParam<TestedCommand> {};

// Compares the state after a command in which a call failed.
void ExpectState(const CommandFixture& fixture, const TestedCommand& command, const Expected& expected,
                 const Snapshot& before, const Snapshot& after) {
    const Outcome outcome = expected.outcome;
    const bool has_box = expected.HasBox();
    const Snapshot seen = fixture.TakeSnapshot();
    const std::string& status = seen.at("status");
    if (outcome == RunEnded || (has_box && outcome != SelectionLost))
        EXPECT_TRUE(status.starts_with(expected.text)) << status;
    std::vector<std::string> ignored;
    if (expected.MayBePartial())
        ignored = command.partial;
    if (has_box)
        ignored.emplace_back("status");
    if (outcome == SelectionLost && seen.at("selected_module") == "-1") {
        EXPECT_EQ(seen.at("field 307"), "");
        ignored.insert(ignored.end(), {"selected_module", "selected row", "field 307", "enabled 304",
                                       "enabled 305", "enabled 306", "enabled 307"});
    }
    if (!has_box)
        EXPECT_EQ(fixture.error_boxes.size(), 0U);
    else if (outcome != SelectionLost)
        EXPECT_EQ(fixture.error_boxes, std::vector{"Veldrane VM\n" + status});
    else
        EXPECT_EQ(fixture.error_boxes.size(), 1U);
    ExpectSame(seen, expected.IsDone(command.completes_on_error) ? after : before, ignored);
    EXPECT_EQ(host::OpenHandles(), fixture.run.launcher.engine_process == nullptr ? 0U : 1U);
    EXPECT_EQ(host::OpenAttributeLists(), 0U);
}

TEST_P(CommandFaults, AreReportedAndLeaveTheStateFromBeforeOrAfterTheCommand) {
    const TestedCommand& command = GetParam();
    CommandFixture fixture;
    fixture.RunProgram([&] {
        fixture.SetUp(command);
        const Snapshot before = fixture.TakeSnapshot();
        host::StartTrace();
        fixture.Run(command);
        const std::vector<std::string> calls = host::Trace();
        for (const auto& row : ARGUMENTS)
            if (HasWord(row.command, command.name))
                EXPECT_EQ(host::TracedArguments(row.call), row.arguments) << row.call;
        const Snapshot after = fixture.TakeSnapshot();
        const std::vector<std::string> usual_boxes = fixture.error_boxes;
        for (std::size_t fault = 0; fault < 2 * calls.size() && !HasFailure(); ++fault) {
            const std::size_t nth = fault / 2 + 1;
            const std::size_t error = (nth + fault) % std::size(ERRORS);
            SCOPED_TRACE(std::to_string(nth) + " " + calls[nth - 1]);
            const Expected expected = FindRow(command.name, calls, nth, error);
            fixture.SetUp(command);
            ExpectSame(fixture.TakeSnapshot(), before, {});
            host::FailNthCall(static_cast<unsigned>(nth), ERRORS[error].code);
            fixture.Run(command);
            EXPECT_EQ(host::ClearFaults(), 1U);
            ExpectState(fixture, command, expected, before, after);
            // Repeated, the command succeeds.
            const bool is_done = expected.IsDone(command.completes_on_error) && !expected.MayBePartial();
            if (is_done || expected.outcome == LogWrong)
                fixture.SetUp(command);
            fixture.Run(command);
            EXPECT_EQ(fixture.error_boxes, usual_boxes);
            ExpectSame(fixture.TakeSnapshot(), after, {"status"});
        }
    });
}

INSTANTIATE_TEST_SUITE_P(Commands, CommandFaults, testing::ValuesIn(COMMANDS),
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
