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

struct CodeName {
    int code;
    const char* name;
};
// Those that the program hears, and one more that comes with each edit.
// clang-format off
constexpr CodeName CODE_NAMES[] = {
    {BN_CLICKED, "CLICKED"}, {CBN_SELCHANGE, "SELCHANGE"}, {EN_CHANGE, "CHANGE"}, {EN_UPDATE, "UPDATE"},
    {int(TCN_SELCHANGE), "SELCHANGE"}, {int(LVN_ITEMCHANGED), "CHANGED"},
};
// clang-format on

void TellCode(int code, const std::string& details) {
    for (const CodeName& known : CODE_NAMES)
        if (known.code == code)
            Tell(known.name + details);
}

// Which row, and from which states to which.
std::string RowDetails(const NMHDR& header) {
    if (header.code != LVN_ITEMCHANGED)
        return "";
    const auto& row = reinterpret_cast<const NMLISTVIEW&>(header);
    const std::string states = " " + std::to_string(row.uOldState) + ">" + std::to_string(row.uNewState);
    return " " + std::to_string(row.iItem) + (row.uChanged == LVIF_STATE ? states : "");
}

LRESULT CALLBACK ParentProc(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    if (message == WM_COMMAND) {
        TellCode(HIWORD(wparam), "");
        return 0;
    }
    if (message == WM_NOTIFY) {
        const auto& header = *reinterpret_cast<const NMHDR*>(lparam);
        TellCode(static_cast<int>(header.code), RowDetails(header));
        return 0;
    }
    return DefWindowProcW(window, message, wparam, lparam);
}

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

    // The rectangle is left, top, width, height.
    HWND Make(LPCWSTR name, DWORD style, RECT place, LPCWSTR text = TEXT(""), DWORD extended = 0) {
        const HWND control = CreateWindowExW(
            extended, name, text, style | WS_CHILD | WS_VISIBLE, place.left, place.top, place.right,
            place.bottom, parent, reinterpret_cast<HMENU>(static_cast<UINT_PTR>(7)), nullptr, nullptr);
        SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(GetStockObject(DEFAULT_GUI_FONT)), TRUE);
        return control;
    }
    HWND MakeEdit(DWORD style) {
        return Make(TEXT("EDIT"), style, {10, 10, 100, 25}, TEXT(""), WS_EX_CLIENTEDGE);
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
    const HWND edit = MakeEdit(ES_NUMBER);
    SendMessageW(edit, EM_LIMITTEXT, 5, 0);
    EXPECT_EQ(SendMessageW(edit, EM_GETLIMITTEXT, 0, 0), 5);
    // clang-format off
    Follow(edit, TextOf, {
        {"set", [](HWND e) { SetWindowTextW(e, TEXT("12")); }, "12", "UPDATE, CHANGE"},
        {"set the same", [](HWND e) { SetWindowTextW(e, TEXT("12")); }, "12", "UPDATE, CHANGE"},
        {"typed in front", [](HWND e) { Type(e, "3"); }, "312", "UPDATE, CHANGE"},
        {"no digits", [](HWND e) { Type(e, "x-\r\t"); }, "312", ""},
        {"erased", [](HWND e) { Type(e, "\b"); }, "12", "UPDATE, CHANGE"},
        {"nothing to erase", [](HWND e) { Type(e, "\b"); }, "12", ""},
        {"nothing to delete", [](HWND e) { Key(e, VK_END); Key(e, VK_DELETE); }, "12", ""},
        {"deleted", [](HWND e) { Key(e, VK_LEFT); Key(e, VK_DELETE); }, "1", "UPDATE, CHANGE"},
        {"over a selection", [](HWND e) { Select(e, 0, -1); Type(e, "9"); }, "9", "UPDATE, CHANGE"},
        {"selection erased", [](HWND e) { Select(e, 0, -1); Type(e, "\b"); }, "", "UPDATE, CHANGE"},
        {"beyond the limit", [](HWND e) { SetWindowTextW(e, TEXT("123456")); }, "123456", "UPDATE, CHANGE"},
    });
    // clang-format on
}

