// The focus, and the stacking order of windows.
#include <gtest/gtest.h>

#include "probe_windows.h"

TEST(PlatformWindow, RestoringAWindowSetsTheFocusToItAndNotToItsChild) {
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

TEST(PlatformWindow, DisablingOrHidingAWindowRemovesItsFocus) {
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

TEST(PlatformWindow, AnOwnedWindowIsAlwaysAboveItsOwner) {
    ProbeWindows probe;
    const HWND main = probe.MakeMain();
    const HWND log = probe.Make("log", WS_OVERLAPPEDWINDOW | WS_VISIBLE, {500, 100, 600, 200}, main);
    const HWND box = probe.Make("box", WS_POPUP | WS_VISIBLE, {200, 200, 400, 400}, main);
    probe.Make("message", WS_POPUP | WS_VISIBLE, {250, 250, 350, 350}, box);
    const auto order = [&] {
        std::string names;
        std::pair<const ProbeWindows*, std::string*> seen(&probe, &names);
        EnumWindows(
            [](HWND window, LPARAM lparam) -> BOOL {
                const auto& [windows, text] = *reinterpret_cast<decltype(seen)*>(lparam);
                if (windows->names.contains(window))
                    *text += windows->names.at(window) + " ";
                return TRUE;
            },
            reinterpret_cast<LPARAM>(&seen));
        return names;
    };
    EXPECT_EQ(order(), "message box log main ");
    for (const HWND raised : {log, main}) {
        SetWindowPos(raised, HWND_TOP, 0, 0, 0, 0, SWP_NOSIZE | SWP_NOMOVE | SWP_NOACTIVATE);
        EXPECT_EQ(order(), "log message box main ");
    }
}
