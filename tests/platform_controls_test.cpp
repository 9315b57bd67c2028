// What controls show and tell their parent when they are used by hand and by code.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "platform/win32.h"
#include "probe_windows.h"
#include "scratch.h"

namespace {

std::string told;

void Tell(const std::string& what) {
    told += (told.empty() ? "" : ", ") + what;
}

std::string Take() {
    return std::exchange(told, {});
}

// What the program acts on; all else that controls tell is left out.
void TellCommand(int code) {
    if (code == BN_CLICKED)
        Tell("CLICKED");
    else if (code == CBN_SELCHANGE)
        Tell("SELCHANGE");
    else if (code == EN_CHANGE)
        Tell("CHANGE");
}

void TellNotification(const NMHDR& header) {
    if (header.code == static_cast<UINT>(TCN_SELCHANGE))
        Tell("SELCHANGE");
    if (header.code != static_cast<UINT>(LVN_ITEMCHANGED))
        return;
    const auto& row = reinterpret_cast<const NMLISTVIEW&>(header);
    if (row.uChanged == LVIF_STATE)
        Tell(std::to_string(row.iItem) + " " + std::to_string(row.uOldState) + ">" +
             std::to_string(row.uNewState));
}

LRESULT CALLBACK ParentProc(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    if (message == WM_COMMAND)
        TellCommand(HIWORD(wparam));
    else if (message == WM_NOTIFY)
        TellNotification(*reinterpret_cast<const NMHDR*>(lparam));
    return DefWindowProcW(window, message, wparam, lparam);
}

struct Place {
    int left;
    int top;
    int width;
    int height;
};

class PlatformControls : public testing::Test {
protected:
    PlatformControls() {
        const INITCOMMONCONTROLSEX classes = {sizeof classes, ICC_LISTVIEW_CLASSES | ICC_TAB_CLASSES};
        EXPECT_TRUE(InitCommonControlsEx(&classes));
        WNDCLASSW parent_class{};
        parent_class.lpfnWndProc = ParentProc;
        parent_class.lpszClassName = TEXT("ControlsParent");
        RegisterClassW(&parent_class);
        parent = CreateWindowExW(0, TEXT("ControlsParent"), TEXT(""), WS_OVERLAPPEDWINDOW, 100, 100, 800, 500,
                                 nullptr, nullptr, nullptr, nullptr);
        other = Make(TEXT("BUTTON"), WS_TABSTOP, {700, 400, 50, 20});
        ShowWindow(parent, SW_SHOW);
        PumpFor(50);
        SetFocus(other);
        Take();
    }
    ~PlatformControls() override {
        DestroyWindow(parent);
        UnregisterClassW(TEXT("ControlsParent"), nullptr);
    }

    HWND Make(LPCWSTR name, DWORD style, const Place& place) {
        const HWND control = CreateWindowExW(
            0, name, TEXT(""), style | WS_CHILD | WS_VISIBLE, place.left, place.top, place.width,
            place.height, parent, reinterpret_cast<HMENU>(static_cast<UINT_PTR>(7)), nullptr, nullptr);
        SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(GetStockObject(DEFAULT_GUI_FONT)), TRUE);
        return control;
    }

    HWND parent = nullptr;
    HWND other = nullptr;
};

std::string TextOf(HWND window) {
    WideText text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, 0);
    text.resize(static_cast<std::size_t>(GetWindowTextW(window, text.data(), static_cast<int>(text.size()))));
    return Narrow(text);
}

void Key(HWND window, int key) {
    SendMessageW(window, WM_KEYDOWN, static_cast<WPARAM>(key), 1);
    SendMessageW(window, WM_KEYUP, static_cast<WPARAM>(key), 1);
}

void Click(HWND window, int x, int y) {
    // A list looks in the queue for the end of the click.
    PostMessageW(window, WM_LBUTTONUP, 0, MAKELPARAM(static_cast<unsigned>(x), static_cast<unsigned>(y)));
    SendMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON,
                 MAKELPARAM(static_cast<unsigned>(x), static_cast<unsigned>(y)));
    PumpFor(20);
}

void Type(HWND window, const char* text) {
    for (; *text != 0; text++)
        SendMessageW(window, WM_CHAR, static_cast<WPARAM>(*text), 1);
}

