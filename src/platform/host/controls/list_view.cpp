// SysListView32 in report mode: rows of texts in columns. At most one row is selected, at most one has the
// focus.
#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "platform/host/api/comctl32.h"
#include "platform/host/controls/control.h"
#include "platform/host/hooks/call_hooks.h"

namespace host {
namespace {

constexpr int HEADER_HEIGHT = 16;
constexpr UINT KNOWN_STATES = LVIS_SELECTED | LVIS_FOCUSED;

struct Column {
    std::u16string title;
    int width;
};

struct Row {
    std::vector<std::u16string> texts;  // by column; a missing text is empty
    UINT state = 0;
};

struct List {
    std::vector<Column> columns;
    std::vector<Row> rows;
    LRESULT extended_style = 0;
    int top = 0;  // the first visible row
};

int Count(const List& list) {
    return static_cast<int>(list.rows.size());
}

bool IsRow(const List& list, int index) {
    return index >= 0 && index < Count(list);
}

Row& RowAt(List& list, int index) {
    return list.rows[static_cast<std::size_t>(index)];
}

// The first row after the start that has all of these states; NONE if there is none.
int NextRow(const List& list, int start, UINT states) {
    for (int index = std::max(start, NONE) + 1; index < Count(list); index++)
        if ((list.rows[static_cast<std::size_t>(index)].state & states) == states)
            return index;
    return NONE;
}

// --- the states of rows ---

void SetRowState(HWND window, List& list, int index, UINT state, UINT mask);

// Removes the state from every row except `kept`.
void ClearOthers(HWND window, List& list, int kept, UINT state) {
    for (int index = NextRow(list, NONE, state); index != NONE; index = NextRow(list, index, state))
        if (index != kept)
            SetRowState(window, list, index, 0, state);
}

void SetRowState(HWND window, List& list, int index, UINT state, UINT mask) {
    const UINT before = RowAt(list, index).state;
    const UINT after = (before & ~mask) | (state & mask);
    const UINT gained = after & ~before;
    if (after == before)
        return;
    if ((gained & LVIS_SELECTED) != 0)
        ClearOthers(window, list, index, LVIS_SELECTED);
    RowAt(list, index).state = after;
    if ((gained & LVIS_FOCUSED) != 0)
        ClearOthers(window, list, index, LVIS_FOCUSED);
    NMLISTVIEW notification{};
    notification.iItem = index;
    notification.uNewState = after;
    notification.uOldState = before;
    notification.uChanged = LVIF_STATE;
    SendNotification(window, LVN_ITEMCHANGED, notification.hdr);
}

LRESULT SetState(HWND window, List& list, int index, const LVITEMW& item) {
    if (index == NONE || (item.stateMask & ~KNOWN_STATES) != 0)
        NotImplemented("LVM_SETITEMSTATE", "all rows, or states other than selected and focused");
    if (!IsRow(list, index))
        return FALSE;
    SetRowState(window, list, index, item.state, item.stateMask);
    return TRUE;
}

// Selects a row after user input. NONE removes the selection and leaves the focus unchanged.
void SelectByUser(HWND window, List& list, int index) {
    ClearOthers(window, list, index, LVIS_SELECTED);
    if (IsRow(list, index) && RowAt(list, index).state != KNOWN_STATES)
        SetRowState(window, list, index, KNOWN_STATES, KNOWN_STATES);
}

// --- rows ---

LRESULT InsertRow(HWND window, List& list, const LVITEMW& item) {
    if (item.mask != LVIF_TEXT || item.iSubItem != 0 || item.iItem != Count(list))
        NotImplemented("LVM_INSERTITEMW",
                       "more than the text of the first column, or an index other than the last");
    if (CallFails("LVM_INSERTITEMW"))
        return -1;
    list.rows.push_back({{item.pszText}, 0});
    InvalidateRect(window, nullptr, TRUE);
    return item.iItem;
}

// Sends no notification about the states of the deleted rows.
LRESULT DeleteAllRows(List& list) {
    if (CallFails("LVM_DELETEALLITEMS"))
        return FALSE;
    list.rows.clear();
    list.top = 0;
    return TRUE;
}

LRESULT SetRowText(HWND window, List& list, int index, const LVITEMW& item) {
    if (!IsRow(list, index) || item.iSubItem >= static_cast<int>(list.columns.size()) ||
        CallFails("LVM_SETITEMTEXTW"))
        return FALSE;
    if (item.iSubItem <= 0)
        NotImplemented("LVM_SETITEMTEXTW", "the first column");
    const auto column = static_cast<std::size_t>(item.iSubItem);
    Row& row = RowAt(list, index);
    row.texts.resize(std::max(row.texts.size(), column + 1));
    row.texts[column] = item.pszText;
    InvalidateRect(window, nullptr, TRUE);
    return TRUE;
}

LRESULT GetRowText(List& list, int index, const LVITEMW& item) {
    const auto column = static_cast<std::size_t>(item.iSubItem);
    const bool has_text = IsRow(list, index) && column < RowAt(list, index).texts.size();
    const std::u16string text = has_text ? RowAt(list, index).texts[column] : std::u16string();
    return CopyText(text, static_cast<std::size_t>(item.cchTextMax), reinterpret_cast<LPARAM>(item.pszText));
}

// --- columns ---

LRESULT InsertColumn(List& list, WPARAM index, const LVCOLUMNW& column) {
    if (column.mask != (LVCF_WIDTH | LVCF_TEXT) || index != list.columns.size())
        NotImplemented("LVM_INSERTCOLUMNW", "anything but width and title, or an index other than the last");
    if (CallFails("LVM_INSERTCOLUMNW"))
        return -1;
    list.columns.push_back({column.pszText, column.cx});
    return static_cast<LRESULT>(index);
}

LRESULT GetColumn(const List& list, WPARAM index, const LVCOLUMNW& column) {
    if (column.mask != LVCF_TEXT)
        NotImplemented("LVM_GETCOLUMNW", "more than a title");
    if (index >= list.columns.size())
        return FALSE;
    CopyText(list.columns[index].title, static_cast<std::size_t>(column.cchTextMax),
             reinterpret_cast<LPARAM>(column.pszText));
    return TRUE;
}

LRESULT SetColumnWidth(List& list, WPARAM index, int width) {
    if (index >= list.columns.size())
        return FALSE;
    if (width < 0)
        NotImplemented("LVM_SETCOLUMNWIDTH", "a width that depends on the content");
    list.columns[index].width = width;
    return TRUE;
}

int WidthOfAll(const List& list) {
    int width = 0;
    for (const Column& column : list.columns)
        width += column.width;
    return width;
}

// --- places ---

int VisibleRows(HWND window) {
    RECT client{};
    GetClientRect(window, &client);
    return std::max<int>((client.bottom - HEADER_HEIGHT) / LINE_HEIGHT, 1);
}

int RowAtPoint(const List& list, LPARAM point) {
    const bool is_below_header = YOf(point) >= HEADER_HEIGHT;
    const int index = list.top + (YOf(point) - HEADER_HEIGHT) / LINE_HEIGHT;
    return is_below_header && IsRow(list, index) && XOf(point) < WidthOfAll(list) ? index : NONE;
}

LRESULT GetPlace(const List& list, int index, RECT& place) {
    // On input, `left` is the number of the requested part of the row.
    if (place.left != LVIR_BOUNDS)
        NotImplemented("LVM_GETITEMRECT", "a part of the row");
    if (!IsRow(list, index))
        return FALSE;
    const int top = HEADER_HEIGHT + (index - list.top) * LINE_HEIGHT;
    place = {0, top, WidthOfAll(list), top + LINE_HEIGHT};
    return TRUE;
}

// --- the user ---

LRESULT PressMouse(HWND window, List& list, LPARAM point) {
    if (YOf(point) < HEADER_HEIGHT)
        return 0;
    SelectByUser(window, list, RowAtPoint(list, point));
    SetFocus(window);
    return 0;
}

// The row to which the key moves the focus.
int TargetOf(HWND window, const List& list, WPARAM key, int focused) {
    switch (key) {
        case VK_DOWN:
            return focused + 1;
        case VK_UP:
            return focused - 1;
        case VK_HOME:
            return 0;
        case VK_END:
            return Count(list) - 1;
        case VK_PRIOR:
            return std::max(focused - VisibleRows(window), 0);
        case VK_NEXT:
            return std::min(focused + VisibleRows(window), Count(list) - 1);
        default:
            return NONE;
    }
}

void ScrollTo(HWND window, List& list, int index) {
    const int last_top = std::max(index - VisibleRows(window) + 1, 0);
    list.top = std::clamp(list.top, last_top, index);
}

LRESULT PressKey(HWND window, List& list, WPARAM key) {
    const int focused = NextRow(list, NONE, LVIS_FOCUSED);
    if (key == VK_SPACE && focused != NONE) {
        SetRowState(window, list, focused, LVIS_SELECTED, LVIS_SELECTED);
        return 0;
    }
    const int target = TargetOf(window, list, key, focused);
    if (IsRow(list, target) && target != focused) {
        SelectByUser(window, list, target);
        ScrollTo(window, list, target);
    }
    return 0;
}

LRESULT Create(HWND window) {
    const DWORD style = StyleOf(window);
    if ((style & LVS_TYPEMASK) != LVS_REPORT || (style & LVS_SINGLESEL) == 0)
        NotImplemented("SysListView32", "other views than a report with one selection");
    return 0;
}

LRESULT SetExtendedStyle(List& list, WPARAM mask, LPARAM style) {
    if (mask != 0)
        NotImplemented("LVM_SETEXTENDEDLISTVIEWSTYLE", "some of the styles only");
    return std::exchange(list.extended_style, style);
}

LRESULT HandleRowMessage(HWND window, List& list, UINT message, WPARAM wparam, LPARAM lparam) {
    const auto index = static_cast<int>(wparam);
    switch (message) {
        case LVM_INSERTITEMW:
            return InsertRow(window, list, *reinterpret_cast<const LVITEMW*>(lparam));
        case LVM_DELETEALLITEMS:
            return DeleteAllRows(list);
        case LVM_SETITEMTEXTW:
            return SetRowText(window, list, index, *reinterpret_cast<const LVITEMW*>(lparam));
        case LVM_GETITEMTEXTW:
            return GetRowText(list, index, *reinterpret_cast<const LVITEMW*>(lparam));
        case LVM_SETITEMSTATE:
            return SetState(window, list, index, *reinterpret_cast<const LVITEMW*>(lparam));
        case LVM_GETNEXTITEM:
            if ((lparam & ~static_cast<LPARAM>(KNOWN_STATES)) != 0)
                NotImplemented("LVM_GETNEXTITEM", "directions");
            return NextRow(list, index, static_cast<UINT>(lparam));
        case LVM_GETITEMRECT:
            return GetPlace(list, index, *reinterpret_cast<RECT*>(lparam));
        default:
            return DefControlProcedure("SysListView32", window, message, wparam, lparam);
    }
}

LRESULT HandleColumnMessage(HWND window, List& list, UINT message, WPARAM wparam, LPARAM lparam) {
    switch (message) {
        case LVM_INSERTCOLUMNW:
            return InsertColumn(list, wparam, *reinterpret_cast<const LVCOLUMNW*>(lparam));
        case LVM_GETCOLUMNW:
            return GetColumn(list, wparam, *reinterpret_cast<const LVCOLUMNW*>(lparam));
        case LVM_SETCOLUMNWIDTH:
            return SetColumnWidth(list, wparam, XOf(lparam));
        case LVM_GETCOLUMNWIDTH:
            return wparam < list.columns.size() ? list.columns[wparam].width : 0;
        case LVM_SETEXTENDEDLISTVIEWSTYLE:
            return SetExtendedStyle(list, wparam, lparam);
        case LVM_GETEXTENDEDLISTVIEWSTYLE:
            return list.extended_style;
        default:
            return HandleRowMessage(window, list, message, wparam, lparam);
    }
}

}  // namespace

LRESULT CALLBACK ListProcedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    auto* const list = StateAt<List>(window, message);
    if (list == nullptr)
        return DefWindowProcW(window, message, wparam, lparam);
    switch (message) {
        case WM_CREATE:
            return Create(window);
        case WM_GETDLGCODE:
            return DLGC_WANTARROWS | DLGC_WANTCHARS;
        case WM_LBUTTONDOWN:
            return PressMouse(window, *list, lparam);
        case WM_KEYDOWN:
            return PressKey(window, *list, wparam);
        default:
            return HandleColumnMessage(window, *list, message, wparam, lparam);
    }
}

}  // namespace host
