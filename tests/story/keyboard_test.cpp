// Keyboard and mouse input to the form and the log window.
#include <gtest/gtest.h>

#include "form/form_exchange.h"
#include "form/form_ids.h"
#include "form/title.h"
#include "launch/log_window.h"
#include "launcher_run.h"
#include "shell/focus_keeper.h"

namespace {

UINT FocusedId() {
    UINT id = 0;
    user::OnProgramThread([&] { id = static_cast<UINT>(GetDlgCtrlID(GetFocus())); });
    return id;
}

// Presses Tab this many times. Returns the control with the focus after each.
std::vector<UINT> PressTab(std::size_t times) {
    std::vector<UINT> focused;
    for (std::size_t step = 0; step < times; ++step) {
        user::Press(VK_TAB);
        focused.push_back(FocusedId());
    }
    return focused;
}

void Focus(UINT id) {
    const HWND control = user::Control(id);
    user::OnProgramThread([&] { SetFocus(control); });
}

TEST(Keyboard, MovesTheFocusWithTabInTheOrderOfTheTable) {
    LauncherRun run;
    run.Run([&] {
        const std::vector<UINT> order{101, 102, 103, 104, 201, 202, 203, 204, 205, 206, 207, 210, 211, 212,
                                      213, 301, 401, 411, 402, 412, 403, 413, 404, 414, 105, 106, 107, 101};
        Focus(IDC_SHOW_LOG);
        EXPECT_EQ(PressTab(order.size()), order)
            << "the size fields are disabled and the module page is hidden";
        user::Click(IDC_EXPLICIT_VIDEO);
        EXPECT_EQ(PressTab(3), (std::vector<UINT>{208, 209, 210}));
        user::PressWith(VK_SHIFT, VK_TAB);
        EXPECT_EQ(FocusedId(), UINT{IDC_HEIGHT});
        user::ChooseTab(1);
        Focus(IDC_PAGE_TABS);
        EXPECT_EQ(PressTab(3), (std::vector<UINT>{302, 303, 105})) << "no row is selected";
        user::OnProgramThread([&] {
            run.launcher.config.modules.assign(3, {TEXT("C:\\m.bin"), TEXT("m")});
            FillForm(run.launcher);
            SelectModuleRow(run.launcher, 1);
        });
        Focus(IDC_PAGE_TABS);
        EXPECT_EQ(PressTab(7), (std::vector<UINT>{302, 303, 304, 305, 306, 307, 105}));
    });
}

TEST(Keyboard, SelectsAZoomWithTheMouse) {
    LauncherRun run;
    run.Run([&] {
        user::Click(IDC_ZOOM);
        HWND list = nullptr;
        EXPECT_TRUE(user::WaitUntil([&] {
            list = FindWindowW(TEXT("ComboLBox"), nullptr);
            return IsWindowVisible(list) != FALSE;
        }));
        RECT entries{};
        user::OnProgramThread([&] { GetClientRect(list, &entries); });
        user::ClickAt(list, 10, entries.bottom * 7 / 8);
        EXPECT_TRUE(user::WaitUntil([] { return Narrow(user::ControlText(IDC_ZOOM)) == "400 %"; }));
        EXPECT_TRUE(run.launcher.dirty);
    });
}

TEST(Keyboard, RestoresTheFocusAfterBoxesAndAfterMinimising) {
    LauncherRun run;
    run.Run([&] {
        const auto expect_typed = [](const char* text) {
            EXPECT_TRUE(
                user::WaitUntil([&] { return Narrow(user::ControlText(IDC_KERNEL_COMMAND)) == text; }, 3000))
                << Narrow(user::ControlText(IDC_KERNEL_COMMAND)) << " and not " << text;
        };
        user::Click(IDC_KERNEL_COMMAND);
        user::Type(TEXT("a"));
        expect_typed("a");
        user::CloseMainWindow();
        EXPECT_TRUE(user::WaitForBox());
        user::AnswerBox(IDCANCEL);
        user::Type(TEXT("b"));
        expect_typed("ab");
        user::OnProgramThread(
            [&] { PostMessageW(run.launcher.main_window, WM_COMMAND, IDC_KERNEL_BROWSE, 0); });
        user::CancelFile();
        user::Type(TEXT("c"));
        expect_typed("abc");
        user::OnProgramThread([&] { ShowWindow(run.launcher.main_window, SW_MINIMIZE); });
        user::OnProgramThread([&] { ShowWindow(run.launcher.main_window, SW_RESTORE); });
        user::Type(TEXT("d"));
        expect_typed("abcd");
        user::Press(VK_TAB);
        EXPECT_EQ(FocusedId(), UINT{IDC_RAM_MIB});
        user::OnProgramThread([] {
            SetFocus(nullptr);
            user::Press(VK_TAB);
        });
        EXPECT_TRUE(user::WaitUntil([] { return GetDlgCtrlID(GetFocus()) == IDC_TIMEOUT_MS; }))
            << "without a focus, Tab continues from the last field";
    });
}

TEST(Keyboard, PutsTheFocusOnTheFieldWithTheWrongValue) {
    LauncherRun run;
    run.Run([&] {
        user::Fill(IDC_RAM_MIB, TEXT("9"));
        user::Click(IDC_SAVE);
        EXPECT_EQ(TakeErrorBox(), "Veldrane VM\nValeur hors limites : RAM (16..2048 Mio)");
        user::Type(TEXT("64"));
        EXPECT_TRUE(user::WaitUntil([] { return Narrow(user::ControlText(IDC_RAM_MIB)) == "64"; }))
            << "what is typed replaces the value";
        user::Click(IDC_LAUNCH);
        EXPECT_EQ(TakeErrorBox(), "Veldrane VM\nChoisissez un noyau ELF.");
        user::Type(TEXT("k"));
        EXPECT_TRUE(user::WaitUntil([] { return Narrow(user::ControlText(IDC_KERNEL_PATH)) == "k"; }));
    });
}

TEST(Keyboard, SendsKeysWithoutAFocusToTheLastFieldThatCanTakeThem) {
    constexpr LPARAM WITH_ALT = 0x20000001;
    const struct {
        UINT message;
        LPARAM details;
        UINT becomes;
        bool goes_to_field;
    } cases[] = {
        {WM_KEYDOWN, 1, WM_KEYDOWN, true},
        {WM_KEYUP, 1, WM_KEYUP, true},
        {WM_CHAR, 1, WM_CHAR, true},
        {WM_SYSKEYDOWN, 1, WM_KEYDOWN, true},
        {WM_SYSKEYUP, 1, WM_KEYUP, true},
        {WM_SYSKEYDOWN, WITH_ALT, WM_SYSKEYDOWN, false},
        {WM_SYSKEYUP, WITH_ALT, WM_SYSKEYUP, false},
        {WM_TIMER, 0, WM_TIMER, false},
    };
    LauncherRun run;
    run.Run([&] {
        user::OnProgramThread([&] {
            const HWND window = run.launcher.main_window;
            const HWND field = GetDlgItem(window, IDC_RAM_MIB);
            HWND last = nullptr;
            MSG message{};
            SetFocus(field);
            KeepFocus(window, last, message);
            EXPECT_EQ(last, field);
            for (const auto& c : cases) {
                message = {};
                message.hwnd = window;
                message.message = c.message;
                message.lParam = c.details;
                SetFocus(nullptr);
                KeepFocus(window, last, message);
                EXPECT_EQ(GetFocus(), field);
                EXPECT_EQ(message.message, c.becomes) << c.message;
                EXPECT_EQ(message.hwnd, c.goes_to_field ? field : window) << c.message;
            }
            message.message = WM_KEYDOWN;
            message.hwnd = run.launcher.tab_control;
            SetFocus(nullptr);
            KeepFocus(window, last, message);
            EXPECT_EQ(message.hwnd, run.launcher.tab_control) << "a key for another window stays there";
            // A disabled field, and one on the hidden page.
            for (const UINT id : {IDC_WIDTH, IDC_MODULE_LIST}) {
                SetFocus(nullptr);
                last = GetDlgItem(window, static_cast<int>(id));
                KeepFocus(window, last, message);
                EXPECT_EQ(GetFocus(), window) << id;
            }
        });
    });
}

TEST(Keyboard, LeavesAFieldThatAChangeOfPageHides) {
    LauncherRun run;
    run.Run([&] {
        Focus(IDC_IDE_PRIMARY_MASTER);
        user::OnProgramThread([&] { SendMessageW(run.launcher.tab_control, WM_KEYDOWN, VK_RIGHT, 1); });
        EXPECT_TRUE(user::WaitUntil([&] { return GetFocus() == run.launcher.main_window; }));
        user::Press(VK_ESCAPE);
        user::Press(VK_TAB);
        EXPECT_EQ(FocusedId(), UINT{IDC_LOAD});
        EXPECT_NE(user::MainWindow(), nullptr) << "Escape closes nothing";
    });
}

TEST(Keyboard, ScrollsSelectsAndCopiesTheLogWithKeys) {
    LauncherRun run;
    run.WriteConfig(TEXT("veldranevm.config"), "command=demo.duree=0 demo.lignes=60 demo.code=7\n");
    run.Run([&] {
        user::Click(IDC_KERNEL_COMMAND);
        user::Press(VK_RETURN);
        EXPECT_TRUE(user::WaitForStatus(TEXT("Échec (code 7). Consultez le journal.")));
        HWND text = nullptr;
        user::OnProgramThread([&] { text = GetDlgItem(run.launcher.log_window, 1); });
        const WideText log = user::TextOf(text);
        const auto caret = [&] {
            LRESULT place = 0;
            user::OnProgramThread([&] { place = HIWORD(SendMessageW(text, EM_GETSEL, 0, 0)); });
            return static_cast<std::size_t>(place);
        };
        user::Press(VK_NEXT);
        EXPECT_TRUE(user::WaitUntil([&] { return caret() > 0 && caret() < log.size(); }));
        user::PressWith(VK_CONTROL, VK_END);
        EXPECT_TRUE(user::WaitUntil([&] { return caret() == log.size(); }));
        user::PressWith(VK_CONTROL, 'A');
        user::PressWith(VK_CONTROL, 'C');
        EXPECT_TRUE(user::WaitUntil([&] { return ClipboardText() == log; })) << Narrow(ClipboardText());
        user::OnProgramThread([&] {
            EXPECT_EQ(GetFocus(), text);
            SendMessageW(run.launcher.log_window, WM_CLOSE, 0, 0);
            ShowLogWindow(run.launcher);
            user::PressWith(VK_CONTROL, VK_HOME);
        });
        EXPECT_TRUE(user::WaitUntil([&] { return caret() == 0; })) << "the first key too";
        user::OnProgramThread([&] { PostMessageW(run.launcher.log_window, WM_CLOSE, 0, 0); });
        user::Type(TEXT("x"));
        EXPECT_TRUE(user::WaitUntil([] {
            return Narrow(user::ControlText(IDC_KERNEL_COMMAND)).ends_with("7x");
        })) << "the field has the focus again";
    });
}

TEST(Keyboard, SendsKeysForTheLogWindowToItsText) {
    constexpr WPARAM CONTROL_A = 1;
    enum Receiver { Window, Content, MainWindow };
    const struct {
        Receiver receiver;
        UINT message;
        WPARAM key;
        Receiver becomes;
        bool selects_all;
    } cases[] = {
        {Window, WM_KEYDOWN, VK_END, Content, false},  {Window, WM_CHAR, 'x', Content, false},
        {Window, WM_CHAR, CONTROL_A, Content, true},   {Window, WM_TIMER, 1, Window, false},
        {Content, WM_CHAR, CONTROL_A, Content, true},  {Content, WM_CHAR, 2, Content, false},
        {Content, WM_KEYDOWN, 1, Content, false},      {MainWindow, WM_CHAR, CONTROL_A, MainWindow, false},
        {MainWindow, WM_KEYDOWN, 1, MainWindow, false}};
    LauncherRun run;
    run.Run([&] {
        user::OnProgramThread([&] {
            Launcher& launcher = run.launcher;
            MSG message{};
            EXPECT_FALSE(HandleLogKeys(launcher, message)) << "there is no log window yet";
            launcher.log_path = run.folder.Of(TEXT("veldranevm.log"));
            WriteBytes(launcher.log_path, "journal");
            ShowLogWindow(launcher);
            const HWND text = GetDlgItem(launcher.log_window, 1);
            const HWND windows[] = {launcher.log_window, text, launcher.main_window};
            for (const auto& c : cases) {
                SCOPED_TRACE(testing::Message() << c.receiver << " " << c.message << " " << c.key);
                SetFocus(launcher.log_window);
                SendMessageW(text, EM_SETSEL, 2, 2);
                message.hwnd = windows[c.receiver];
                message.message = c.message;
                message.wParam = c.key;
                EXPECT_EQ(HandleLogKeys(launcher, message), c.selects_all);
                EXPECT_EQ(GetFocus(), text);
                EXPECT_EQ(message.hwnd, windows[c.becomes]);
                EXPECT_EQ(SendMessageW(text, EM_GETSEL, 0, 0),
                          c.selects_all ? MAKELPARAM(0, 7) : MAKELPARAM(2, 2));
            }
        });
    });
}

TEST(Keyboard, RestoresTheFocusOfAButtonThatItsOwnPressDisables) {
    LauncherRun run;
    run.WriteConfig(TEXT("veldranevm.config"), "command=demo.attend=feu\n");
    run.Run([&] {
        user::WaitForStatus(TEXT("Configuration chargée."));
        const WideText started = TEXT("VM démarrée. Les réglages s'appliquent au prochain lancement.");
        Focus(IDC_LAUNCH);
        user::Press(VK_SPACE);
        EXPECT_TRUE(user::WaitForStatus(started));
        user::Press(VK_TAB);
        EXPECT_EQ(FocusedId(), UINT{IDC_LOAD}) << "meanwhile Tab starts at the first control";
        WriteBytes(run.folder.Of(TEXT("feu")), "");
        EXPECT_TRUE(user::WaitForStatus(TEXT("VM terminée.")));
        Focus(IDC_LAUNCH);
        user::Press(VK_SPACE);
        EXPECT_TRUE(user::WaitForStatus(started));
        EXPECT_TRUE(user::WaitForStatus(TEXT("VM terminée.")));
        user::Press(VK_TAB);
        EXPECT_EQ(FocusedId(), UINT{IDC_VERIFY}) << "the button has the focus again";
        user::OnProgramThread([&] {
            run.launcher.config.modules.assign(3, {TEXT("C:\\m.bin"), TEXT("m")});
            FillForm(run.launcher);
            SelectModuleRow(run.launcher, 0);
        });
        user::ChooseTab(1);
        Focus(IDC_MODULE_DOWN);
        user::Press(VK_SPACE);
        EXPECT_TRUE(user::WaitUntil([&] { return run.launcher.selected_module == 1; }));
        user::Press(VK_SPACE);
        EXPECT_TRUE(user::WaitUntil([&] { return run.launcher.selected_module == 2; }));
    });
}

}  // namespace
