// Ampersands in the paths that the configuration line and the status line show.
#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "form/form_ids.h"
#include "launcher_run.h"

namespace {

WNDPROC previous_procedure = nullptr;
std::vector<UINT> received;

LRESULT CALLBACK RecordMessage(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    received.push_back(message);
    return CallWindowProcW(previous_procedure, window, message, wparam, lparam);
}

bool WasReceived(UINT message) {
    return std::find(received.begin(), received.end(), message) != received.end();
}

TEST(FormPathLabel, HasNoAcceleratorKeyAndHidesItsChangesOfStyleFromTheControl) {
    LauncherRun run;
    run.Run([&] {
        for (const UINT id : {IDC_CONFIG_LINE, IDC_STATUS}) {
            const HWND label = user::Control(id);
            user::OnProgramThread([&] {
                // The label keeps the control's own procedure here.
                previous_procedure = reinterpret_cast<WNDPROC>(GetWindowLongPtrW(label, GWLP_USERDATA));
                SetWindowLongPtrW(label, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(RecordMessage));
                received.clear();
                SetWindowTextW(label, TEXT("C:\\R&D\\noyau.elf"));
                SetFocus(GetDlgItem(run.launcher.main_window, IDC_RAM_MIB));
                EXPECT_TRUE(WasReceived(WM_SETTEXT));
                EXPECT_FALSE(WasReceived(WM_STYLECHANGING) || WasReceived(WM_STYLECHANGED));
            });
            user::PressWith(VK_MENU, 'D');
            user::OnProgramThread([&] {
                EXPECT_EQ(GetDlgCtrlID(GetFocus()), IDC_RAM_MIB) << id;
                EXPECT_FALSE(WasReceived(WM_GETDLGCODE)) << "a plain label would offer its letter";
                SetWindowLongPtrW(label, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(previous_procedure));
            });
        }
    });
}

}  // namespace
