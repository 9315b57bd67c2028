// Every command with every one of its platform calls failing once, whatever they are and however many.
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <sstream>

#include "host/command_scene.h"
#include "platform/host/hooks/test_hooks.h"

namespace {

constexpr const char* CANNOT_SAVE = "Enregistrement impossible ; l'ancienne configuration est conservée.";
constexpr const char* NO_MEMORY = "Mémoire insuffisante : l'opération n'a pas abouti.";
constexpr const char* NO_FILE_BOX = "Boîte de sélection de fichier indisponible.";

// What comes of the failure of each of the calls, `count` times each (0: always), in the order in which a
// command makes them: the start of the message, with the system's words for % and a bar between two boxes.
// Silent:
// "" where the command is done, "-" where it waits, "=" and the status line where it ends otherwise, "~"
// where the log is shown later, "^" where it is wrong until it changes. "!" in front: the record, a file or
// the log may have changed; "?": a start goes on; "#": the command is done, but for the selected row.
struct Row {
    const char* commands;  // "": all
    const char* calls;
    unsigned count;
    const char* text;
};

const Row ROWS[] = {
    {"Start", "GetCurrentDirectoryW", 1, "current_path(): %"},
    {"Start", "GetModuleFileNameW", 1, "Chemin du lanceur introuvable."},
    {"Start", "InitCommonControlsEx", 1, "Contrôles Win32 indisponibles."},
    {"Start", "RegisterClassW", 1, "Enregistrement de la fenêtre impossible."},
    {"Start", "RegisterClassW", 1, "Enregistrement du journal impossible."},
    {"Start", "CreateWindowExW", 1, "Création du lanceur impossible."},
    {"Start", "CreateWindowExW", 56, "Création d'un contrôle impossible.|Création du lanceur impossible."},
    {"Start", "CB_ADDSTRING TCM_INSERTITEMW LVM_INSERTCOLUMNW", 0,
     "Mémoire insuffisante : l'opération n'a pas abouti.|Création du lanceur impossible."},
    {"Start", "WM_SETTEXT", 12, NO_MEMORY},
    {"Start", "CB_SETCURSEL LVM_DELETEALLITEMS", 1, NO_MEMORY},
    {"Start", "CreateFileW GetFileType GetFileInformationByHandle", 1, "exists: %"},
    {"Start", "BeginDeferWindowPos DeferWindowPos", 0, ""},
    {"Start", "SetTimer", 1, "Initialisation du suivi VM impossible."},
    {"Start", "GetMessageW", 1, "Boucle de messages interrompue."},
    {"Load Start", "CreateFileW GetFileSizeEx", 1, "?Impossible d'ouvrir la configuration."},
    {"Load Start", "SetFilePointerEx ReadFile", 1, "?Lecture de la configuration impossible."},
    {"Load Start", "MultiByteToWideChar", 0, "?Le fichier doit être encodé en UTF-8."},
    {"Load Start", "GetFullPathNameW", 1, "?absolute: %"},
    {"Load Start", "GetFullPathNameW", 1, "!absolute: %"},
    {"", "GetFullPathNameW", 0, "absolute: %"},
    {"", "GetOpenFileNameW GetSaveFileNameW", 1, NO_FILE_BOX},
    {"Load Reset", "MessageBoxW", 1, "-"},
    {"", "MessageBoxW SetCurrentDirectoryW CloseHandle GetModuleHandleW", 0, ""},
    {"Save SaveNew SaveAs", "WideCharToMultiByte", 0, "Texte Unicode invalide."},
    {"Save SaveNew SaveAs", "CreateFileW", 1, "Impossible de créer le fichier de configuration."},
    {"Save SaveNew SaveAs", "WriteFile FlushFileBuffers MoveFileExW", 1, CANNOT_SAVE},
    {"SaveRefused", "MultiByteToWideChar", 0, "Valeur hors limites : RAM (16..2048 Mio)"},
    {"Launch Verify", "CreateFileW", 7, "status: %"},  // the kernel, the disks, the modules, the engine
    {"Launch Verify", "CreateFileW", 1, "!Impossible de créer veldranevm.log."},
    {"Launch Verify", "CreateFileW", 1, "!Initialisation de l'entrée standard impossible."},
    {"", "InitializeProcThreadAttributeList", 2, "!Initialisation du lancement impossible."},
    {"", "UpdateProcThreadAttribute CreateProcessW", 1, "!Lancement impossible : %"},
    {"", "WaitForSingleObject", 1, "-"},
    {"", "GetExitCodeProcess", 1, "=VM terminée."},
    {"PollFailure ShowLog ShowLogAgain", "CreateFileW", 1, "!status: %"},
    {"", "GetFileType GetFileInformationByHandle", 0, "!status: %"},
    {"", "CreateWindowExW", 2, "!Création du journal impossible."},
    {"PollFailure RefreshLog ShowLog ShowLogAgain", "WM_GETTEXT WM_SETTEXT", 0, "~"},
    {"", "MultiByteToWideChar", 0, "^"},
    {"", "CreateFileW GetFileSizeEx SetFilePointerEx ReadFile", 0, "~"},
    {"EditArguments", "WM_SETTEXT", 1, "-"},
    {"EditArguments", "WM_GETTEXT LVM_SETITEMTEXTW", 0,
     "!Mémoire insuffisante : l'opération n'a pas abouti."},
    {"Browse", "WM_SETTEXT", 1, NO_MEMORY},
    {"", "WM_GETTEXT", 0, "?Mémoire insuffisante : l'opération n'a pas abouti."},
    {"Save SaveNew SaveAs", "WM_SETTEXT", 12, "!Mémoire insuffisante : l'opération n'a pas abouti."},
    {"Save SaveNew SaveAs", "CB_SETCURSEL LVM_DELETEALLITEMS LVM_INSERTITEMW LVM_SETITEMTEXTW", 0,
     "!Mémoire insuffisante : l'opération n'a pas abouti."},
    {"Load Start Reset AddModule RemoveModule MoveModuleUp MoveModuleDown", "WM_SETTEXT", 12,
     "?Mémoire insuffisante : l'opération n'a pas abouti."},
    {"", "CB_SETCURSEL LVM_DELETEALLITEMS LVM_INSERTITEMW LVM_SETITEMTEXTW", 0,
     "?Mémoire insuffisante : l'opération n'a pas abouti."},
    {"", "WM_SETTEXT", 0, "#Mémoire insuffisante : l'opération n'a pas abouti."},
};

const struct {
    DWORD code;
    const char* words;
} ERRORS[] = {
    {ERROR_ACCESS_DENIED, "Access is denied."},
    {ERROR_SHARING_VIOLATION,
     "The process cannot access the file because it is being used by another process."},
    {ERROR_DISK_FULL, "There is not enough space on the disk."},
    {ERROR_NOT_ENOUGH_MEMORY, "Not enough memory resources are available to process this command."},
};

// What the last call of a name is given by a command.
const struct {
    const char* command;
    const char* call;
    std::vector<DWORD> arguments;
} ARGUMENTS[] = {
    {"Load",
     "CreateFileW",
     {GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, OPEN_EXISTING}},
    {"Save", "CreateFileW", {GENERIC_WRITE, 0, CREATE_NEW}},  // for nobody else
    {"Save", "MoveFileExW", {MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH}},
    {"Launch",
     "CreateFileW",
     {GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, OPEN_EXISTING}},  // the input
    {"Launch", "CreateProcessW", {CREATE_NO_WINDOW | EXTENDED_STARTUPINFO_PRESENT}},
};

bool Holds(const std::string& words, const std::string& word) {
    return (" " + words + " ").find(" " + word + " ") != std::string::npos;
}

// What comes of it when the nth call fails with this one of ERRORS.
std::string RowText(const char* command, const std::vector<std::string>& calls, std::size_t nth,
                    std::size_t error) {
    const auto last = calls.begin() + static_cast<std::ptrdiff_t>(nth);
    auto left = std::count(calls.begin(), last, calls[nth - 1]);
    for (const Row& row : ROWS) {
        if (!Holds(row.calls, calls[nth - 1]) || (*row.commands != 0 && !Holds(row.commands, command)))
            continue;
        std::string text = row.text;
        const std::size_t mark = text.find('%');
        if (row.count == 0 || left <= row.count)
            return mark == std::string::npos ? text : text.replace(mark, 1, ERRORS[error].words);
        left -= row.count;
    }
    ADD_FAILURE() << "nothing is said of " << calls[nth - 1];
    return "";
}

Verdict JudgeByRow(const Scene& scene, const SceneCommand& command, const std::string& status,
                   const std::string& text) {
    const char kind = text.empty() ? '+' : text.front();
    const bool is_told = std::string("+-=~^").find(kind) == std::string::npos;
    EXPECT_EQ(scene.boxes.size(), is_told ? 1U : 0U);
    if (kind == '#')
        return {true, false, true};
    if (is_told || kind == '=')
        EXPECT_TRUE(status.starts_with(text.substr(text.find_first_not_of("!?=")))) << status;
    return {is_told ? command.told_when_done : kind != '-',
            std::string("!=~^").find(kind) != std::string::npos, false, kind == '^'};
}

class CommandFaults : public testing::TestWithParam<SceneCommand> {};

TEST_P(CommandFaults, AreToldAndLeaveEverythingAsBeforeOrAsAfter) {
    const SceneCommand& command = GetParam();
    Scene scene;
    scene.Play([&] {
        scene.Set(command);
        host::StartTrace();
        scene.Act(command);
        const std::vector<std::string> calls = host::Trace();
        for (const auto& row : ARGUMENTS)
            if (Holds(row.command, command.name))
                EXPECT_EQ(host::TracedArguments(row.call), row.arguments) << row.call;
        for (const unsigned shift : {0U, 1U}) {
            const auto error = [&](unsigned nth) { return (nth + shift) % std::size(ERRORS); };
            const auto strike = [&](unsigned nth) { host::FailNthCall(nth, ERRORS[error(nth)].code); };
            const auto calm = [] { return host::ClearFaults() != 0; };
            SweepCommand(scene, command, strike, calm, [&](unsigned nth, const std::string& status) {
                return JudgeByRow(scene, command, status, RowText(command.name, calls, nth, error(nth)));
            });
        }
    });
}

INSTANTIATE_TEST_SUITE_P(Scene, CommandFaults, testing::ValuesIn(SceneCommands()),
                         [](const auto& tested) { return tested.param.name; });

// Starts the program with this fault; the configuration line that it shows, the boxes and the exit code.
std::vector<std::string> Started(bool has_file, const std::function<void()>& strike) {
    Scene scene;
    if (has_file)
        scene.run.WriteConfig(TEXT("veldranevm.config"), "ram_mib=256\n");
    std::string line;
    const int exit_code = scene.Play(
        [&] {
            line = scene.Look().at("line");
            EXPECT_FALSE(scene.run.launcher.dirty);
        },
        strike);
    EXPECT_EQ(host::OpenHandles(), 0U);
    std::vector<std::string> told = scene.boxes;
    told.push_back(line.substr(line.find_last_of('\\') + 1));
    told.push_back(std::to_string(exit_code));
    return told;
}

class StartFaults : public testing::TestWithParam<bool> {};

TEST_P(StartFaults, AreToldAndEndTheProgramOrLeaveItWithTheDefaults) {
    const std::string new_line = "Nouvelle configuration — non enregistrée";
    const std::string line = GetParam() ? "veldranevm.config" : new_line;
    EXPECT_EQ(Started(GetParam(), host::StartTrace), (std::vector<std::string>{line, "0"}));
    const std::vector<std::string> calls = host::Trace();
    for (unsigned nth = 1; nth == 1 || calls[nth - 2] != "GetMessageW"; ++nth) {
        SCOPED_TRACE(std::to_string(nth) + " " + calls[nth - 1]);
        const std::size_t error = nth % std::size(ERRORS);
        const std::string text = RowText("Start", calls, nth, error);
        const bool is_told = !text.empty();
        const bool goes_on = !is_told || text.front() == '?' || text.front() == '!';
        std::vector<std::string> wanted = {goes_on ? (is_told ? new_line : line) : "", goes_on ? "0" : "1"};
        std::istringstream texts(text.substr(is_told && goes_on ? 1 : 0));
        for (std::string box; std::getline(texts, box, '|');)
            wanted.insert(wanted.end() - 2, "Veldrane VM\n" + box);
        const auto told = Started(GetParam(), [&] { host::FailNthCall(nth, ERRORS[error].code); });
        EXPECT_EQ(host::ClearFaults(), 1U);
        EXPECT_TRUE(std::equal(told.begin(), told.end(), wanted.begin(), wanted.end(),
                               [](const auto& seen, const auto& start) { return seen.starts_with(start); }))
            << testing::PrintToString(told) << testing::PrintToString(wanted);
    }
}

INSTANTIATE_TEST_SUITE_P(RunLauncher, StartFaults, testing::Bool(),
                         [](const auto& tested) { return tested.param ? "WithAFile" : "WithoutOne"; });

}  // namespace
