// The focus, the stacking order of windows, and the caret of an edit field.
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

TEST(PlatformEdit, MovesTheCaretByCharactersWordsAndLines) {
    const WCHAR* const WORDS = TEXT("ab cd  ef");
    const WCHAR* const LINES = TEXT("abcd\r\nef\r\n\r\nghi");
    const struct {
        const WCHAR* text;
        WPARAM from;
        int key;
        bool with_control;
        WORD to;
    } cases[] = {
        {WORDS, 4, VK_RIGHT, false, 5}, {WORDS, 4, VK_RIGHT, true, 7},   {WORDS, 7, VK_RIGHT, true, 9},
        {WORDS, 4, VK_LEFT, true, 3},   {WORDS, 7, VK_LEFT, true, 3},    {WORDS, 1, VK_LEFT, true, 0},
        {WORDS, 4, VK_HOME, true, 0},   {WORDS, 4, VK_END, true, 9},     {LINES, 3, VK_DOWN, false, 8},
        {LINES, 8, VK_DOWN, false, 10}, {LINES, 14, VK_DOWN, false, 14}, {LINES, 8, VK_UP, false, 2},
        {LINES, 2, VK_UP, false, 2},    {LINES, 7, VK_HOME, false, 6},   {LINES, 2, VK_END, false, 4},
        {LINES, 7, VK_HOME, true, 0},   {LINES, 7, VK_END, true, 15},    {LINES, 4, VK_RIGHT, false, 6},
        {LINES, 6, VK_LEFT, false, 4},  {LINES, 1, VK_RIGHT, true, 4},   {LINES, 4, VK_RIGHT, true, 6},
        {LINES, 6, VK_LEFT, true, 4},   {LINES, 13, VK_LEFT, true, 12},  {LINES, 13, VK_PRIOR, false, 1},
    };
    ProbeWindows probe;
    const HWND main = probe.MakeMain();
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << "key " << c.key << " from " << c.from);
        const DWORD style = c.text == LINES ? ES_MULTILINE | ES_READONLY | ES_AUTOVSCROLL : 0;
        const HWND edit =
            CreateWindowExW(0, TEXT("EDIT"), c.text, WS_CHILD | WS_VISIBLE | ES_AUTOHSCROLL | style, 10, 10,
                            300, 200, main, nullptr, nullptr, nullptr);
        SetFocus(edit);
        SendMessageW(edit, EM_SETSEL, c.from, static_cast<LPARAM>(c.from));
        if (c.with_control)
            HoldKey(VK_CONTROL);
        PressKey(c.key);
        if (c.with_control)
            ReleaseKey(VK_CONTROL);
        PumpFor(30);
        EXPECT_EQ(SendMessageW(edit, EM_GETSEL, 0, 0), MAKELPARAM(c.to, c.to));
        DestroyWindow(edit);
    }
}
