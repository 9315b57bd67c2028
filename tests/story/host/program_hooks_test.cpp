// Requests of the program that only the layer can show: for file boxes, timers and labels.
#include <gtest/gtest.h>

#include <algorithm>

#include "form/file_picker.h"
#include "form/form_ids.h"
#include "launch/log_window.h"
#include "launcher_run.h"
#include "platform/host/hooks/test_hooks.h"

namespace {

std::ptrdiff_t Count(const std::vector<RECT>& rectangles, const RECT& wanted) {
    const auto is_wanted = [&](const RECT& one) {
        return one.left == wanted.left && one.top == wanted.top && one.right == wanted.right &&
               one.bottom == wanted.bottom;
    };
    return std::count_if(rectangles.begin(), rectangles.end(), is_wanted);
}

const char* const NO_BOX = "Veldrane VM\nBoîte de sélection de fichier indisponible.";

TEST(ProgramHooks, EachCommandRequestsItsFileBox) {
    const std::string configs = "Configurations Veldrane VM (*.config)|*.config|Tous les fichiers|*.*|";
    const std::string disks = "Images disque (*.img;*.raw;*.bin)|*.img;*.raw;*.bin|Tous les fichiers|*.*|";
    const struct {
        UINT button;
        bool save;
        std::string filter;
        const char* extension;
        const char* name;
    } cases[] = {
        {IDC_LOAD, false, configs, "config", ""},
        {IDC_SAVE_AS, true, configs, "config", "veldranevm.config"},
        {IDC_KERNEL_BROWSE, false, "Noyaux ELF (*.elf)|*.elf|Tous les fichiers|*.*|", "", "201"},
        {IDC_DUMP_BROWSE, true, "Image PPM (*.ppm)|*.ppm|Tous les fichiers|*.*|", "ppm", "212"},
        {IDC_IDE_PRIMARY_MASTER_BROWSE, false, disks, "", "401"},
        {IDC_IDE_PRIMARY_SLAVE_BROWSE, false, disks, "", "402"},
        {IDC_IDE_SECONDARY_MASTER_BROWSE, false, disks, "", "403"},
        {IDC_IDE_SECONDARY_SLAVE_BROWSE, false, disks, "", "404"},
        {IDC_MODULE_ADD, false, "Tous les fichiers|*.*|", "", ""},
    };
    LauncherRun run;
    run.Run([&] {
        user::OnProgramThread([&] {
            for (const UINT id : {201U, 212U, 401U, 402U, 403U, 404U})
                SetDlgItemTextW(run.launcher.main_window, static_cast<int>(id),
                                Wide(std::to_string(id)).c_str());
            run.launcher.dirty = false;
            run.launcher.run_directory = TEXT("C:\\tmp");
        });
        for (const auto& c : cases) {
            SCOPED_TRACE(c.button);
            if (c.button == IDC_MODULE_ADD)
                user::ChooseTab(1);
            user::Click(c.button);
            user::CancelFile();
            const host::FileBoxRequest& request = host::LastFileBox();
            EXPECT_EQ(request.owner, run.launcher.main_window);
            EXPECT_EQ(request.flags, c.save ? 0x8080AU : 0x81808U);
            EXPECT_EQ(request.capacity, 32768U);
            EXPECT_EQ(Narrow(request.filter), c.filter);
            EXPECT_EQ(Narrow(request.extension), c.extension);
            EXPECT_EQ(Narrow(request.folder), "C:\\tmp");
            EXPECT_EQ(Narrow(request.name), c.name);
        }
        EXPECT_FALSE(run.launcher.dirty) << "a cancelled box is no edit";
    });
}

TEST(ProgramHooks, EachFilterEndsWithAnEmptyString) {
    const auto is_terminated = [](const auto& filter) {
        return WideView(filter, std::size(filter)).ends_with(WideView(TEXT("\0\0"), 2));
    };
    EXPECT_TRUE(is_terminated(FILTER_CONFIG) && is_terminated(FILTER_KERNEL) && is_terminated(FILTER_DISK) &&
                is_terminated(FILTER_PPM) && is_terminated(FILTER_ANY));
}

TEST(ProgramHooks, AFileBoxThatFailsIsReported) {
    LauncherRun run;
    run.Run([&] {
        const auto set_kernel = [&](const WideText& text) {
            user::OnProgramThread(
                [&] { SetDlgItemTextW(run.launcher.main_window, IDC_KERNEL_PATH, text.c_str()); });
            user::Click(IDC_KERNEL_BROWSE);
        };
        set_kernel(TEXT("a|b"));
        EXPECT_EQ(TakeErrorBox(), NO_BOX) << "no file can have this name";
        set_kernel(WideText(32767, WCHAR{'a'}));
        EXPECT_EQ(TakeErrorBox(), NO_BOX);
        EXPECT_EQ(host::LastFileBox().name.size(), 32767U);
        set_kernel(WideText(32768, WCHAR{'a'}));
        user::CancelFile();
        EXPECT_EQ(host::LastFileBox().name.size(), 0U)
            << "a name without room for its terminator is left out";
        host::FailCall("GetSaveFileNameW", 1, 0xFFFF);
        user::Click(IDC_DUMP_BROWSE);
        EXPECT_EQ(TakeErrorBox(), NO_BOX);
    });
}

TEST(ProgramHooks, TheSearchForDllsIsLimitedFirst) {
    host::FailCall("GetCurrentDirectoryW", 1, ERROR_ACCESS_DENIED);
    host::FailCall("MessageBoxW", 1, ERROR_NOT_ENOUGH_MEMORY);
    host::StartTrace();
    EXPECT_EQ(wWinMain(nullptr, nullptr, nullptr, SW_SHOWNORMAL), 1);
    const std::vector<std::string> calls = host::Trace();
    EXPECT_EQ(std::find(calls.begin(), calls.end(), "SetDllDirectoryW"), calls.begin());
    EXPECT_EQ(std::find(calls.begin(), calls.end(), "SetDefaultDllDirectories"), calls.begin() + 1);
}

TEST(ProgramHooks, ACommandThatThrowsReturnsZero) {
    LauncherRun run;
    host::StartTrace();
    run.Run([&] {
        user::OnProgramThread([&] {
            EXPECT_EQ(host::TracedArguments("SetTimer"), (std::vector<DWORD>{250})) << "milliseconds";
            EXPECT_EQ(host::TracedArguments("InitCommonControlsEx"), (std::vector<DWORD>{9}))
                << "ICC_LISTVIEW_CLASSES | ICC_TAB_CLASSES";
            host::FailCall("MessageBoxW", 1, ERROR_NOT_ENOUGH_MEMORY);
            EXPECT_EQ(SendMessageW(run.launcher.main_window, WM_COMMAND, IDC_LAUNCH, 0), 0);
            EXPECT_EQ(host::ClearFaults(), 1U);
            EXPECT_EQ(host::TracedArguments("MessageBoxW"), (std::vector<DWORD>{MB_ICONERROR}));
            EXPECT_EQ(Narrow(user::Status()), "Choisissez un noyau ELF.");
            run.launcher.dirty = true;
            host::FailCall("MessageBoxW", 1, ERROR_NOT_ENOUGH_MEMORY);
            SendMessageW(run.launcher.main_window, WM_COMMAND, IDC_RESET, 0);
            EXPECT_EQ(host::TracedArguments("MessageBoxW"),
                      (std::vector<DWORD>{MB_YESNOCANCEL | MB_ICONQUESTION}));
            EXPECT_TRUE(run.launcher.dirty) << "a question that cannot be asked is not answered";
            run.launcher.dirty = false;
        });
    });
}

TEST(ProgramHooks, AReadErrorShortensTheTextOfTheLog) {
    LauncherRun run;
    run.Run([&] {
        user::OnProgramThread([&] {
            Launcher& launcher = run.launcher;
            launcher.log_path = run.folder.Of(TEXT("veldranevm.log"));
            WriteBytes(launcher.log_path, "première moitié");
            ShowLogWindow(launcher);
            WriteBytes(launcher.log_path, "12345678");
            host::HalveTransfer("ReadFile");
            host::FailCall("ReadFile", 2, ERROR_IO_DEVICE);
            RefreshLogWindow(launcher);
            EXPECT_EQ(host::ClearFaults(), 1U);
            EXPECT_EQ(Narrow(user::TextOf(GetDlgItem(launcher.log_window, 1))), "1234");
        });
    });
}

TEST(ProgramHooks, LabelsShowAmpersands) {
    LauncherRun run;
    run.Run([&] {
        user::OnProgramThread([&] {
            for (const HWND label : {run.launcher.path_label, run.launcher.status_label}) {
                SetWindowTextW(label, TEXT("C:\\R&D\\noyau.elf"));
                EXPECT_EQ(Narrow(host::DrawnText(label)), "C:\\R&D\\noyau.elf");
                RedrawWindow(label, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
                EXPECT_EQ(Narrow(host::DrawnText(label)), "C:\\R&D\\noyau.elf");
                EXPECT_EQ(GetWindowLongPtrW(label, GWL_STYLE) & SS_NOPREFIX, 0)
                    << "the style in the table of controls does not change";
            }
        });
    });
}

TEST(ProgramHooks, FramesEraseTheirBackgroundExceptUnderOtherVisibleControls) {
    LauncherRun run;
    run.Run([&] {
        user::OnProgramThread([&] {
            const HWND window = run.launcher.main_window;
            const HWND kernel = GetDlgItem(window, IDC_KERNEL_PATH);
            HWND machine = GetWindow(window, GW_CHILD);  // the first group box
            while ((GetWindowLongPtrW(machine, GWL_STYLE) & BS_TYPEMASK) != BS_GROUPBOX)
                machine = GetWindow(machine, GW_HWNDNEXT);
            std::vector<RECT> excluded;
            host::RecordExcludedRectangles(&excluded);
            EXPECT_EQ(SendMessageW(machine, WM_ERASEBKGND, 1, 0), 1);
            EXPECT_EQ(excluded.size(), 48U) << "of 56, all but the frame itself and seven on the other page";
            EXPECT_EQ(Count(excluded, {126, 24, 772, 49}), 1) << "the kernel's field";
            excluded.clear();
            SendMessageW(run.launcher.tab_control, WM_ERASEBKGND, 1, 0);
            EXPECT_EQ(excluded.size(), 48U);
            EXPECT_EQ(Count(excluded, {152, 39, 772, 64}), 1) << "the first disk's field";
            excluded.clear();
            SendMessageW(kernel, WM_ERASEBKGND, 1, 0);
            SendMessageW(GetDlgItem(window, IDC_SAVE), WM_ERASEBKGND, 1, 0);
            EXPECT_EQ(excluded.size(), 0U) << "these are no frames";
            host::RecordExcludedRectangles(nullptr);
        });
    });
}

}  // namespace
