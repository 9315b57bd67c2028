#include <gtest/gtest.h>

#include "probe_windows.h"

namespace {

constexpr const char* LIFE =
    "GETMINMAXINFO NCCREATE NCCALCSIZE CREATE SIZE MOVE SHOWWINDOW POSCHANGING POSCHANGED PARENTNOTIFY "
    "DESTROY "
    "NCDESTROY";

RECT PlaceIn(HWND parent, HWND child) {
    RECT place{};
    GetWindowRect(child, &place);
    MapWindowPoints(nullptr, parent, reinterpret_cast<POINT*>(&place), 2);
    return place;
}

}  // namespace

TEST(PlatformWindow, CreationTellsAWindowInTheOrderOfItsKind) {
    struct Case {
        const char* kind;
        DWORD style;
        const char* told;
    };
    ProbeWindows probe;
    const HWND parent = probe.Make("main", WS_OVERLAPPEDWINDOW, {0, 0, 600, 400});
    EXPECT_EQ(probe.Take(LIFE), "main GETMINMAXINFO, main NCCREATE, main NCCALCSIZE, main CREATE");
    const Case cases[] = {
        {"visible child", WS_CHILD | WS_VISIBLE,
         "new NCCREATE, new NCCALCSIZE, new CREATE, new SIZE 90x40, new MOVE 10,10, main PARENTNOTIFY, new "
         "SHOWWINDOW 1"},
        {"hidden child", WS_CHILD,
         "new NCCREATE, new NCCALCSIZE, new CREATE, new SIZE 90x40, new MOVE 10,10, main PARENTNOTIFY"},
        {"owned popup", WS_POPUP, "new NCCREATE, new NCCALCSIZE, new CREATE, new SIZE 90x40, new MOVE 10,10"},
    };
    for (const Case& one : cases) {
        SCOPED_TRACE(one.kind);
        probe.Make("new", one.style, {10, 10, 100, 50}, parent);
        EXPECT_EQ(probe.Take(LIFE), one.told);
    }
}

TEST(PlatformWindow, TheFirstShowingActivatesAndTellsTheSize) {
    ProbeWindows probe;
    const HWND main = probe.Make("main", WS_OVERLAPPEDWINDOW, {10, 20, 610, 420});
    probe.log.clear();
    EXPECT_FALSE(ShowWindow(main, SW_SHOWNORMAL));
    EXPECT_EQ(probe.Take("SHOWWINDOW POSCHANGING ACTIVATE SETFOCUS POSCHANGED SIZE MOVE"),
              "main SHOWWINDOW 1, main POSCHANGING, main ACTIVATE 1, main SETFOCUS, main POSCHANGED, main "
              "SIZE 592x373, main MOVE 14,43");
    EXPECT_TRUE(ShowWindow(main, SW_SHOW));
    EXPECT_EQ(probe.Take(LIFE), "");
}

TEST(PlatformWindow, ARefusalInCreateTakesTheChildrenAlongWithoutDestroy) {
    ProbeWindows probe;
    const HWND main = probe.Make("main", WS_OVERLAPPEDWINDOW, {0, 0, 600, 400});
    probe.log.clear();
    probe.answers = [&](HWND window, UINT message, WPARAM, LRESULT& answer) {
        if (message != WM_CREATE || probe.NameOf(window) != "refusing")
            return false;
        probe.names[window] = "refusing";
        probe.Make("child", WS_CHILD, {0, 0, 10, 10}, window);
        answer = -1;
        return true;
    };
    EXPECT_EQ(probe.Make("refusing", WS_CHILD, {0, 0, 100, 100}, main), nullptr);
    EXPECT_EQ(probe.Take("CREATE DESTROY NCDESTROY"),
              "refusing CREATE, child CREATE, child NCDESTROY, refusing NCDESTROY");
    EXPECT_EQ(GetWindow(main, GW_CHILD), nullptr);
}

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

TEST(PlatformWindow, DeferredMovesHappenAtTheEnd) {
    ProbeWindows probe;
    const HWND main = probe.MakeMain();
    const HWND one = probe.Make("one", WS_CHILD | WS_VISIBLE, {0, 0, 10, 10}, main);
    const HWND two = probe.Make("two", WS_CHILD, {0, 0, 10, 10}, main);
    probe.log.clear();
    HDWP moves = BeginDeferWindowPos(1);
    moves = DeferWindowPos(moves, one, nullptr, 5, 6, 20, 30, SWP_NOZORDER | SWP_NOACTIVATE);
    moves = DeferWindowPos(moves, two, nullptr, 7, 8, 10, 10, SWP_NOZORDER | SWP_NOACTIVATE);
    ASSERT_NE(moves, nullptr);
    EXPECT_EQ(PlaceIn(main, one).left, 0);
    EXPECT_EQ(probe.Take("SIZE MOVE"), "");
    EXPECT_TRUE(EndDeferWindowPos(moves));
    EXPECT_EQ(probe.Take("SIZE MOVE"), "one MOVE 5,6, one SIZE 20x30, two MOVE 7,8");
    EXPECT_EQ(PlaceIn(main, one).bottom, 36);
    EXPECT_EQ(PlaceIn(main, two).left, 7);
}

TEST(PlatformWindow, FocusLeavesWhatIsDisabledOrHidden) {
    ProbeWindows probe;
    const HWND main = probe.MakeMain();
    const HWND child = probe.Make("child", WS_CHILD | WS_VISIBLE, {0, 0, 10, 10}, main);
    SetFocus(child);
    probe.log.clear();
    EXPECT_FALSE(EnableWindow(child, FALSE));
    EXPECT_EQ(probe.Take("CANCELMODE KILLFOCUS SETFOCUS ENABLE"),
              "child CANCELMODE, child KILLFOCUS, child ENABLE 0");
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