void PressAndLetGo(HWND button, int x) {
    SendMessageW(button, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
    SendMessageW(button, WM_LBUTTONUP, 0, MAKELPARAM(static_cast<unsigned>(x), 5));
}

void LoseFocusWhilePressed(HWND button) {
    SendMessageW(button, WM_KEYDOWN, VK_SPACE, 1);
    EXPECT_EQ(SendMessageW(button, BM_GETSTATE, 0, 0) & (BST_PUSHED | BST_FOCUS), BST_PUSHED | BST_FOCUS);
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

TEST_F(PlatformControls, AComboBoxTellsWhatTheUserChoosesAndNothingElse) {
    const HWND combo = Make(TEXT("COMBOBOX"), WS_VSCROLL | CBS_DROPDOWNLIST, {10, 50, 100, 160});
    for (const LPCWSTR text : {TEXT("100 %"), TEXT("200 %"), TEXT("300 %")})
        SendMessageW(combo, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text));
    // clang-format off
    Follow(combo, TextOf, {
        {"nothing yet", [](HWND) {}, "", ""},
        {"by code", [](HWND c) { EXPECT_EQ(SendMessageW(c, CB_SETCURSEL, 1, 0), 1); }, "200 %", ""},
        {"no such one", [](HWND c) { EXPECT_EQ(SendMessageW(c, CB_SETCURSEL, 9, 0), CB_ERR); }, "200 %", ""},
        {"focus", [](HWND c) { SetFocus(c); }, "200 %", ""},
        {"down", [](HWND c) { Key(c, VK_DOWN); }, "300 %", "SELCHANGE"},
        {"home", [](HWND c) { Key(c, VK_HOME); }, "100 %", "SELCHANGE"},
        {"Enter without a list", [](HWND c) { Key(c, VK_RETURN); }, "100 %", ""},
        {"dropped", [](HWND c) { Key(c, VK_F4); }, "100 %", ""},
        {"down in the list", [](HWND c) { Key(c, VK_DOWN); }, "200 %", "SELCHANGE"},
        {"Enter", [](HWND c) { Key(c, VK_RETURN); }, "200 %", ""},
        {"Escape", [](HWND c) { Key(c, VK_F4); Key(c, VK_ESCAPE); }, "200 %", ""},
        {"typed", [](HWND c) { Type(c, "39"); }, "300 %", "SELCHANGE"},
        {"clicked", [](HWND c) { Click(c, 10, 10); }, "300 %", ""},
        {"focus lost", [this](HWND) { SetFocus(other); }, "300 %", ""},
    });
    // clang-format on
}

TEST_F(PlatformControls, ATabIsChosenByItsHeaderAndTheArrowKeys) {
    const HWND tabs = Make(TEXT("SysTabControl32"), WS_TABSTOP, {10, 50, 500, 100});
    TCITEMW item{};
    item.mask = TCIF_TEXT;
    for (WideText text : {WideText(TEXT("Disques IDE")), WideText(TEXT("Modules Multiboot"))}) {
        item.pszText = text.data();
        SendMessageW(tabs, TCM_INSERTITEMW, 9, reinterpret_cast<LPARAM>(&item));
    }
    EXPECT_EQ(SendMessageW(tabs, TCM_GETCURSEL, 0, 0), 0);
    Take();
    Key(tabs, VK_RIGHT);
    EXPECT_EQ(SendMessageW(tabs, TCM_GETCURSEL, 0, 0), 1);
    EXPECT_EQ(Take(), "SELCHANGE");
    Key(tabs, VK_RIGHT);
    EXPECT_EQ(Take(), "");
    Click(tabs, 8, 8);
    EXPECT_EQ(SendMessageW(tabs, TCM_GETCURSEL, 0, 0), 0);
    EXPECT_EQ(Take(), "SELCHANGE");
}

// A list of rows "0", "1" and so on, with two columns.
struct Rows {
    HWND list;

    Rows(HWND window, int count) : list(window) {
        LVCOLUMNW column{};
        column.mask = LVCF_WIDTH;
        column.cx = 150;
        SendMessageW(list, LVM_INSERTCOLUMNW, 0, reinterpret_cast<LPARAM>(&column));
        SendMessageW(list, LVM_INSERTCOLUMNW, 1, reinterpret_cast<LPARAM>(&column));
        SendMessageW(list, LVM_SETEXTENDEDLISTVIEWSTYLE, 0, LVS_EX_FULLROWSELECT);
        for (int row = 0; row < count; row++)
            SetText(LVM_INSERTITEMW, row, 0, Wide(std::to_string(row)));
    }
    LRESULT SetText(UINT message, int row, int column, WideText text) const {
        LVITEMW item{};
        item.mask = LVIF_TEXT;
        item.iItem = row;
        item.iSubItem = column;
        item.pszText = text.data();
        return SendMessageW(list, message, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
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
    const Rows rows(Make(TEXT("SysListView32"), LIST_STYLE, {10, 50, 400, 150}), 4);
    const auto look = [&rows](HWND) {
        return std::to_string(rows.Selected()) + " " + std::to_string(rows.Focused());
    };
    // clang-format off
    Follow(rows.list, look, {
        {"first", [&](HWND) { rows.SetState(1, 3, 3); }, "1 1", "CHANGED 1 0>3"},
        {"again", [&](HWND) { rows.SetState(1, 3, 3); }, "1 1", ""},
        {"another", [&](HWND) { rows.SetState(2, 3, 3); }, "2 2",
         "CHANGED 1 3>1, CHANGED 1 1>0, CHANGED 2 0>3"},
        {"only selected", [&](HWND) { rows.SetState(0, 2, 2); }, "0 2",
         "CHANGED 2 3>1, CHANGED 0 0>2"},
        {"no such row", [&](HWND) { rows.SetState(9, 3, 3); }, "0 2", ""},
        {"clicked", [&](HWND) { rows.ClickRow(1); }, "1 1",
         "CHANGED 0 2>0, CHANGED 2 1>0, CHANGED 1 0>3"},
        {"clicked again", [&](HWND) { rows.ClickRow(1); }, "1 1", ""},
        {"another clicked", [&](HWND) { rows.ClickRow(3); }, "3 3", "CHANGED 1 3>1, "
         "CHANGED 1 1>0, CHANGED 3 0>3"},
        {"down at the end", [](HWND l) { Key(l, VK_DOWN); }, "3 3", ""},
        {"up", [](HWND l) { Key(l, VK_UP); }, "2 2", "CHANGED 3 3>1, "
         "CHANGED 3 1>0, CHANGED 2 0>3"},
        {"clicked below", [&](HWND) { rows.ClickRow(5); }, "-1 2",
         "CHANGED 2 3>1"},
    });
    // clang-format on
}

}  // namespace
