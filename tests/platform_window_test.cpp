// What windows are told when they go, and where the focus goes.
#include <gtest/gtest.h>

#include "probe_windows.h"

TEST(PlatformWindow, DestructionTellsOwnedWindowsFirstAndParentsAheadOfTheirChildren) {
    ProbeWindows probe;
    const HWND main = probe.MakeMain();
    const HWND child = probe.Make("child", WS_CHILD | WS_VISIBLE, {0, 0, 50, 50}, main);
    probe.Make("inner", WS_CHILD, {0, 0, 10, 10}, child);
    const HWND owned = probe.Make("owned", WS_OVERLAPPEDWINDOW, {0, 0, 200, 200}, main);
    probe.log.clear();
    SendMessageW(main, WM_CLOSE, 0, 0);
    EXPECT_EQ(probe.Take("CLOSE DESTROY NCDESTROY"),
              "main CLOSE, owned DESTROY, owned NCDESTROY, main DESTROY, child DESTROY, inner DESTROY, inner "
              "NCDESTROY, child NCDESTROY, main NCDESTROY");
    EXPECT_FALSE(IsWindow(owned));
}

TEST(PlatformWindow, FocusLeavesWhatIsDisabledOrHidden) {
    ProbeWindows probe;
    const HWND main = probe.MakeMain();
    const HWND child = probe.Make("child", WS_CHILD | WS_VISIBLE, {0, 0, 10, 10}, main);
    SetFocus(child);
    probe.log.clear();
    EXPECT_FALSE(EnableWindow(child, FALSE));
    EXPECT_EQ(probe.Take("KILLFOCUS SETFOCUS ENABLE"), "child KILLFOCUS, child ENABLE 0");
    EXPECT_EQ(GetFocus(), nullptr);
    SetFocus(child);
    EXPECT_EQ(GetFocus(), nullptr);
    EXPECT_TRUE(EnableWindow(child, TRUE));
    SetFocus(child);
    probe.log.clear();
    ShowWindow(child, SW_HIDE);
    EXPECT_EQ(probe.Take("POSCHANGED KILLFOCUS SETFOCUS"),
              "child POSCHANGED, child KILLFOCUS, main SETFOCUS");
    EXPECT_EQ(GetFocus(), main);
}
