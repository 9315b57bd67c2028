// SysTabControl32: one row of tabs, of which one is chosen. What lies below the tabs lets the mouse through.
#include <algorithm>
#include <string>
#include <vector>

#include "platform/host/api/comctl32.h"
#include "platform/host/controls/control.h"
#include "platform/host/controls/procedures.h"
#include "platform/host/hooks.h"

namespace host {
namespace {

constexpr int NONE = -1;
constexpr int FIRST_TAB_X = 2;
constexpr int TAB_TOP = 2;
constexpr int TAB_BOTTOM = 19;
constexpr int TAB_PADDING = 12;

struct Tabs {
    std::vector<std::u16string> texts;
    int chosen = NONE;
};

int WidthOf(const std::u16string& text) {
    return static_cast<int>(text.size()) * CHARACTER_WIDTH + TAB_PADDING;
}

bool IsTab(const Tabs& tabs, WPARAM index) {
    return index < tabs.texts.size();
}

RECT PlaceOf(const Tabs& tabs, std::size_t index) {
    RECT place = {FIRST_TAB_X, TAB_TOP, FIRST_TAB_X, TAB_BOTTOM};
    for (std::size_t before = 0; before < index; before++)
        place.left += WidthOf(tabs.texts[before]);
    place.right = place.left + WidthOf(tabs.texts[index]);
    return place;
}

int TabAt(const Tabs& tabs, POINT point) {
    for (std::size_t index = 0; index < tabs.texts.size(); index++) {
        const RECT place = PlaceOf(tabs, index);
        if (Contains(place, point))
            return static_cast<int>(index);
    }
    return NONE;
}

// The user's choice.
void Choose(HWND window, Tabs& tabs, int index) {
    if (index == NONE || index == tabs.chosen)
        return;
    tabs.chosen = index;
    NMHDR header{};
    NotifyParent(window, TCN_SELCHANGE, header);
}

LRESULT Insert(Tabs& tabs, WPARAM index, const TCITEMW& item) {
    if (item.mask != TCIF_TEXT)
        NotImplemented("TCM_INSERTITEMW", "more than a text");
    const std::size_t place = std::min<std::size_t>(index, tabs.texts.size());
    tabs.texts.insert(tabs.texts.begin() + static_cast<std::ptrdiff_t>(place), item.pszText);
    if (tabs.chosen == NONE)
        tabs.chosen = 0;
    else if (static_cast<int>(place) <= tabs.chosen)
        tabs.chosen++;
    return static_cast<LRESULT>(place);
}

LRESULT GiveItem(const Tabs& tabs, WPARAM index, const TCITEMW& item) {
    if (item.mask != TCIF_TEXT)
        NotImplemented("TCM_GETITEMW", "more than a text");
    if (!IsTab(tabs, index))
        return FALSE;
    GiveText(tabs.texts[index], static_cast<std::size_t>(item.cchTextMax),
             reinterpret_cast<LPARAM>(item.pszText));
    return TRUE;
}

LRESULT PressKey(HWND window, Tabs& tabs, WPARAM key) {
    const int step = key == VK_RIGHT ? 1 : -1;
    const int target = tabs.chosen + step;
    if ((key == VK_LEFT || key == VK_RIGHT) && target >= 0 && IsTab(tabs, static_cast<WPARAM>(target)))
        Choose(window, tabs, target);
    return 0;
}

LRESULT PressMouse(HWND window, Tabs& tabs, LPARAM point) {
    SetFocus(window);
    Choose(window, tabs, TabAt(tabs, {XOf(point), YOf(point)}));
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
            return GiveItem(*tabs, wparam, *reinterpret_cast<const TCITEMW*>(lparam));
        case TCM_GETCURSEL:
            return tabs->chosen;
        default:
            return DefControlProcedure("SysTabControl32", window, message, wparam, lparam);
    }
}

}  // namespace host