void Select(HWND edit, int from, int to) {
    SendMessageW(edit, EM_SETSEL, static_cast<WPARAM>(from), to);
}

// What is done to a control, what it shows then and what it has told its parent meanwhile.
struct Step {
    const char* name;
    std::function<void(HWND)> act;
    std::string shown;
    std::string notifications;
};

void Follow(HWND control, const std::function<std::string(HWND)>& look, const std::vector<Step>& steps) {
    Take();
    for (const Step& step : steps) {
        SCOPED_TRACE(step.name);
        step.act(control);
        EXPECT_EQ(look(control), step.shown);
        EXPECT_EQ(Take(), step.notifications);
    }
}

TEST_F(PlatformControls, AnEditFieldTellsEachChangeAndKeepsToItsLimitUnlessByCode) {
    const HWND edit = Make(TEXT("EDIT"), ES_NUMBER, {10, 10, 100, 25});
    SendMessageW(edit, EM_LIMITTEXT, 3, 0);
    // clang-format off
    Follow(edit, TextOf, {
        {"set", [](HWND e) { SetWindowTextW(e, TEXT("12")); }, "12", "CHANGE"},
        {"set the same", [](HWND e) { SetWindowTextW(e, TEXT("12")); }, "12", "CHANGE"},
        {"no digits", [](HWND e) { Type(e, "x-\r\t"); }, "12", ""},
        {"typed at the start", [](HWND e) { Type(e, "3"); }, "312", "CHANGE"},
        {"beyond the limit", [](HWND e) { Type(e, "4"); }, "312", "CHANGE"},
        {"erased", [](HWND e) { Type(e, "\b"); }, "12", "CHANGE"},
        {"nothing to erase", [](HWND e) { Type(e, "\b"); }, "12", ""},
        {"nothing to delete", [](HWND e) { Key(e, VK_END); Key(e, VK_DELETE); }, "12", ""},
        {"deleted", [](HWND e) { Key(e, VK_LEFT); Key(e, VK_DELETE); }, "1", "CHANGE"},
        {"to the right", [](HWND e) { Key(e, VK_HOME); Key(e, VK_RIGHT); Type(e, "7"); }, "17", "CHANGE"},
        {"over a selection", [](HWND e) { Select(e, 0, -1); Type(e, "9"); }, "9", "CHANGE"},
        {"selection erased", [](HWND e) { Select(e, 0, -1); Type(e, "\b"); }, "", "CHANGE"},
        {"by code beyond the limit", [](HWND e) { SetWindowTextW(e, TEXT("123456")); }, "123456", "CHANGE"},
        {"clicked behind the text", [](HWND e) { Click(e, 80, 8); Type(e, "\b"); }, "12345", "CHANGE"},
    });
    // clang-format on
}

