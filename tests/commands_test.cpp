// What commands leave in the record, in the file and on the screen, and what fails without leaving anything.
#include <gtest/gtest.h>

#include "cases.h"
#include "form/form_exchange.h"
#include "form/form_ids.h"
#include "form/module_list.h"
#include "launch/log_window.h"
#include "launcher_run.h"
#include "shell/config_commands.h"

namespace {

HWND Field(const Launcher& launcher, UINT id) {
    return GetDlgItem(launcher.main_window, static_cast<int>(id));
}

void SetModules(Launcher& launcher, std::size_t count, std::int32_t selected) {
    launcher.config.modules.clear();
    for (std::size_t index = 0; index < count; ++index)
        launcher.config.modules.push_back({TEXT("C:\\m.bin"), Wide(std::to_string(index))});
    FillForm(launcher);
    SelectModuleRow(launcher, selected);
    launcher.dirty = false;
}

std::string ArgumentsOf(const Launcher& launcher) {
    std::string all;
    for (const ModuleEntry& module : launcher.config.modules)
        all += Narrow(module.command) + "|";
    return all;
}

TEST(Commands, AFailingSaveLeavesTheRecordAndItsPath) {
    LauncherRun run;
    run.WriteConfig(TEXT("veldranevm.config"), "command=avant\n");
    MakeFolder(run.folder.Of(TEXT("dossier")));
    run.Run([&] {
        user::WaitForStatus(TEXT("Configuration chargée."));
        user::Do([&] {
            Launcher& launcher = run.launcher;
            SetWindowTextW(Field(launcher, IDC_KERNEL_COMMAND), TEXT("après"));
            const WideText path = run.folder.Of(TEXT("dossier"));
            launcher.config_path = path;  // the move over a folder fails
            EXPECT_NE(MessageOf([&] { SaveConfiguration(launcher, false); }), "");
            EXPECT_EQ(Narrow(launcher.config.command), "avant");
            EXPECT_TRUE(launcher.dirty);
            EXPECT_EQ(launcher.config_path, path);
            EXPECT_EQ(launcher.run_directory, run.folder.path);
            launcher.config_path = run.folder.Of(TEXT("absent\\a.config"));
            EXPECT_NE(MessageOf([&] { SaveConfiguration(launcher, false); }), "");
            EXPECT_EQ(launcher.run_directory, run.folder.path);
        });
    });
}

TEST(Commands, ALoadTakesItsPathFullAndNormal) {
    LauncherRun run;
    run.WriteConfig(TEXT("b.config"), "");
    run.Run([&] {
        user::Do([&] {
            run.launcher.dirty = true;
            LoadConfiguration(run.launcher, TEXT("sub\\..\\.\\b.config"));
            EXPECT_EQ(run.launcher.config_path, run.folder.Of(TEXT("b.config")));
            EXPECT_EQ(run.launcher.run_directory, run.folder.path);
            EXPECT_FALSE(run.launcher.dirty);
            EXPECT_EQ(Narrow(user::Title()), "Veldrane VM — Configuration");
        });
    });
}

TEST(Commands, WhatTheProgramWritesItselfIsNoEdit) {
    LauncherRun run;
    run.Run([&] {
        user::Do([&] {
            Launcher& launcher = run.launcher;
            SetModules(launcher, 3, 1);
            {
                const FillingScope filling(launcher);
                SetWindowTextW(Field(launcher, IDC_MODULE_ARGS), TEXT("zz"));
                SetWindowTextW(Field(launcher, IDC_KERNEL_PATH), TEXT("k"));
                OnModuleArgsChanged(launcher);
                SelectModuleRow(launcher, 2);
                EXPECT_EQ(launcher.selected_module, 1) << "a selection while filling is not followed";
                SelectModuleRow(launcher, 1);
            }
            EXPECT_FALSE(launcher.dirty);
            EXPECT_EQ(ArgumentsOf(launcher), "0|1|2|");
            // The focus of a row alone changes nothing either.
            LVITEMW focus{};
            focus.stateMask = LVIS_FOCUSED;
            SendMessageW(launcher.module_list, LVM_SETITEMSTATE, 1, reinterpret_cast<LPARAM>(&focus));
            EXPECT_EQ(Narrow(user::ControlText(IDC_MODULE_ARGS)), "zz");
        });
        user::Click(IDC_FORCE_NO_HEADER);
        EXPECT_TRUE(user::WaitUntil([] { return Narrow(user::Title()) == "Veldrane VM — Configuration *"; }));
    });
}

TEST(Commands, RemovingAndMovingModulesKeepSelectionAndFieldTogether) {
    LauncherRun run;
    run.Run([&] {
        user::ChooseTab(1);
        user::Do([&] {
            Launcher& launcher = run.launcher;
            for (const std::size_t count : {3U, 1U}) {
                SetModules(launcher, count, static_cast<std::int32_t>(count) - 1);
                RemoveModule(launcher);
                EXPECT_EQ(launcher.config.modules.size(), count - 1);
                EXPECT_EQ(launcher.selected_module, -1) << "the last row has none below it";
                EXPECT_EQ(Narrow(user::ControlText(IDC_MODULE_ARGS)), "");
                for (const UINT id : {IDC_MODULE_ARGS, IDC_MODULE_REMOVE, IDC_MODULE_UP, IDC_MODULE_DOWN})
                    EXPECT_FALSE(user::IsEnabled(id)) << id;
                EXPECT_TRUE(launcher.dirty);
            }
            SetModules(launcher, 3, 2);
            launcher.config.modules.resize(2);  // as after a load that has failed before it filled the form
            SetWindowTextW(Field(launcher, IDC_MODULE_ARGS), TEXT("x"));
            RemoveModule(launcher);
            EXPECT_EQ(ArgumentsOf(launcher), "0|1|");
            EXPECT_FALSE(launcher.dirty);
            SetModules(launcher, 3, 1);
            SetWindowTextW(Field(launcher, IDC_RAM_MIB), TEXT("9"));
            launcher.dirty = false;
            EXPECT_NE(MessageOf([&] { RemoveModule(launcher); }), "");
            EXPECT_NE(MessageOf([&] { MoveModule(launcher, -1); }), "");
            EXPECT_EQ(ArgumentsOf(launcher), "0|1|2|");
            EXPECT_EQ(launcher.selected_module, 1);
            EXPECT_FALSE(launcher.dirty);
            SetWindowTextW(Field(launcher, IDC_RAM_MIB), TEXT("16"));
            SetWindowTextW(Field(launcher, IDC_MODULE_ARGS), TEXT("  a b "));
            EXPECT_EQ(ArgumentsOf(launcher), "0|  a b |2|");
            MoveModule(launcher, -1);
            EXPECT_EQ(ArgumentsOf(launcher), "  a b |0|2|");
            EXPECT_EQ(launcher.selected_module, 0);
            launcher.dirty = false;
            MoveModule(launcher, -1);
            EXPECT_FALSE(launcher.dirty) << "there is nothing above the first";
            SetFocus(launcher.module_list);
        });
        user::Press(VK_DOWN);
        EXPECT_TRUE(user::WaitUntil([&] { return run.launcher.selected_module == 1; }))
            << "from the moved row on";
    });
}

TEST(Commands, BoxesBelongToTheMainWindow) {
    LauncherRun run;
    run.Run([&] {
        const auto owner_of_box = [] {
            HWND owner = nullptr;
            user::Do([&] { owner = GetWindow(user::Box(), GW_OWNER); });
            return owner;
        };
        user::Click(IDC_LAUNCH);
        EXPECT_TRUE(user::WaitForBox());
        EXPECT_EQ(owner_of_box(), run.launcher.main_window);
        user::AnswerBox(IDOK);
        user::Do([&] { run.launcher.dirty = true; });
        user::CloseMainWindow();
        EXPECT_TRUE(user::WaitForBox());
        EXPECT_EQ(owner_of_box(), run.launcher.main_window);
        user::AnswerBox(IDNO);
        EXPECT_TRUE(user::WaitForEnd());
    });
}

TEST(Commands, TheLogComesToTheFrontWithItsTextAtOnce) {
    LauncherRun run;
    run.Run([&] {
        const WideText log = run.folder.Of(TEXT("a.log"));
        WriteBytes(log, "avant");
        user::Do([&] {
            Launcher& launcher = run.launcher;
            launcher.log_path = log;
            const auto text = [&] { return Narrow(GetControlText(GetDlgItem(launcher.log_window, 1))); };
            ShowLogWindow(launcher);
            EXPECT_EQ(text(), "avant");
            EXPECT_EQ(GetActiveWindow(), launcher.log_window);
            SetForegroundWindow(launcher.main_window);
            WriteBytes(log, "après");
            WriteBytes(log, "avent");
            ShowLogWindow(launcher);
            EXPECT_EQ(text(), "avent") << "of the same length";
            EXPECT_EQ(GetActiveWindow(), launcher.log_window);
            WriteBytes(log, "");
            ShowLogWindow(launcher);
            EXPECT_EQ(text(), "") << "a log begun anew";
        });
        user::Pause(50);
        user::Do([&] { EXPECT_EQ(GetActiveWindow(), run.launcher.log_window) << "it keeps the keyboard"; });
    });
}

// The shown controls that do not wait to be painted.
std::string Settled(const Launcher& launcher) {
    std::string settled;
    for (HWND child = GetWindow(launcher.main_window, GW_CHILD); child != nullptr;
         child = GetWindow(child, GW_HWNDNEXT))
        if (IsWindowVisible(child) != FALSE && GetUpdateRect(child, nullptr, FALSE) == FALSE)
            settled += std::to_string(GetDlgCtrlID(child)) + " ";
    return settled;
}

TEST(Commands, EveryShownControlIsPaintedAgainAfterAResizeAndAChangeOfPage) {
    LauncherRun run;
    run.Run([&] {
        const HWND window = run.launcher.main_window;
        const auto paint = [&] {
            user::Do([&] { UpdateWindow(window); });
            EXPECT_TRUE(user::WaitUntil([&] { return GetUpdateRect(window, nullptr, FALSE) == FALSE; }));
            user::WaitUntil([&] { return !Settled(run.launcher).empty(); });
        };
        paint();
        user::Do([&] {
            RECT place{};
            GetWindowRect(window, &place);
            MoveWindow(window, place.left, place.top, place.right - place.left + 40,
                       place.bottom - place.top + 30, TRUE);
            EXPECT_EQ(Settled(run.launcher), "");
        });
        paint();
        user::ChooseTab(1);
        paint();
        user::Do([&] {
            SendMessageW(run.launcher.tab_control, WM_KEYDOWN, VK_LEFT, 1);
            for (const UINT id :
                 {UINT{IDC_PAGE_TABS}, UINT{IDC_IDE_PRIMARY_MASTER}, UINT{IDC_IDE_SECONDARY_SLAVE_BROWSE}})
                EXPECT_NE(GetUpdateRect(Field(run.launcher, id), nullptr, FALSE), FALSE) << id;
            EXPECT_EQ(GetUpdateRect(Field(run.launcher, IDC_LOAD), nullptr, FALSE), FALSE)
                << "nothing above the pages";
        });
    });
}

}  // namespace
