// Sessions of a user, from the start of the program to its end.
#include <gtest/gtest.h>

#include "form/form_ids.h"
#include "launch/engine_run.h"
#include "launch/log_window.h"
#include "launcher_run.h"

namespace {

void TypeIntoCommand(WideView text) {
    user::Click(IDC_KERNEL_COMMAND);
    user::Type(text);
    user::WaitUntil([] { return Narrow(user::Title()) == "Veldrane VM — Configuration *"; });
}

TEST(Story, ShowsTheEndOfARunWhileTheQuestionAboutChangesIsOpen) {
    LauncherRun run;
    run.WriteConfig(TEXT("veldranevm.config"), "command=demo.attend=feu demo.code=1\n");
    run.Run([&] {
        user::Click(IDC_LAUNCH);
        EXPECT_TRUE(
            user::WaitForStatus(TEXT("VM démarrée. Les réglages s'appliquent au prochain lancement.")));
        user::OnProgramThread([&] {
            const HANDLE engine = run.launcher.engine_process;
            LaunchEngine(run.launcher, true);
            EXPECT_EQ(run.launcher.engine_process, engine) << "a second launch does nothing";
            EXPECT_FALSE(run.launcher.run_is_dry);
        });
        EXPECT_FALSE(user::IsEnabled(IDC_LAUNCH) || user::IsEnabled(IDC_VERIFY));
        TypeIntoCommand(TEXT("x"));
        user::Click(IDC_RESET);
        EXPECT_TRUE(user::WaitForBox());
        WriteBytes(run.folder.Of(TEXT("feu")), "");
        EXPECT_TRUE(user::WaitForStatus(TEXT("Échec (code 1). Consultez le journal.")));
        EXPECT_TRUE(user::WaitUntil([] { return IsWindowVisible(user::LogWindow()) != FALSE; }));
        EXPECT_EQ(run.launcher.engine_process, nullptr);
        EXPECT_TRUE(user::IsEnabled(IDC_LAUNCH) && user::IsEnabled(IDC_VERIFY));
        EXPECT_NE(user::Box(), nullptr) << "the question is still open";
        user::OnProgramThread([] { PostMessageW(user::Box(), WM_COMMAND, IDNO, 0); });
        EXPECT_TRUE(user::WaitForStatus(TEXT("Réglages par défaut. Choisissez un noyau ELF.")));
    });
}

TEST(Story, AsksBeforeItClosesAndSavesWhenTheAnswerIsYes) {
    LauncherRun run;
    run.WriteConfig(TEXT("veldranevm.config"), "");
    const int exit_code = run.Run([&] {
        TypeIntoCommand(TEXT("x"));
        user::CloseMainWindow();
        user::AnswerBox(IDCANCEL);
        user::Fill(IDC_RAM_MIB, TEXT("9"));
        user::CloseMainWindow();
        user::AnswerBox(IDYES);
        EXPECT_EQ(TakeErrorBox(), "Veldrane VM\nValeur hors limites : RAM (16..2048 Mio)");
        user::Fill(IDC_RAM_MIB, TEXT("64"));
        user::CloseMainWindow();
        user::AnswerBox(IDYES);
        EXPECT_TRUE(user::WaitForEnd());
    });
    EXPECT_EQ(exit_code, 0);
    const std::string saved = ReadBytes(run.folder.Of(TEXT("veldranevm.config")));
    EXPECT_NE(saved.find("\ncommand=x\n"), std::string::npos) << saved;
    EXPECT_NE(saved.find("\nram_mib=64\n"), std::string::npos) << saved;
}

TEST(Story, ShowsTheLogInAWindowOfItsOwn) {
    LauncherRun run;
    run.Run([&] {
        user::OnProgramThread([&] {
            Launcher& launcher = run.launcher;
            launcher.log_path = run.folder.Of(TEXT("veldranevm.log"));
            WriteBytes(launcher.log_path, "x");
            ShowLogWindow(launcher);
            const HWND window = launcher.log_window;
            const HWND text = GetDlgItem(window, 1);
            RECT place{};
            GetWindowRect(window, &place);
            EXPECT_EQ(place.right - place.left, 850);
            EXPECT_EQ(place.bottom - place.top, 520);
            EXPECT_EQ(GetWindow(window, GW_OWNER), launcher.main_window);
            EXPECT_NE(GetWindowLongPtrW(window, GWL_EXSTYLE) & WS_EX_TOOLWINDOW, 0);
            EXPECT_EQ(GetWindowLongPtrW(window, GWL_STYLE) & WS_OVERLAPPEDWINDOW, WS_OVERLAPPEDWINDOW);
            EXPECT_NE(GetWindowLongPtrW(text, GWL_EXSTYLE) & WS_EX_CLIENTEDGE, 0);
            EXPECT_EQ(GetWindowLongPtrW(text, GWL_STYLE), WS_CHILD | WS_VISIBLE | WS_VSCROLL | WS_HSCROLL |
                                                              ES_MULTILINE | ES_AUTOVSCROLL | ES_AUTOHSCROLL |
                                                              ES_READONLY);
            EXPECT_EQ(SendMessageW(text, WM_GETFONT, 0, 0),
                      reinterpret_cast<LRESULT>(GetStockObject(ANSI_FIXED_FONT)));
        });
    });
}

// Waits until the text of the log window has this many characters.
bool WaitForLogLength(const Launcher& launcher, std::size_t characters) {
    return user::WaitUntil([&] {
        return static_cast<std::size_t>(GetWindowTextLengthW(GetDlgItem(launcher.log_window, 1))) ==
               characters;
    });
}

TEST(Story, ShowsTheEndOfALongLogAndKeepsTheSelectionWhileTheLogIsUnchanged) {
    LauncherRun run;
    run.Run([&] {
        Launcher& launcher = run.launcher;
        const WideText log = run.folder.Of(TEXT("à moi.log"));
        WriteBytes(log, std::string(0x100000, '\n'));
        user::OnProgramThread([&] { launcher.log_path = log; });
        user::Click(IDC_SHOW_LOG);
        EXPECT_TRUE(user::WaitUntil([&] { return IsWindowVisible(launcher.log_window) != FALSE; }));
        const HWND window = launcher.log_window;
        EXPECT_EQ(Narrow(user::TextOf(window)), "Veldrane VM — Journal");
        EXPECT_TRUE(WaitForLogLength(launcher, 0x200000));
        WriteBytes(log, "");
        EXPECT_TRUE(WaitForLogLength(launcher, 0));
        WriteBytes(log, "X" + std::string(0x100000, 'y'));
        EXPECT_TRUE(WaitForLogLength(launcher, 0x100000));
        user::OnProgramThread([&] {
            const HWND control = GetDlgItem(window, 1);
            EXPECT_EQ(SendMessageW(control, EM_GETLIMITTEXT, 0, 0), 0x200000);
            MoveWindow(window, 0, 0, 500, 300, TRUE);
            RECT inside{}, text{};
            GetClientRect(window, &inside);
            GetWindowRect(control, &text);
            EXPECT_EQ(text.right - text.left, inside.right) << "the text fills the window";
            EXPECT_EQ(text.bottom - text.top, inside.bottom);
            SendMessageW(control, EM_SETSEL, 3, 5);
        });
        user::Pause(600);
        user::OnProgramThread([&] {
            const HWND control = GetDlgItem(window, 1);
            EXPECT_EQ(SendMessageW(control, EM_GETSEL, 0, 0), MAKELONG(3, 5))
                << "an unchanged log leaves the selection";
            EXPECT_TRUE(user::TextOf(control)[0] == TEXT('y')) << "the first byte is not shown";
        });
        Remove(log);
        MakeFolder(log);
        user::Click(IDC_SHOW_LOG);
        EXPECT_TRUE(user::WaitForStatus(TEXT("Aucun journal. Lancez une vérification ou la VM.")));
    });
}

}  // namespace