void PressAndLetGo(HWND button, int x) {
    SendMessageW(button, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
    SendMessageW(button, WM_LBUTTONUP, 0, MAKELPARAM(static_cast<unsigned>(x), 5));
}

void LoseFocusWhilePressed(HWND button) {
    SendMessageW(button, WM_KEYDOWN, VK_SPACE, 1);
    SetFocus(GetParent(button));
    SendMessageW(button, WM_KEYUP, VK_SPACE, 1);
}

TEST_F(PlatformControls, AButtonIsPressedByLettingGoOverItAndACheckBoxTurnsAheadOfIt) {
    const HWND check = Make(TEXT("BUTTON"), BS_AUTOCHECKBOX, {10, 50, 100, 25});
    const auto look = [](HWND b) { return std::to_string(SendMessageW(b, BM_GETCHECK, 0, 0)); };
    // clang-format off
    Follow(check, look, {
        {"by code", [](HWND b) { SendMessageW(b, BM_SETCHECK, BST_CHECKED, 0); }, "1", ""},
        {"clicked", [](HWND b) { PressAndLetGo(b, 9); }, "0", "CLICKED"},
        {"BM_CLICK", [](HWND b) { SendMessageW(b, BM_CLICK, 0, 0); }, "1", "CLICKED"},
        {"space", [](HWND b) { Key(b, VK_SPACE); }, "0", "CLICKED"},
        {"let go outside", [](HWND b) { PressAndLetGo(b, 500); }, "0", ""},
        {"focus lost in between", LoseFocusWhilePressed, "0", ""},
    });
    // clang-format on
    EXPECT_EQ(GetCapture(), nullptr);
}

HWND DroppedList() {
    return FindWindowW(TEXT("ComboLBox"), nullptr);
}

TEST_F(PlatformControls, AComboBoxTellsWhatTheUserChoosesAndNothingElse) {
    const HWND combo = Make(TEXT("COMBOBOX"), WS_VSCROLL | CBS_DROPDOWNLIST, {10, 50, 100, 160});
    for (const LPCWSTR text : {TEXT("100 %"), TEXT("200 %"), TEXT("300 %")})
        SendMessageW(combo, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text));
    const auto look = [](HWND c) { return TextOf(c) + (IsWindowVisible(DroppedList()) ? " dropped" : ""); };
    // clang-format off
    Follow(combo, look, {
        {"nothing yet", [](HWND) {}, "", ""},
        {"by code", [](HWND c) { EXPECT_EQ(SendMessageW(c, CB_SETCURSEL, 1, 0), 1); }, "200 %", ""},
        {"focus", [](HWND c) { SetFocus(c); }, "200 %", ""},
        {"down", [](HWND c) { Key(c, VK_DOWN); }, "300 %", "SELCHANGE"},
        {"down at the end", [](HWND c) { Key(c, VK_DOWN); }, "300 %", "SELCHANGE"},
        {"home", [](HWND c) { Key(c, VK_HOME); }, "100 %", "SELCHANGE"},
        {"end", [](HWND c) { Key(c, VK_END); }, "300 %", "SELCHANGE"},
        {"up", [](HWND c) { Key(c, VK_UP); }, "200 %", "SELCHANGE"},
        {"Enter without a list", [](HWND c) { Key(c, VK_RETURN); }, "200 %", ""},
        {"dropped", [](HWND c) { Key(c, VK_F4); }, "200 % dropped", ""},
        {"up in the list", [](HWND c) { Key(c, VK_UP); }, "100 % dropped", "SELCHANGE"},
        {"Enter", [](HWND c) { Key(c, VK_RETURN); }, "100 %", ""},
        {"Escape", [](HWND c) { Key(c, VK_F4); Key(c, VK_ESCAPE); }, "100 %", ""},
        {"typed", [](HWND c) { Type(c, "39"); }, "300 %", "SELCHANGE"},
        {"clicked", [](HWND c) { Click(c, 10, 10); }, "300 % dropped", ""},
        {"clicked elsewhere", [](HWND) { Click(DroppedList(), 10, -60); }, "300 %", ""},
        {"from the list", [](HWND c) { Click(c, 10, 10); Click(DroppedList(), 10, 4); }, "100 %", "SELCHANGE"},
        {"focus lost", [this](HWND c) { Key(c, VK_F4); SetFocus(other); }, "100 %", ""},
    });
    // clang-format on
}

TEST_F(PlatformControls, ATabIsChosenByItsHeaderAndTheArrowKeys) {
    const HWND tabs = Make(TEXT("SysTabControl32"), WS_TABSTOP, {10, 50, 500, 100});
    TCITEMW item{};
    item.mask = TCIF_TEXT;
    WideText texts[] = {TEXT("Disques IDE"), TEXT("Modules Multiboot")};
    for (const WPARAM index : {WPARAM{0}, WPARAM{1}}) {
        item.pszText = texts[index].data();
        SendMessageW(tabs, TCM_INSERTITEMW, index, reinterpret_cast<LPARAM>(&item));
    }
    const auto look = [](HWND t) { return std::to_string(SendMessageW(t, TCM_GETCURSEL, 0, 0)); };
    // clang-format off
    Follow(tabs, look, {
        {"the first by itself", [](HWND) {}, "0", ""},
        {"left at the start", [](HWND t) { Key(t, VK_LEFT); }, "0", ""},
        {"clicked", [](HWND t) { Click(t, 120, 10); }, "1", "SELCHANGE"},
        {"clicked again", [](HWND t) { Click(t, 120, 10); }, "1", ""},
        {"right at the end", [](HWND t) { Key(t, VK_RIGHT); }, "1", ""},
        {"left", [](HWND t) { Key(t, VK_LEFT); }, "0", "SELCHANGE"},
        {"clicked beside", [](HWND t) { Click(t, 400, 10); }, "0", ""},
    });
    // clang-format on
}

