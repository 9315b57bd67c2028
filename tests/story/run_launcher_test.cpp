// Errors at the start of the program.
#include "shell/run_launcher.h"

#include <gtest/gtest.h>

#include "form/form_ids.h"
#include "launcher_run.h"
#include "shell/dispatch.h"

namespace {

TEST(RunLauncher, ShowsAnErrorAfterAQuitMessageWasPosted) {
    LauncherRun run;
    WNDCLASSW taken{};
    taken.lpfnWndProc = DefWindowProcW;
    taken.lpszClassName = MAIN_WINDOW_CLASS;
    ASSERT_NE(RegisterClassW(&taken), 0);
    PostQuitMessage(0);
    const int exit_code = run.Run([&] {
        EXPECT_TRUE(user::WaitForBox());
        user::Pause(200);
        EXPECT_EQ(TakeErrorBox(), "Veldrane VM\nEnregistrement de la fenêtre impossible.");
        EXPECT_TRUE(user::WaitForEnd());
    });
    EXPECT_EQ(exit_code, 1);
}

std::string Repeated(const char* text, int times) {
    std::string repeated;
    for (; times > 0; --times)
        repeated += text;
    return repeated;
}

// Each 😀 is a surrogate pair, which must not be split.
TEST(RunLauncher, ShortensALongMessageInTheBoxButNotInTheStatusLine) {
    const struct {
        std::string key;
        std::size_t characters_in_box;
        const char* middle;  // of the text in the box
    } cases[] = {
        {"😀" + Repeated("k", 964) + "😀", 1000, "kkk"},
        {"😀" + Repeated("k", 965) + "😀", 1000, "k […] k"},
        {"😀" + Repeated("k", 200000) + "😀", 1000, "k […] k"},
        {Repeated("😀", 1000), 999, "😀 […] 😀"},
        {"k" + Repeated("😀", 1000), 998, "😀 […] 😀"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.key.size());
        LauncherRun run;
        run.WriteConfig(TEXT("veldranevm.config"), c.key + "=1\n");
        run.Run([&] {
            const std::string text = TakeErrorBox();
            EXPECT_EQ(Wide(text).size(), 12U + c.characters_in_box);
            EXPECT_TRUE(
                text.starts_with("Veldrane VM\nClé de configuration inconnue : " + c.key.substr(0, 20)));
            EXPECT_TRUE(text.ends_with(c.key.substr(c.key.size() - 12)));
            EXPECT_NE(text.find(c.middle), std::string::npos) << text;
            user::WaitUntil([] { return user::IsVisible(IDC_LAUNCH); });
            EXPECT_EQ(Narrow(user::Status()), "Clé de configuration inconnue : " + c.key);
        });
        UnregisterWindowClasses();
    }
}

TEST(RunLauncher, ShowsSpacesForControlCharactersInTheBoxButNotInTheStatusLine) {
    LauncherRun run;
    const std::string key =
        "a\rb\tc\x1F"
        "d\x7F"
        "e\u0085f~\u00A0g";
    run.WriteConfig(TEXT("veldranevm.config"),
                    key + std::string(700, '\r') + std::string(900, '\t') + "x=1\n");
    run.Run([&] {
        ASSERT_TRUE(user::WaitForBox());
        const std::string text = user::BoxText();
        EXPECT_NE(text.find("inconnue : a b c d e f~\u00A0g   "), std::string::npos) << text;
        EXPECT_EQ(text.find_first_of("\r\t"), std::string::npos);
        RECT box{};
        user::OnProgramThread([&] { GetWindowRect(user::Box(), &box); });
        EXPECT_LT(box.bottom - box.top, 500);
        user::AnswerBox(IDOK);
        user::WaitUntil([] { return user::IsVisible(IDC_LAUNCH); });
        EXPECT_NE(Narrow(user::Status()).find(" : " + key + "\r\r"), std::string::npos);
    });
}

bool was_minimised = false;

// Once the window is shown, notes how and closes it.
void CALLBACK NoteAndClose(HWND, UINT, UINT_PTR, DWORD) {
    const HWND window = FindWindowW(MAIN_WINDOW_CLASS, nullptr);
    if (IsWindowVisible(window) == FALSE)
        return;
    was_minimised = (GetWindowLongPtrW(window, GWL_STYLE) & WS_MINIMIZE) != 0;
    PostMessageW(window, WM_CLOSE, 0, 0);
}

TEST(RunLauncher, ShowsTheWindowAsTheSystemAsks) {
    for (const int show_command : {SW_MINIMIZE, SW_SHOWNORMAL}) {
        LauncherRun run;
        const UINT_PTR timer = SetTimer(nullptr, 0, 10, NoteAndClose);
        EXPECT_EQ(RunLauncher(run.launcher, GetModuleHandleW(nullptr), show_command), 0);
        KillTimer(nullptr, timer);
        EXPECT_EQ(was_minimised, show_command == SW_MINIMIZE);
        UnregisterWindowClasses();
    }
}

TEST(RunLauncher, ReportsAFolderWithTheDefaultNameAsAFileThatCannotBeOpened) {
    LauncherRun run;
    MakeFolder(run.folder.Of(TEXT("veldranevm.config")));
    run.Run([&] {
        EXPECT_EQ(TakeErrorBox(), "Veldrane VM\nImpossible d'ouvrir la configuration.");
        EXPECT_TRUE(user::WaitUntil([] { return user::IsVisible(IDC_LAUNCH); }));
        EXPECT_EQ(Narrow(user::Status()), "Impossible d'ouvrir la configuration.");
        EXPECT_FALSE(run.launcher.dirty);
    });
}

}  // namespace
