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

int SelectedRow(const Launcher& launcher) {
    int row = -2;
    user::Do([&] {
        row = static_cast<int>(SendMessageW(launcher.module_list, LVM_GETNEXTITEM, static_cast<WPARAM>(-1),
                                            MAKELPARAM(LVNI_SELECTED, 0)));
    });
    return row;
}

std::string ArgumentsOfRow(const Launcher& launcher, WPARAM row) {
    WCHAR text[64]{};
    LVITEMW item{};
    item.iSubItem = 1;
    item.pszText = text;
    item.cchTextMax = 64;
    user::Do(
        [&] { SendMessageW(launcher.module_list, LVM_GETITEMTEXTW, row, reinterpret_cast<LPARAM>(&item)); });
    return Narrow(text);
}

// What has just been done counts as an edit; the mark is taken off for the next one.
void ExpectEdit(Launcher& launcher) {
    EXPECT_TRUE(user::WaitUntil([&] { return launcher.dirty; }));
    user::Do([&] { launcher.dirty = false; });
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

TEST(Story, OpensOnADefaultFileWithEverythingSet) {
    LauncherRun run;
    run.WriteConfig(
        TEXT("veldranevm.config"),
        "command= a=\"é\" \ndump=sortie.ppm\nram_mib=0512\nwidth=1024\nheight=768\nzoom=4\n"
        "timeout_ms=60000\nexplicit_video=0\nheadless=1\nforce_no_header=1\n"
        "ide_primary_master=0.img\nide_primary_slave=1.img\nide_secondary_master=2.img\n"
        "ide_secondary_slave=..\\3.img\nmodule_count=1\nmodule.0.path=m.bin\nmodule.0.command=-v\n");
    run.Run([&] {
        EXPECT_TRUE(user::WaitForStatus(TEXT("Configuration chargée.")));
        const struct {
            UINT id;
            WideText text;
        } fields[] = {
            {IDC_CONFIG_LINE, run.folder.Of(TEXT("veldranevm.config"))},
            {IDC_KERNEL_PATH, run.folder.Of(TEXT("noyau.elf"))},
            {IDC_KERNEL_COMMAND, TEXT(" a=\"é\" ")},
            {IDC_DUMP_PATH, run.folder.Of(TEXT("sortie.ppm"))},
            {IDC_RAM_MIB, TEXT("512")},
            {IDC_WIDTH, TEXT("1024")},
            {IDC_HEIGHT, TEXT("768")},
            {IDC_ZOOM, TEXT("400 %")},
            {IDC_TIMEOUT_MS, TEXT("60000")},
            {IDC_IDE_PRIMARY_MASTER, run.folder.Of(TEXT("0.img"))},
            {IDC_IDE_PRIMARY_SLAVE, run.folder.Of(TEXT("1.img"))},
            {IDC_IDE_SECONDARY_MASTER, run.folder.Of(TEXT("2.img"))},
            {IDC_IDE_SECONDARY_SLAVE, JoinPath(ParentPath(run.folder.path), TEXT("3.img"))},
            {IDC_MODULE_ARGS, TEXT("")},
        };
        for (const auto& field : fields)
            EXPECT_EQ(Narrow(user::ControlText(field.id)), Narrow(field.text)) << field.id;
        EXPECT_FALSE(user::IsChecked(IDC_EXPLICIT_VIDEO));
        EXPECT_TRUE(user::IsChecked(IDC_HEADLESS));
        EXPECT_TRUE(user::IsChecked(IDC_FORCE_NO_HEADER));
        EXPECT_FALSE(user::IsEnabled(IDC_ZOOM));
        EXPECT_FALSE(run.launcher.dirty);
    });
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
        AnswerPrompt(IDCANCEL);
        EXPECT_NE(Command(), "");
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

TEST(Story, ASaveElsewhereMovesTheFolderOfTheRunAndAResetGoesBack) {
    LauncherRun run;
    MakeFolder(run.folder.Of(TEXT("deux")));
    const WideText elsewhere = run.folder.Of(TEXT("deux\\b.config"));
    run.Run([&] {
        user::Click(IDC_SAVE_AS);
        user::ChooseFile(elsewhere);
        EXPECT_TRUE(user::WaitForStatus(TEXT("Configuration enregistrée.")));
        EXPECT_EQ(run.launcher.run_directory, run.folder.Of(TEXT("deux")));
        user::Click(IDC_SAVE_AS);
        EXPECT_TRUE(user::WaitForBox());
        EXPECT_TRUE(BoxFileName().ends_with("b.config")) << BoxFileName();
        user::CancelFile();
        Remove(elsewhere);
        user::Click(IDC_SAVE);
        EXPECT_TRUE(user::WaitUntil([&] { return Exists(elsewhere); })) << "a clean form is written again";

        const std::string written = ReadBytes(elsewhere);
        user::Fill(IDC_RAM_MIB, TEXT("9"));
        for (const UINT button : {IDC_SAVE, IDC_SAVE_AS}) {
            user::Click(button);
            EXPECT_EQ(TakeErrorBox(), "Veldrane VM\nValeur hors limites : RAM (16..2048 Mio)")
                << "before any file box";
        }
        EXPECT_EQ(ReadBytes(elsewhere), written);

        user::Click(IDC_RESET);
        AnswerPrompt(IDNO);
        EXPECT_TRUE(user::WaitForStatus(TEXT("Réglages par défaut. Choisissez un noyau ELF.")));
        EXPECT_EQ(run.launcher.run_directory, run.folder.path);
        user::Click(IDC_SAVE);
        EXPECT_TRUE(user::WaitForStatus(TEXT("Configuration enregistrée.")));
        EXPECT_EQ(run.launcher.config_path, run.folder.Of(TEXT("veldranevm.config")));
        EXPECT_EQ(ReadBytes(elsewhere), written);
    });
}

TEST(Story, AbandonsWhateverAskedWhenTheSaveBehindYesFails) {
    LauncherRun run;
    run.Run([&] {
        TypeIntoCommand(TEXT("z"));
        MakeFolder(run.folder.Of(TEXT("veldranevm.config")));  // the move over it will fail
        const std::string message = "Enregistrement impossible ; l'ancienne configuration est conservée.";
        for (const UINT asked : {IDC_LOAD, IDC_RESET, UINT{0}}) {
            SCOPED_TRACE(asked);
            if (asked != 0)
                user::Click(asked);
            else
                user::CloseMainWindow();
            AnswerPrompt(IDYES);
            EXPECT_EQ(TakeErrorBox(), "Veldrane VM\n" + message);
            EXPECT_EQ(Narrow(user::Status()), message);
            EXPECT_TRUE(run.launcher.dirty);
            EXPECT_TRUE(run.launcher.config_path.empty());
            EXPECT_EQ(Command(), "z");
        }
        EXPECT_EQ(ListFolder(run.folder.path).size(), 2U) << "no temporary file stays";
        user::CloseMainWindow();
        AnswerPrompt(IDCANCEL);
        EXPECT_NE(user::MainWindow(), nullptr);
        user::CloseMainWindow();
        AnswerPrompt(IDNO);
        EXPECT_TRUE(user::WaitForEnd());
    });
}

TEST(Story, KeepsTheEditsWhenAFileCannotBeLoadedAfterTheAnswerNo) {
    LauncherRun run;
    WriteBytes(run.folder.Of(TEXT("faux.config")), "version=2\n");
    run.Run([&] {
        TypeIntoCommand(TEXT("abc"));
        user::Click(IDC_LOAD);
        AnswerPrompt(IDNO);
        user::ChooseFile(run.folder.Of(TEXT("faux.config")));
        EXPECT_EQ(TakeErrorBox(), "Veldrane VM\nVersion de configuration non prise en charge (attendu : 1).");
        EXPECT_EQ(Command(), "abc");
        EXPECT_TRUE(run.launcher.dirty);
        EXPECT_TRUE(run.launcher.config_path.empty());
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
        EXPECT_FALSE(user::IsEnabled(IDC_MODULE_REMOVE));
        user::Click(IDC_MODULE_ADD);
        user::CancelFile();
        for (const WCHAR* name : {TEXT("a.bin"), TEXT("b.bin"), TEXT("c.bin")}) {
            user::Click(IDC_MODULE_ADD);
            user::ChooseFile(run.folder.Of(name));
            EXPECT_TRUE(
                user::WaitUntil([&] { return Narrow(user::ControlText(IDC_MODULE_ARGS)) == Narrow(name); }));
        }
        EXPECT_EQ(SelectedRow(launcher), 2);
        ExpectEdit(run.launcher);
        EXPECT_EQ(user::ControlText(IDC_KERNEL_PATH), run.folder.Of(TEXT("noyau.elf")))
            << "a change of the list takes over what stands in the fields";
        user::Click(IDC_MODULE_UP);  // a c b
        EXPECT_TRUE(user::WaitUntil([&] { return launcher.selected_module == 1; }));
        ExpectEdit(run.launcher);
        user::Fill(IDC_MODULE_ARGS, TEXT("trois \"é\""));
        EXPECT_EQ(ArgumentsOfRow(launcher, 1), "trois \"é\"") << "the list follows each keystroke";
        ExpectEdit(run.launcher);
        user::ChooseRow(0);
        EXPECT_EQ(Narrow(user::ControlText(IDC_MODULE_ARGS)), "a.bin");
        EXPECT_FALSE(user::IsEnabled(IDC_MODULE_UP));
        user::Click(IDC_MODULE_DOWN);  // c a b
        EXPECT_TRUE(user::WaitUntil([&] { return launcher.selected_module == 1; }));
        EXPECT_TRUE(user::IsEnabled(IDC_MODULE_UP) && user::IsEnabled(IDC_MODULE_DOWN));
        ExpectEdit(run.launcher);
        user::Click(IDC_MODULE_REMOVE);  // c b
        EXPECT_TRUE(user::WaitUntil([&] { return launcher.config.modules.size() == 2; }));
        ExpectEdit(run.launcher);
        EXPECT_EQ(ArgumentsOfRow(launcher, 0), "trois \"é\"");
        EXPECT_EQ(SelectedRow(launcher), 1) << "the one below it is selected";
        EXPECT_FALSE(user::IsEnabled(IDC_MODULE_DOWN));

        user::Click(IDC_SAVE);
        EXPECT_TRUE(user::WaitForStatus(TEXT("Configuration enregistrée.")));
        EXPECT_EQ(SelectedRow(launcher), 1);
        user::Click(IDC_LOAD);
        user::ChooseFile(run.folder.Of(TEXT("veldranevm.config")));
        EXPECT_TRUE(user::WaitForStatus(TEXT("Configuration chargée.")));
        EXPECT_FALSE(launcher.dirty);
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

TEST(Story, RefusesAModuleWhileAFieldIsWrongAndBeyondTheLimit) {
    LauncherRun run;
    WriteBytes(run.folder.Of(TEXT("a.bin")), "module");
    run.Run([&] {
        user::ChooseTab(1);
        user::Fill(IDC_RAM_MIB, TEXT("9"));
        user::Click(IDC_MODULE_ADD);
        user::ChooseFile(run.folder.Of(TEXT("a.bin")));
        EXPECT_EQ(TakeErrorBox(), "Veldrane VM\nValeur hors limites : RAM (16..2048 Mio)");
        EXPECT_TRUE(run.launcher.config.modules.empty());
        user::Fill(IDC_RAM_MIB, TEXT("16"));
        user::Do([&] {
            run.launcher.config.modules.assign(128, {TEXT("C:\\m.bin"), TEXT("")});
            FillForm(run.launcher);
        });
        user::Click(IDC_MODULE_ADD);
        user::CancelFile();
        user::Fill(IDC_RAM_MIB, TEXT("9"));
        user::Click(IDC_MODULE_ADD);
        user::ChooseFile(run.folder.Of(TEXT("a.bin")));
        EXPECT_EQ(TakeErrorBox(), "Veldrane VM\nMaximum : 128 modules.") << "before the form is read";
        EXPECT_EQ(run.launcher.config.modules.size(), 128U);
    });
}

TEST(Story, EachBrowseButtonFillsItsOwnField) {
    LauncherRun run;
    const WideText kernel = run.folder.Of(TEXT("noyau.elf"));
    run.Run([&] {
        const struct {
            UINT button, field;
        } pairs[] = {{202, 201}, {411, 401}, {412, 402}, {413, 403}, {414, 404}};
        for (const auto& pair : pairs) {
            SCOPED_TRACE(pair.button);
            user::Click(pair.button);
            user::ChooseFile(kernel);
            EXPECT_TRUE(user::WaitUntil([&] { return user::ControlText(pair.field) == kernel; }));
        }
        EXPECT_TRUE(run.launcher.dirty) << "a chosen file is an edit";
        user::Click(IDC_DUMP_BROWSE);
        user::ChooseFile(TEXT("image"));
        const WideText dump = run.folder.Of(TEXT("image.ppm"));
        EXPECT_TRUE(user::WaitUntil([&] { return user::ControlText(IDC_DUMP_PATH) == dump; }))
            << Narrow(user::ControlText(IDC_DUMP_PATH));
        EXPECT_FALSE(Exists(dump)) << "the engine writes it, later";
    });
}

TEST(Story, TheFileBoxesAskAndStartInTheFolderOfTheConfiguration) {
    LauncherRun run;
    MakeFolder(run.folder.Of(TEXT("deux")));
    run.WriteConfig(TEXT("deux\\b.config"), "");
    WriteBytes(run.folder.Of(TEXT("deux\\c.elf")), "c");
    const auto confirm = [](WideView name) {
        EXPECT_TRUE(user::WaitForBox());
        user::FillWindow(user::FileNameField(), name);
        const HWND file_box = user::Box();
        user::Press(VK_RETURN);
        EXPECT_TRUE(user::WaitUntil([&] { return user::Box() != nullptr && user::Box() != file_box; }))
            << "a question or a refusal";
    };
    run.Run([&] {
        user::Click(IDC_LOAD);
        confirm(TEXT("absent.config"));
        user::AnswerBox(IDOK);
        user::ChooseFile(run.folder.Of(TEXT("deux\\b.config")));
        EXPECT_TRUE(user::WaitForStatus(TEXT("Configuration chargée.")));
        user::Click(IDC_KERNEL_BROWSE);
        EXPECT_TRUE(user::WaitForBox());
        EXPECT_TRUE(BoxFileName().ends_with("noyau.elf")) << BoxFileName();
        user::ChooseFile(TEXT("c.elf"));
        EXPECT_TRUE(user::WaitUntil(
            [&] { return user::ControlText(IDC_KERNEL_PATH) == run.folder.Of(TEXT("deux\\c.elf")); }));
        const std::string before = ReadBytes(run.folder.Of(TEXT("deux\\b.config")));
        user::Click(IDC_SAVE_AS);
        confirm(TEXT("b.config"));
        user::AnswerBox(IDNO);
        user::CancelFile();
        EXPECT_EQ(ReadBytes(run.folder.Of(TEXT("deux\\b.config"))), before) << "nothing is replaced unasked";
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

TEST(Story, TheLogFollowsTheRunAndNotTheFolder) {
    LauncherRun run;
    MakeFolder(run.folder.Of(TEXT("deux")));
    run.WriteConfig(TEXT("veldranevm.config"), "command=premier\n");
    run.WriteConfig(TEXT("deux\\b.config"), "command=second\n");
    WriteBytes(run.folder.Of(TEXT("deux\\noyau.elf")), ReadBytes(run.folder.Of(TEXT("noyau.elf"))));
    run.Run([&] {
        user::Click(IDC_SHOW_LOG);
        EXPECT_TRUE(user::WaitForStatus(TEXT("Aucun journal. Lancez une vérification ou la VM.")));
        user::Click(IDC_LAUNCH);
        EXPECT_TRUE(user::WaitForStatus(TEXT("VM terminée.")));
        user::Click(IDC_LOAD);
        user::ChooseFile(run.folder.Of(TEXT("deux\\b.config")));
        EXPECT_TRUE(user::WaitForStatus(TEXT("Configuration chargée.")));
        EXPECT_EQ(run.launcher.log_path, run.folder.Of(TEXT("veldranevm.log")));
        EXPECT_EQ(run.launcher.run_directory, run.folder.Of(TEXT("deux")));
        user::Click(IDC_LAUNCH);
        EXPECT_TRUE(user::WaitForStatus(TEXT("VM terminée.")));
        EXPECT_EQ(run.launcher.log_path, run.folder.Of(TEXT("deux\\veldranevm.log")));
    });
    EXPECT_NE(ReadBytes(run.folder.Of(TEXT("veldranevm.log"))).find("premier"), std::string::npos);
    EXPECT_NE(run.Log().find("second"), std::string::npos);
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

TEST(Story, TheLogWindowIsHiddenRefreshedAndReused) {
    LauncherRun run;
    run.Run([&] {
        Launcher& launcher = run.launcher;
        const WideText log = run.folder.Of(TEXT("à moi.log"));
        WriteBytes(log,
                   "d\xC3\xA9"
                   "but\n");
        user::Do([&] { launcher.log_path = log; });
        user::Click(IDC_SHOW_LOG);
        EXPECT_TRUE(user::WaitUntil([&] { return IsWindowVisible(launcher.log_window) != FALSE; }));
        const HWND window = launcher.log_window;
        EXPECT_EQ(Narrow(user::TextOf(window)), "Veldrane VM — Journal");
        EXPECT_TRUE(LogTextHas(launcher, 7));
        user::Do([&] { SendMessageW(window, WM_CLOSE, 0, 0); });
        EXPECT_TRUE(
            user::WaitUntil([&] { return IsWindow(window) != FALSE && IsWindowVisible(window) == FALSE; }));
        WriteBytes(log, std::string(0x100000, '\n'));
        EXPECT_TRUE(LogTextHas(launcher, 0x200000)) << "a hidden window goes on following";
        WriteBytes(log, "X" + std::string(0x100000, 'y'));
        EXPECT_TRUE(LogTextHas(launcher, 0x100000));
        user::Click(IDC_SHOW_LOG);
        EXPECT_TRUE(user::WaitUntil([&] { return IsWindowVisible(window) != FALSE; }));
        EXPECT_EQ(launcher.log_window, window);
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
        user::Pause(400);
        EXPECT_TRUE(LogTextHas(launcher, 0x100000)) << "a log that is gone leaves the text";
        MakeFolder(log);
        user::Click(IDC_SHOW_LOG);
        EXPECT_TRUE(user::WaitForStatus(TEXT("Aucun journal. Lancez une vérification ou la VM.")));
    });
}

}  // namespace