// A list of rows "0", "1" and so on.
struct Rows {
    HWND list;

    Rows(HWND window, int count) : list(window) {
        WideText text = TEXT("rows");
        LVCOLUMNW column{};
        column.mask = LVCF_WIDTH | LVCF_TEXT;
        column.cx = 300;
        column.pszText = text.data();
        SendMessageW(list, LVM_INSERTCOLUMNW, 0, reinterpret_cast<LPARAM>(&column));
        SendMessageW(list, LVM_SETEXTENDEDLISTVIEWSTYLE, 0, LVS_EX_FULLROWSELECT);
        for (int row = 0; row < count; row++)
            Insert(row, Wide(std::to_string(row)));
    }
    void Insert(int row, WideText text) const {
        LVITEMW item{};
        item.mask = LVIF_TEXT;
        item.iItem = row;
        item.pszText = text.data();
        SendMessageW(list, LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item));
    }
    void SetState(int row, UINT state, UINT mask) const {
        LVITEMW item{};
        item.state = state;
        item.stateMask = mask;
        SendMessageW(list, LVM_SETITEMSTATE, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
    }
    void ClickRow(int row) const {
        RECT first{};
        SendMessageW(list, LVM_GETITEMRECT, 0, reinterpret_cast<LPARAM>(&first));
        Click(list, 20, first.top + row * (first.bottom - first.top) + 3);
    }
    LRESULT Selected() const {
        return SendMessageW(list, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_SELECTED);
    }
    LRESULT Focused() const {
        return SendMessageW(list, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_FOCUSED);
    }
};

constexpr DWORD LIST_STYLE = WS_TABSTOP | LVS_REPORT | LVS_SINGLESEL | LVS_SHOWSELALWAYS;

TEST_F(PlatformControls, AListTellsEachRowWhoseStateChanges) {
    const Rows rows(Make(TEXT("SysListView32"), LIST_STYLE, {10, 50, 400, 150}), 20);
    const auto look = [&rows](HWND) {
        return std::to_string(rows.Selected()) + " " + std::to_string(rows.Focused());
    };
    // clang-format off
    Follow(rows.list, look, {
        {"first", [&](HWND) { rows.SetState(1, 3, 3); }, "1 1", "1 0>3"},
        {"again", [&](HWND) { rows.SetState(1, 3, 3); }, "1 1", ""},
        {"another", [&](HWND) { rows.SetState(2, 3, 3); }, "2 2", "1 3>1, 1 1>0, 2 0>3"},
        {"only selected", [&](HWND) { rows.SetState(0, 2, 2); }, "0 2", "2 3>1, 0 0>2"},
        {"no such row", [&](HWND) { rows.SetState(99, 3, 3); }, "0 2", ""},
        {"clicked", [&](HWND) { rows.ClickRow(1); }, "1 1", "0 2>0, 2 1>0, 1 0>3"},
        {"clicked again", [&](HWND) { rows.ClickRow(1); }, "1 1", ""},
        {"another clicked", [&](HWND) { rows.ClickRow(3); }, "3 3", "1 3>1, 1 1>0, 3 0>3"},
        {"down", [](HWND l) { Key(l, VK_DOWN); }, "4 4", "3 3>1, 3 1>0, 4 0>3"},
        {"home", [](HWND l) { Key(l, VK_HOME); }, "0 0", "4 3>1, 4 1>0, 0 0>3"},
        {"up at the start", [](HWND l) { Key(l, VK_UP); }, "0 0", ""},
        {"end", [](HWND l) { Key(l, VK_END); }, "19 19", "0 3>1, 0 1>0, 19 0>3"},
        {"clicked beside", [](HWND l) { Click(l, 350, 60); }, "-1 19", "19 3>1"},
        {"none left", [](HWND l) { SendMessageW(l, LVM_DELETEALLITEMS, 0, 0); }, "-1 -1", ""},
    });
    // clang-format on
}

}  // namespace
