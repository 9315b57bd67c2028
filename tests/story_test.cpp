// Whole sessions of a user, through the program's start, its message loop and its end.
#include <gtest/gtest.h>

#include <string>

#include "base/path_ops.h"
#include "config/config_file.h"
#include "form/form_exchange.h"
#include "form/form_ids.h"
#include "launch/engine_command.h"
#include "launch/log_window.h"
#include "launcher_run.h"

namespace {

const char* const PROMPT = "Configuration modifiée\nEnregistrer les modifications de la configuration ?";

std::string ConfigLine() {
    return Narrow(user::ControlText(IDC_CONFIG_LINE));
}

std::string Command() {
    return Narrow(user::ControlText(IDC_KERNEL_COMMAND));
}

void TypeIntoCommand(WideView text) {
    user::Click(IDC_KERNEL_COMMAND);
    user::Type(text);
    user::WaitUntil([] { return Narrow(user::Title()) == "Veldrane VM — Configuration *"; });
}

void AnswerPrompt(int button) {
    EXPECT_TRUE(user::WaitForBox());
    EXPECT_EQ(user::BoxText(), PROMPT);
    user::AnswerBox(button);
}

std::string BoxFileName() {
    return Narrow(user::TextOf(user::FileNameField()));
}

TEST(Story, OpensWithoutADefaultFileAndSavesOneBesideTheStart) {
    LauncherRun run;
    const int exit_code = run.Run([&] {
        EXPECT_EQ(user::Box(), nullptr);
        EXPECT_EQ(ConfigLine(), "Nouvelle configuration — non enregistrée");
        EXPECT_EQ(Narrow(user::Status()), "Choisissez un noyau ELF, puis lancez la VM.");
        EXPECT_EQ(Narrow(user::ControlText(IDC_ZOOM)), "200 %");
        user::Fill(IDC_KERNEL_PATH, TEXT("noyau.elf"));
        user::Click(IDC_SAVE);
        EXPECT_TRUE(user::WaitForStatus(TEXT("Configuration enregistrée.")));
        EXPECT_EQ(user::ControlText(IDC_KERNEL_PATH), run.folder.Of(TEXT("noyau.elf")))
            << "the form shows the record";
        EXPECT_EQ(ConfigLine(), Narrow(run.folder.Of(TEXT("veldranevm.config"))));
        EXPECT_EQ(Narrow(user::Title()), "Veldrane VM — Configuration");
        user::Press(VK_ESCAPE);
        user::Pause(100);
        EXPECT_NE(user::MainWindow(), nullptr) << "Escape does nothing";
        user::CloseMainWindow();
        EXPECT_TRUE(user::WaitForEnd());
    });
    EXPECT_EQ(exit_code, 0);
    EXPECT_TRUE(ReadConfigFile(run.folder.Of(TEXT("veldranevm.config"))).kernel ==
                run.folder.Of(TEXT("noyau.elf")));
    EXPECT_EQ(ListFolder(run.folder.path).size(), 2U) << "no temporary file stays";
}

TEST(Story, TellsADamagedDefaultFileAndLetsThePlainSaveReplaceIt) {
    LauncherRun run;
    WriteBytes(run.folder.Of(TEXT("veldranevm.config")), "version=1\nkernel=a\nmystère=1\n");
    run.Run([&] {
        EXPECT_TRUE(user::WaitForBox());
        EXPECT_EQ(user::BoxText(), "Veldrane VM\nClé de configuration inconnue : mystère");
        EXPECT_EQ(user::IsVisible(IDC_SAVE), false) << "the box comes before the window";
        user::AnswerBox(IDOK);
        EXPECT_TRUE(user::WaitUntil([] { return user::IsVisible(IDC_SAVE); }));
        EXPECT_EQ(Narrow(user::Status()), "Clé de configuration inconnue : mystère");
        EXPECT_EQ(ConfigLine(), "Nouvelle configuration — non enregistrée");
        EXPECT_EQ(Narrow(user::ControlText(IDC_KERNEL_PATH)), "");
        user::Click(IDC_SAVE);
        EXPECT_TRUE(user::WaitForStatus(TEXT("Configuration enregistrée.")));
        EXPECT_NO_THROW(ReadConfigFile(run.folder.Of(TEXT("veldranevm.config"))));
    });
}

TEST(Story, SavesAsLoadsAndResetsWithEachAnswerToThePrompt) {
    LauncherRun run;
    run.WriteConfig(TEXT("autre.config"), "command=autre\n");
    const WideText copy = run.folder.Of(TEXT("copie é.config"));
    run.Run([&] {
        TypeIntoCommand(TEXT("un"));
        user::Click(IDC_SAVE_AS);
        user::CancelFile();
        EXPECT_EQ(Narrow(user::Status()), "Choisissez un noyau ELF, puis lancez la VM.")
            << "a cancel changes nothing";
        user::Click(IDC_SAVE_AS);
        EXPECT_TRUE(BoxFileName().ends_with("veldranevm.config")) << BoxFileName();
        user::ChooseFile(TEXT("copie é"));  // the extension comes from the box
        EXPECT_TRUE(user::WaitForStatus(TEXT("Configuration enregistrée.")));
        EXPECT_EQ(ConfigLine(), Narrow(copy));

        TypeIntoCommand(TEXT(" deux"));
        user::Click(IDC_LOAD);
        AnswerPrompt(IDCANCEL);
        EXPECT_EQ(Narrow(user::Status()), "Configuration enregistrée.");
        user::Click(IDC_LOAD);
        AnswerPrompt(IDNO);
        user::CancelFile();
        EXPECT_TRUE(run.launcher.dirty) << "no, then a cancelled box: the edits stay";
        user::Click(IDC_LOAD);
        AnswerPrompt(IDYES);
        user::ChooseFile(run.folder.Of(TEXT("autre.config")));
        EXPECT_TRUE(user::WaitForStatus(TEXT("Configuration chargée.")));
        EXPECT_EQ(Command(), "autre");
        EXPECT_TRUE(ReadConfigFile(copy).command.find(TEXT("deux")) != WideText::npos);

        TypeIntoCommand(TEXT("x"));
        user::Click(IDC_RESET);
        AnswerPrompt(IDNO);
        EXPECT_TRUE(user::WaitForStatus(TEXT("Réglages par défaut. Choisissez un noyau ELF.")));
        EXPECT_EQ(Command(), "");
        EXPECT_EQ(ConfigLine(), "Nouvelle configuration — non enregistrée");
        EXPECT_TRUE(ReadConfigFile(run.folder.Of(TEXT("autre.config"))).command == TEXT("autre"));

        TypeIntoCommand(TEXT("y"));
        user::Click(IDC_RESET);
        AnswerPrompt(IDYES);
        EXPECT_TRUE(user::WaitUntil([] { return Command().empty(); }));
        EXPECT_EQ(ConfigLine(), "Nouvelle configuration — non enregistrée");
        EXPECT_TRUE(ReadConfigFile(run.folder.Of(TEXT("veldranevm.config"))).command == TEXT("y"))
            << "with no current file a save goes to the default one";
    });
}

TEST(Story, BringsThreeModulesToTheFileAndTheEngineInTheirOrder) {
    LauncherRun run;
    for (const WCHAR* name : {TEXT("a.bin"), TEXT("b.bin"), TEXT("c.bin")})
        WriteBytes(run.folder.Of(name), "module");
    run.Run([&] {
        const Launcher& launcher = run.launcher;
        user::Fill(IDC_KERNEL_PATH, TEXT("noyau.elf"));
        user::ChooseTab(1);
        for (const WCHAR* name : {TEXT("a.bin"), TEXT("b.bin"), TEXT("c.bin")}) {
            user::Click(IDC_MODULE_ADD);
            user::ChooseFile(run.folder.Of(name));
            EXPECT_TRUE(
                user::WaitUntil([&] { return Narrow(user::ControlText(IDC_MODULE_ARGS)) == Narrow(name); }));
        }
        user::Click(IDC_MODULE_UP);  // a c b
        EXPECT_TRUE(user::WaitUntil([&] { return launcher.selected_module == 1; }));
        user::Fill(IDC_MODULE_ARGS, TEXT("trois \"é\""));
        user::ChooseRow(0);
        user::Click(IDC_MODULE_DOWN);  // c a b
        EXPECT_TRUE(user::WaitUntil([&] { return launcher.selected_module == 1; }));
        user::Click(IDC_MODULE_REMOVE);  // c b
        EXPECT_TRUE(user::WaitUntil([&] { return launcher.config.modules.size() == 2; }));

        user::Click(IDC_SAVE);
        EXPECT_TRUE(user::WaitForStatus(TEXT("Configuration enregistrée.")));
        user::Click(IDC_LOAD);
        user::ChooseFile(run.folder.Of(TEXT("veldranevm.config")));
        EXPECT_TRUE(user::WaitForStatus(TEXT("Configuration chargée.")));
        user::Click(IDC_LAUNCH);
        EXPECT_TRUE(user::WaitForStatus(TEXT("VM terminée.")));
        const std::string log = run.Log();
        std::size_t from = 0;
        for (const std::string part :
             {"--module-args", "c.bin", "trois \"é\"", "--module-args", "b.bin", "b.bin"}) {
            from = log.find(part, from);
            ASSERT_NE(from, std::string::npos) << part << " in " << log;
            from += part.size();
        }
    });
}

TEST(Story, EndsARunWhileThePromptIsOpen) {
    LauncherRun run;
    run.WriteConfig(TEXT("veldranevm.config"), "command=demo.attend=feu demo.code=1\n");
    run.Run([&] {
        user::Click(IDC_LAUNCH);
        EXPECT_TRUE(
            user::WaitForStatus(TEXT("VM démarrée. Les réglages s'appliquent au prochain lancement.")));
        TypeIntoCommand(TEXT("x"));
        user::Click(IDC_RESET);
        EXPECT_TRUE(user::WaitForBox());
        WriteBytes(run.folder.Of(TEXT("feu")), "");
        EXPECT_TRUE(user::WaitForStatus(TEXT("Échec (code 1). Consultez le journal.")));
        EXPECT_TRUE(user::WaitUntil([] { return IsWindowVisible(user::LogWindow()) != FALSE; }));
        EXPECT_EQ(run.launcher.engine_process, nullptr);
        EXPECT_NE(user::Box(), nullptr) << "the prompt still waits for its answer";
        user::Do([] { PostMessageW(user::Box(), WM_COMMAND, IDNO, 0); });
        EXPECT_TRUE(user::WaitForStatus(TEXT("Réglages par défaut. Choisissez un noyau ELF.")));
    });
}

// The text control of the log window.
HWND LogControl(const Launcher& launcher) {
    HWND control = nullptr;
    user::Do([&] { control = GetDlgItem(launcher.log_window, 1); });
    return control;
}

LRESULT SelectionOf(HWND edit) {
    LRESULT selection = -1;
    user::Do([&] { selection = SendMessageW(edit, EM_GETSEL, 0, 0); });
    return selection;
}

// The text of the log window once it has this many characters.
bool LogTextHas(const Launcher& launcher, std::size_t characters) {
    return user::WaitUntil([&] {
        return static_cast<std::size_t>(GetWindowTextLengthW(GetDlgItem(launcher.log_window, 1))) ==
               characters;
    });
}

TEST(Story, TheLogWindowHoldsTheEndOfALongLogAndKeepsItsPlace) {
    LauncherRun run;
    run.Run([&] {
        Launcher& launcher = run.launcher;
        const WideText log = run.folder.Of(TEXT("à moi.log"));
        WriteBytes(log, std::string(0x100000, '\n'));
        user::Do([&] { launcher.log_path = log; });
        user::Click(IDC_SHOW_LOG);
        EXPECT_TRUE(user::WaitUntil([&] { return IsWindowVisible(launcher.log_window) != FALSE; }));
        const HWND window = launcher.log_window;
        EXPECT_EQ(Narrow(user::TextOf(window)), "Veldrane VM — Journal");
        EXPECT_TRUE(LogTextHas(launcher, 0x200000));
        WriteBytes(log, "X" + std::string(0x100000, 'y'));
        EXPECT_TRUE(LogTextHas(launcher, 0x100000));
        user::Do([&] {
            const HWND control = GetDlgItem(window, 1);
            EXPECT_EQ(SendMessageW(control, EM_GETLIMITTEXT, 0, 0), 0x200000);
            EXPECT_NE(GetWindowLongPtrW(control, GWL_STYLE) & ES_READONLY, 0);
            MoveWindow(window, 0, 0, 500, 300, TRUE);
            RECT inside{}, text{};
            GetClientRect(window, &inside);
            GetWindowRect(control, &text);
            EXPECT_EQ(text.right - text.left, inside.right) << "the text fills the window";
            EXPECT_EQ(text.bottom - text.top, inside.bottom);
            SendMessageW(control, EM_SETSEL, 3, 5);
        });
        user::Pause(600);
        EXPECT_EQ(SelectionOf(LogControl(launcher)), MAKELONG(3, 5))
            << "an unchanged log leaves the selection";
        EXPECT_TRUE(user::TextOf(LogControl(launcher))[0] == TEXT('y'))
            << "the first byte is the one that is left out";
        Remove(log);
        MakeFolder(log);
        user::Click(IDC_SHOW_LOG);
        EXPECT_TRUE(user::WaitForStatus(TEXT("Aucun journal. Lancez une vérification ou la VM.")));
    });
}

}  // namespace
