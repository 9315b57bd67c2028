// The effects of commands on the record, the files and the screen, and commands that fail without an effect.
#include <gtest/gtest.h>

#include "cases.h"
#include "form/form_exchange.h"
#include "form/form_ids.h"
#include "form/module_list.h"
#include "launch/engine_run.h"
#include "launch/log_window.h"
#include "launcher_run.h"
#include "shell/config_commands.h"

namespace {

// The identifiers of the visible controls that need no repaint.
std::string PaintedControls(const Launcher& launcher) {
    std::string painted;
    for (HWND child = GetWindow(launcher.main_window, GW_CHILD); child != nullptr;
         child = GetWindow(child, GW_HWNDNEXT))
        if (IsWindowVisible(child) != FALSE && GetUpdateRect(child, nullptr, FALSE) == FALSE)
            painted += std::to_string(GetDlgCtrlID(child)) + " ";
    return painted;
}

TEST(Commands, IgnoreAMissingModuleAndChangesByTheProgramItself) {
    LauncherRun run;
    run.WriteConfig(TEXT("b.config"), "");
    run.Run([&] {
        user::OnProgramThread([&] {
            Launcher& launcher = run.launcher;
            launcher.config.modules.assign(3, {TEXT("C:\\m.bin"), TEXT("x")});
            FillForm(launcher);
            SelectModuleRow(launcher, 2);
            {
                const FillingScope filling(launcher);
                SetWindowTextW(user::Control(IDC_MODULE_ARGS), TEXT("zz"));
                OnModuleArgsChanged(launcher);
                SendMessageW(launcher.main_window, WM_COMMAND, IDC_MODULE_REMOVE, 0);
                SelectModuleRow(launcher, 1);
                EXPECT_EQ(launcher.selected_module, 2) << "a selection while the form is filled is ignored";
                SelectModuleRow(launcher, 2);
            }
            LVITEMW focus{};
            focus.stateMask = LVIS_FOCUSED;
            SendMessageW(launcher.module_list, LVM_SETITEMSTATE, 2, reinterpret_cast<LPARAM>(&focus));
            EXPECT_EQ(Narrow(user::ControlText(IDC_MODULE_ARGS)), "zz") << "the focus of a row is ignored";
            EXPECT_EQ(Narrow(launcher.config.modules[2].command), "x");
            launcher.config.modules.resize(2);  // as after a load that failed before it filled the form
            SetWindowTextW(user::Control(IDC_MODULE_ARGS), TEXT("y"));
            RemoveModule(launcher);
            EXPECT_EQ(launcher.config.modules.size(), 2U);
            EXPECT_FALSE(launcher.dirty);
            launcher.config.modules.assign(1, {TEXT(""), TEXT("x")});
            EXPECT_EQ(MessageOf([&] { ReadForm(launcher); }), "Le fichier d'un module est vide.");
            LoadConfiguration(launcher, TEXT("sub\\..\\.\\b.config"));
            EXPECT_EQ(launcher.config_path, run.folder.Of(TEXT("b.config")));
        });
    });
}

TEST(Commands, FollowOnlyTheNotificationsOfTheTabsAndOfASelection) {
    const auto code = [](auto number) { return static_cast<UINT>(number); };
    const struct {
        UINT id, code, changed, old_state, new_state;
        bool changes_page, changes_selection;
    } cases[] = {
        {IDC_PAGE_TABS, code(TCN_SELCHANGE), 0, 0, 0, true, false},
        {IDC_PAGE_TABS, code(TCN_SELCHANGE) - 1, 0, 0, 0, false, false},
        {IDC_ZOOM, code(TCN_SELCHANGE), 0, 0, 0, false, false},
        {IDC_MODULE_LIST, code(LVN_ITEMCHANGED), LVIF_STATE, 0, LVIS_SELECTED, false, true},
        {IDC_MODULE_LIST, code(LVN_ITEMCHANGED), LVIF_STATE, LVIS_SELECTED, 0, false, true},
        {IDC_MODULE_LIST, code(LVN_ITEMCHANGED), LVIF_STATE, LVIS_SELECTED, LVIS_SELECTED, false, false},
        {IDC_MODULE_LIST, code(LVN_ITEMCHANGED), LVIF_STATE, 0, LVIS_FOCUSED, false, false},
        {IDC_MODULE_LIST, code(LVN_ITEMCHANGED), LVIF_TEXT, 0, LVIS_SELECTED, false, false},
        {IDC_MODULE_LIST, code(LVN_ITEMCHANGED) - 1, LVIF_STATE, 0, LVIS_SELECTED, false, false},
        {IDC_PAGE_TABS, code(LVN_ITEMCHANGED), LVIF_STATE, 0, LVIS_SELECTED, false, false},
    };
    LauncherRun run;
    run.Run([&] {
        user::OnProgramThread([&] {
            Launcher& launcher = run.launcher;
            const HWND list = launcher.module_list;
            SendMessageW(launcher.tab_control, WM_KEYDOWN, VK_RIGHT, 1);
            for (const auto& c : cases) {
                SCOPED_TRACE(testing::Message() << c.id << " " << c.code << " " << c.changed);
                ShowWindow(list, SW_HIDE);
                launcher.selected_module = 7;
                NMLISTVIEW notification{};
                notification.hdr.idFrom = c.id;
                notification.hdr.code = c.code;
                notification.uChanged = c.changed;
                notification.uOldState = c.old_state;
                notification.uNewState = c.new_state;
                EXPECT_EQ(SendMessageW(launcher.main_window, WM_NOTIFY, c.id,
                                       reinterpret_cast<LPARAM>(&notification)),
                          0);
                EXPECT_EQ(IsWindowVisible(list) != FALSE, c.changes_page);
                EXPECT_EQ(launcher.selected_module == -1, c.changes_selection);
            }
        });
    });
}

TEST(Commands, ReportAMissingFileAtALaunchAndUseTheCurrentFolderAfterAReset) {
    LauncherRun run;
    MakeFolder(run.folder.Of(TEXT("sub")));
    run.WriteConfig(TEXT("sub\\b.config"), "");
    run.Run([&] {
        user::OnProgramThread([&] {
            Launcher& launcher = run.launcher;
            const WideText kernel = run.folder.Of(TEXT("noyau.elf"));
            const auto expect_missing = [&](const WideText& path) {
                FillForm(launcher);
                EXPECT_EQ(MessageOf([&] { LaunchEngine(launcher, true); }),
                          "Fichier introuvable : " + Narrow(path));
            };
            launcher.config.modules = {{kernel, TEXT("")}, {run.folder.Of(TEXT("absent")), TEXT("")}};
            launcher.config.kernel = kernel;
            expect_missing(launcher.config.modules[1].path);
            launcher.config.ide[3] = run.folder.path;
            expect_missing(run.folder.path);
            launcher.config.kernel = run.folder.Of(TEXT("sub"));
            expect_missing(launcher.config.kernel);
            LoadConfiguration(launcher, run.folder.Of(TEXT("sub\\b.config")));
            EXPECT_EQ(launcher.run_directory, run.folder.Of(TEXT("sub")));
            ResetConfiguration(launcher);
            EXPECT_EQ(launcher.run_directory, run.folder.path);
        });
    });
}

TEST(Commands, ReadTheFullPathThatAFieldMeans) {
    LauncherRun run;
    const std::string home = Narrow(run.folder.path);
    const std::pair<const WCHAR*, std::string> cases[] = {
        {TEXT(""), ""},
        {TEXT("k.elf"), home + "\\k.elf"},
        {TEXT("./a/../b c/k.elf"), home + "\\b c\\k.elf"},
        {TEXT("..\\k.elf"), home.substr(0, home.rfind('\\')) + "\\k.elf"},
        {TEXT("\\x\\k.elf"), home.substr(0, 2) + "\\x\\k.elf"},
        {TEXT("D:k.elf"), "D:\\k.elf"},
        {TEXT("D:/x/./k.elf"), "D:\\x\\k.elf"},
    };
    run.Run([&] {
        user::OnProgramThread([&] {
            for (const auto& [text, path] : cases) {
                SetWindowTextW(user::Control(IDC_KERNEL_PATH), text);
                EXPECT_EQ(Narrow(ReadForm(run.launcher).kernel), path) << Narrow(text);
            }
        });
    });
}

TEST(Commands, RefuseANumberOutsideItsLimits) {
    const struct {
        UINT id;
        const WCHAR *below, *lowest, *highest, *above;
        std::string label;
    } cases[] = {
        {IDC_RAM_MIB, TEXT("15"), TEXT("16"), TEXT("2048"), TEXT("2049"), "RAM (16..2048 Mio)"},
        {IDC_TIMEOUT_MS, TEXT("3600001"), TEXT("0"), TEXT("3600000"), TEXT("4294967296"),
         "délai (0..3600000 ms)"},
        {IDC_WIDTH, TEXT("0"), TEXT("1"), TEXT("8192"), TEXT("8193"), "largeur (1..8192)"},
        {IDC_HEIGHT, TEXT("0"), TEXT("1"), TEXT("8192"), TEXT("8193"), "hauteur (1..8192)"},
    };
    LauncherRun run;
    run.Run([&] {
        user::OnProgramThread([&] {
            for (const auto& c : cases) {
                for (const WCHAR* text : {c.below, c.above, c.lowest, c.highest}) {
                    SetWindowTextW(user::Control(c.id), text);
                    const bool fits = text == c.lowest || text == c.highest;
                    EXPECT_EQ(MessageOf([&] { ReadForm(run.launcher); }),
                              fits ? "" : "Valeur hors limites : " + c.label);
                }
            }
        });
    });
}

TEST(Commands, RepaintEachVisibleControlAfterAResizeAndAChangeOfPage) {
    LauncherRun run;
    run.Run([&] {
        const HWND window = run.launcher.main_window;
        const auto paint = [&] {
            user::OnProgramThread([&] { UpdateWindow(window); });
            EXPECT_TRUE(user::WaitUntil([&] { return GetUpdateRect(window, nullptr, FALSE) == FALSE; }));
            user::WaitUntil([&] { return !PaintedControls(run.launcher).empty(); });
        };
        paint();
        user::OnProgramThread([&] {
            RECT place{};
            GetWindowRect(window, &place);
            MoveWindow(window, place.left, place.top, place.right - place.left + 40,
                       place.bottom - place.top + 30, TRUE);
            EXPECT_EQ(PaintedControls(run.launcher), "");
        });
        paint();
        user::ChooseTab(1);
        paint();
        user::OnProgramThread([&] {
            SendMessageW(run.launcher.tab_control, WM_KEYDOWN, VK_LEFT, 1);
            for (const UINT id :
                 {UINT{IDC_PAGE_TABS}, UINT{IDC_IDE_PRIMARY_MASTER}, UINT{IDC_IDE_SECONDARY_SLAVE_BROWSE}})
                EXPECT_NE(GetUpdateRect(user::Control(id), nullptr, FALSE), FALSE) << id;
            EXPECT_EQ(GetUpdateRect(user::Control(IDC_LOAD), nullptr, FALSE), FALSE)
                << "controls above the pages are not repainted";
        });
    });
}

}  // namespace
