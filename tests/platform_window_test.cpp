// Where the focus goes from a window that cannot have it any more.
#include <gtest/gtest.h>

#include "probe_windows.h"

TEST(PlatformWindow, RestoringGivesTheFocusToTheWindowItself) {
    ProbeWindows probe;
    const HWND main = probe.MakeMain();
    const HWND child = probe.Make("child", WS_CHILD | WS_VISIBLE, {0, 0, 10, 10}, main);
    SetFocus(child);
    probe.log.clear();
    ShowWindow(main, SW_MINIMIZE);
    EXPECT_EQ(GetFocus(), child);
    ShowWindow(main, SW_RESTORE);
    EXPECT_EQ(probe.Take("ACTIVATE KILLFOCUS SETFOCUS"), "child KILLFOCUS, main SETFOCUS, main ACTIVATE 1");
    EXPECT_EQ(GetFocus(), main);
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
