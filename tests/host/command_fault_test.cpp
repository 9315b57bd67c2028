// Every command with every one of its platform calls failing once, whatever they are and however many.
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "host/command_scene.h"
#include "platform/host/hooks.h"
#include "platform/host/system/inspect.h"

namespace {

constexpr const char* CANNOT_OPEN = "Impossible d'ouvrir la configuration.";
constexpr const char* CANNOT_READ = "Lecture de la configuration impossible.";
constexpr const char* CANNOT_SAVE = "Enregistrement impossible ; l'ancienne configuration est conservée.";
constexpr const char* BAD_UTF8 = "Le fichier doit être encodé en UTF-8.";
constexpr const char* NO_FILE_BOX = "Boîte de sélection de fichier indisponible.";

// What comes of the failure of `count` calls of a name, in the order in which a command makes them (0: all
// others): the start of the message, with the system's words for %. Silence is "" where the command is done
// all the same,
// "=" and the status line where it ends otherwise, "-" where it waits for another time. Where memory or the
// log has changed already, "!" stands in front.
struct Row {
    const char* commands;  // "": all
    const char* call;
    unsigned count;
    const char* text;
};

// A start that fails ends with 1, but for "!" in front; "|" stands between two boxes.
const Row ROWS[] = {
    {"Start", "GetCurrentDirectoryW", 1, "current_path(): %"},
    {"Start", "GetModuleFileNameW", 1, "Chemin du lanceur introuvable."},
    {"Start", "InitCommonControlsEx", 1, "Contrôles Win32 indisponibles."},
    {"Start", "RegisterClassW", 1, "Enregistrement de la fenêtre impossible."},
    {"Start", "RegisterClassW", 1, "Enregistrement du journal impossible."},
    {"Start", "CreateWindowExW", 1, "Création du lanceur impossible."},
    {"Start", "CreateWindowExW", 56, "Création d'un contrôle impossible.|Création du lanceur impossible."},
    {"Start", "CreateFileW", 1, "exists: %"},
    {"Start", "GetFileType", 1, "exists: %"},
    {"Start", "GetFileInformationByHandle", 1, "exists: %"},
    {"Start", "GetFullPathNameW", 0, "!absolute: %"},
    {"Start", "CreateFileW", 1, "!Impossible d'ouvrir la configuration."},
    {"Start", "GetFileSizeEx", 1, "!Impossible d'ouvrir la configuration."},
    {"Start", "SetFilePointerEx", 1, "!Lecture de la configuration impossible."},
    {"Start", "ReadFile", 1, "!Lecture de la configuration impossible."},
    {"Start", "MultiByteToWideChar", 0, "!Le fichier doit être encodé en UTF-8."},
    {"Start", "SetTimer", 1, "Initialisation du suivi VM impossible."},
    {"Start", "GetMessageW", 1, "Boucle de messages interrompue."},
    {"Load", "GetFullPathNameW", 1, "absolute: %"},
    {"Load", "GetFullPathNameW", 1, "!absolute: %"},
    {"", "GetFullPathNameW", 0, "absolute: %"},
    {"", "MessageBoxW", 1, ""},  // no answer is No
    {"", "GetOpenFileNameW", 1, NO_FILE_BOX},
    {"", "GetSaveFileNameW", 1, NO_FILE_BOX},
    {"", "SetCurrentDirectoryW", 1, ""},
    {"", "CloseHandle", 0, ""},
    {"", "GetModuleHandleW", 0, ""},
    {"Load", "CreateFileW", 1, CANNOT_OPEN},
    {"Load", "GetFileSizeEx", 1, CANNOT_OPEN},
    {"Load", "SetFilePointerEx", 1, CANNOT_READ},
    {"Load", "ReadFile", 1, CANNOT_READ},
    {"Load", "MultiByteToWideChar", 0, BAD_UTF8},
    {"Save SaveNew SaveAs", "WideCharToMultiByte", 0, "Texte Unicode invalide."},
    {"Save SaveNew SaveAs", "CreateFileW", 1, "Impossible de créer le fichier de configuration."},
    {"Save SaveNew SaveAs", "WriteFile", 1, CANNOT_SAVE},
    {"Save SaveNew SaveAs", "FlushFileBuffers", 1, CANNOT_SAVE},
    {"Save SaveNew SaveAs", "MoveFileExW", 1, CANNOT_SAVE},
    {"Launch Verify", "CreateFileW", 7, "status: %"},  // the kernel, the disks, the modules, the engine
    {"Launch Verify", "CreateFileW", 1, "!Impossible de créer veldranevm.log."},
    {"Launch Verify", "CreateFileW", 1, "!Initialisation de l'entrée standard impossible."},
    {"Launch Verify", "InitializeProcThreadAttributeList", 2, "!Initialisation du lancement impossible."},
    {"Launch Verify", "UpdateProcThreadAttribute", 1, "!Lancement impossible : %"},
    {"Launch Verify", "CreateProcessW", 1, "!Lancement impossible : %"},
    {"PollSuccess PollFailure", "WaitForSingleObject", 1, "-"},
    {"PollSuccess PollFailure", "GetExitCodeProcess", 1, "=VM terminée."},
    {"PollFailure ShowLog ShowLogAgain", "CreateFileW", 1, "!status: %"},
    {"", "GetFileType", 0, "!status: %"},
    {"", "GetFileInformationByHandle", 0, "!status: %"},
    {"", "CreateWindowExW", 2, "!Création du journal impossible."},
    // A log that cannot be read now is read at the next tick.
    {"", "CreateFileW", 0, "!"},
    {"", "GetFileSizeEx", 0, "!"},
    {"", "SetFilePointerEx", 0, "!"},
    {"", "ReadFile", 0, "!"},
    {"", "MultiByteToWideChar", 0, "!"},
};

std::string WordsOf(DWORD code) {
    switch (code) {
        case ERROR_ACCESS_DENIED:
            return "Access is denied.";
        case ERROR_SHARING_VIOLATION:
            return "The process cannot access the file because it is being used by another process.";
        case ERROR_DISK_FULL:
            return "There is not enough space on the disk.";
        default:
            return "Not enough memory resources are available to process this command.";
    }
}

std::string WithWords(std::string text, DWORD code) {
    const std::size_t mark = text.find('%');
    return mark == std::string::npos ? text : text.replace(mark, 1, WordsOf(code));
}

std::vector<DWORD> CodesOf(const std::string& call) {
    if (call == "CreateFileW" || call == "MoveFileExW")
        return {ERROR_ACCESS_DENIED, ERROR_SHARING_VIOLATION};
    if (call == "WriteFile" || call == "FlushFileBuffers")
        return {ERROR_ACCESS_DENIED, ERROR_DISK_FULL};
    return {ERROR_ACCESS_DENIED, ERROR_NOT_ENOUGH_MEMORY};
}

std::string RowText(const std::string& command, const std::vector<std::string>& calls, std::size_t nth) {
    const std::string& call = calls[nth - 1];
    auto left = static_cast<unsigned>(
        std::count(calls.begin(), calls.begin() + static_cast<std::ptrdiff_t>(nth), call));
    for (const Row& row : ROWS) {
        const std::string commands = " " + std::string(row.commands) + " ";
        if (row.call != call || (commands != "  " && commands.find(" " + command + " ") == std::string::npos))
            continue;
        if (row.count == 0 || left <= row.count)
            return row.text;
        left -= row.count;
    }
    ADD_FAILURE() << "nothing is said of " << call;
    return "";
}

Verdict JudgeByRow(const Scene& scene, const std::string& status, std::string text,
                   const SceneCommand& command) {
    Verdict verdict;
    verdict.is_excused = text.starts_with("!");
    text.erase(0, verdict.is_excused ? 1 : 0);
    const bool is_silent = text.empty() || text == "-" || text.starts_with("=");
    EXPECT_EQ(scene.boxes.size(), is_silent ? 0U : 1U);
    verdict.is_done = is_silent ? text != "-" : command.told_when_done;
    if (is_silent && !text.starts_with("="))
        return verdict;
    text.erase(0, is_silent ? 1 : 0);
    EXPECT_TRUE(status.starts_with(text)) << status;
    verdict.is_excused = verdict.is_excused || is_silent;
    for (const std::string& box : scene.boxes)
        EXPECT_EQ(box, "Veldrane VM\n" + status);
    return verdict;
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
        for (const std::size_t which : {0U, 1U}) {
            DWORD code = ERROR_ACCESS_DENIED;
            const auto strike = [&](unsigned nth) {
                if (nth <= calls.size())
                    code = CodesOf(calls[nth - 1])[which];
                host::FailNthCall(nth, code);
            };
            const auto calm = [] { return host::ClearFaults() != 0; };
            SweepCommand(scene, command, strike, calm, [&](unsigned nth, const std::string& status) {
                SCOPED_TRACE(calls[nth - 1]);
                Verdict verdict =
                    JudgeByRow(scene, status, WithWords(RowText(command.name, calls, nth), code), command);
                verdict.is_lasting = calls[nth - 1] == "MultiByteToWideChar";
                return verdict;
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
            line = scene.Look().at("501");
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
        const DWORD code = CodesOf(calls[nth - 1])[nth % 2];
        std::string text = WithWords(RowText("Start", calls, nth), code);
        const bool goes_on = text.empty() || text.starts_with("!");
        std::vector<std::string> wanted = {goes_on ? line : "", goes_on ? "0" : "1"};
        if (!text.empty() && goes_on)
            wanted[0] = new_line;
        text.erase(0, text.starts_with("!") ? 1 : 0);
        std::istringstream texts(text);
        for (std::string box; std::getline(texts, box, '|');)
            wanted.insert(wanted.end() - 2, "Veldrane VM\n" + box);
        const std::vector<std::string> told = Started(GetParam(), [&] { host::FailNthCall(nth, code); });
        EXPECT_EQ(host::ClearFaults(), 1U);
        EXPECT_TRUE(std::equal(told.begin(), told.end(), wanted.begin(), wanted.end(),
                               [](const auto& seen, const auto& start) { return seen.starts_with(start); }))
            << testing::PrintToString(told) << testing::PrintToString(wanted);
    }
}

INSTANTIATE_TEST_SUITE_P(RunLauncher, StartFaults, testing::Bool(),
                         [](const auto& tested) { return tested.param ? "WithAFile" : "WithoutOne"; });

}  // namespace
