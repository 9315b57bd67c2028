// SysTabControl32: one row of tabs with one selected tab. The area below the tabs gets no mouse input.
#include <string>
#include <vector>

#include "platform/host/api/comctl32.h"
#include "platform/host/controls/control.h"
#include "platform/host/hooks/call_hooks.h"

namespace host {
namespace {

constexpr int FIRST_TAB_X = 2;
constexpr int TAB_TOP = 2;
constexpr int TAB_BOTTOM = 19;
constexpr int TAB_PADDING = 12;

struct Tabs {
    std::vector<std::u16string> texts;
    int selected = NONE;
};

int Count(const Tabs& tabs) {
    return static_cast<int>(tabs.texts.size());
}

int TabAt(const Tabs& tabs, POINT point) {
    if (point.x < FIRST_TAB_X || point.y < TAB_TOP || point.y >= TAB_BOTTOM)
        return NONE;
    int right = FIRST_TAB_X;
    for (int index = 0; index < Count(tabs); index++) {
        const std::u16string& text = tabs.texts[static_cast<std::size_t>(index)];
        right += static_cast<int>(text.size()) * CHARACTER_WIDTH + TAB_PADDING;
        if (point.x < right)
            return index;
    }
    return NONE;
}

void Select(HWND window, Tabs& tabs, int index) {
    if (index == NONE || index == tabs.selected)
        return;
    tabs.selected = index;
    NMHDR header{};
    SendNotification(window, TCN_SELCHANGE, header);
}

LRESULT Insert(Tabs& tabs, WPARAM index, const TCITEMW& item) {
    if (item.mask != TCIF_TEXT || index != tabs.texts.size())
        NotImplemented("TCM_INSERTITEMW", "more than a text, or an index other than the last");
    if (CallFails("TCM_INSERTITEMW"))
        return -1;
    tabs.texts.emplace_back(item.pszText);
    if (tabs.selected == NONE)
        tabs.selected = 0;
    return static_cast<LRESULT>(index);
}

LRESULT GetItem(const Tabs& tabs, WPARAM index, const TCITEMW& item) {
    if (item.mask != TCIF_TEXT || index >= tabs.texts.size())
        NotImplemented("TCM_GETITEMW", "more than a text, or a tab that does not exist");
    CopyText(tabs.texts[index], static_cast<std::size_t>(item.cchTextMax),
             reinterpret_cast<LPARAM>(item.pszText));
    return TRUE;
}

LRESULT PressKey(HWND window, Tabs& tabs, WPARAM key) {
    const int target = tabs.selected + (key == VK_RIGHT ? 1 : -1);
    if ((key == VK_LEFT || key == VK_RIGHT) && target >= 0 && target < Count(tabs))
        Select(window, tabs, target);
    return 0;
}

LRESULT PressMouse(HWND window, Tabs& tabs, LPARAM point) {
    const int index = TabAt(tabs, {XOf(point), YOf(point)});
    if (index == tabs.selected)
        SetFocus(window);
    Select(window, tabs, index);
    return 0;
}

LRESULT HitTest(HWND window, const Tabs& tabs, LPARAM place) {
    POINT point = {XOf(place), YOf(place)};
    ScreenToClient(window, &point);
    return TabAt(tabs, point) == NONE ? HTTRANSPARENT : HTCLIENT;
}

}  // namespace

LRESULT CALLBACK TabProcedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    auto* const tabs = StateAt<Tabs>(window, message);
    if (tabs == nullptr)
        return DefWindowProcW(window, message, wparam, lparam);
    switch (message) {
        case WM_NCHITTEST:
            return HitTest(window, *tabs, lparam);
        case WM_GETDLGCODE:
            return DLGC_WANTARROWS | DLGC_WANTCHARS;
        case WM_LBUTTONDOWN:
            return PressMouse(window, *tabs, lparam);
        case WM_KEYDOWN:
            return PressKey(window, *tabs, wparam);
        case TCM_INSERTITEMW:
            return Insert(*tabs, wparam, *reinterpret_cast<const TCITEMW*>(lparam));
        case TCM_GETITEMW:
            return GetItem(*tabs, wparam, *reinterpret_cast<const TCITEMW*>(lparam));
        case TCM_GETCURSEL:
            return tabs->selected;
        default:
            return DefControlProcedure("SysTabControl32", window, message, wparam, lparam);
    }
}

}  // namespace host
