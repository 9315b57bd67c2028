// The batch of moves, the two pages, and what must be painted again after either.
#include "form/form_layout.h"

#include <algorithm>

#include "form/placement.h"

namespace {

RECT PlaceInParent(HWND control) {
    RECT place{};
    GetWindowRect(control, &place);
    MapWindowPoints(nullptr, GetParent(control), reinterpret_cast<POINT*>(&place), 2);
    return place;
}

Placement PlacementOf(const LayoutItem& item, std::int32_t dx, std::int32_t dy) {
    return PlaceControl(item, static_cast<UINT>(GetDlgCtrlID(item.window)), dx, dy);
}

// Heights need no look: they change only together with the places of the bottom row.
bool StandsAsPlaced(const LayoutItem& item, std::int32_t dx, std::int32_t dy) {
    const RECT present = PlaceInParent(item.window);
    const Placement placed = PlacementOf(item, dx, dy);
    return present.left == placed.x && present.top == placed.y &&
           present.right - present.left == placed.width;
}

void MoveControls(const Launcher& launcher, std::int32_t dx, std::int32_t dy) {
    HDWP batch = BeginDeferWindowPos(static_cast<int>(launcher.layout_items.size()));
    if (batch == nullptr)
        return;
    for (const LayoutItem& item : launcher.layout_items) {
        const Placement placed = PlacementOf(item, dx, dy);
        batch = DeferWindowPos(batch, item.window, nullptr, placed.x, placed.y, placed.width, placed.height,
                               SWP_NOZORDER | SWP_NOACTIVATE);
        if (batch == nullptr)
            return;
    }
    EndDeferWindowPos(batch);
}

void SetColumnWidth(HWND list, WPARAM column, std::int32_t width) {
    SendMessageW(list, LVM_SETCOLUMNWIDTH, column, MAKELPARAM(width, 0));
}

void ShowControls(const std::vector<HWND>& controls, bool visible) {
    for (const HWND control : controls)
        ShowWindow(control, visible ? SW_SHOW : SW_HIDE);
}

// The group boxes and the tab control lie over their controls as siblings and paint across them. What is
// shown or moved repaints itself without its frame, so controls would stay painted over. `area` in client
// coordinates, null for the whole client area.
void RepaintWithChildren(HWND window, const RECT* area) {
    RedrawWindow(window, area, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_ALLCHILDREN);
}

}  // namespace

SIZE BaseWindowSize() {
    RECT outer{0, 0, BASE_CLIENT_WIDTH, BASE_CLIENT_HEIGHT};
    AdjustWindowRectEx(&outer, MAIN_WINDOW_STYLE, FALSE, 0);
    return {outer.right - outer.left, outer.bottom - outer.top};
}

void LayoutForm(Launcher& launcher) {
    RECT client{};
    GetClientRect(launcher.main_window, &client);
    const std::int32_t dx = client.right - BASE_CLIENT_WIDTH;
    const std::int32_t dy = client.bottom - BASE_CLIENT_HEIGHT;
    // At the start everything stands where it was made, and need not be painted again.
    const bool moves = !std::all_of(launcher.layout_items.begin(), launcher.layout_items.end(),
                                    [&](const LayoutItem& item) { return StandsAsPlaced(item, dx, dy); });
    if (moves)
        MoveControls(launcher, dx, dy);
    if (launcher.module_list != nullptr) {
        const ColumnWidths widths = ModuleColumnWidths(dx);
        SetColumnWidth(launcher.module_list, 0, widths.file);
        SetColumnWidth(launcher.module_list, 1, widths.arguments);
    }
    if (!moves)
        return;
    // The first leaves the children out, for the window clips them; the second paints them again over it.
    InvalidateRect(launcher.main_window, nullptr, TRUE);
    RepaintWithChildren(launcher.main_window, nullptr);
}

void ShowTabPage(Launcher& launcher) {
    const TabPage page = PageOfTab(SendMessageW(launcher.tab_control, TCM_GETCURSEL, 0, 0));
    ShowControls(launcher.disk_page_controls, page == TabPage::Disks);
    ShowControls(launcher.module_page_controls, page == TabPage::Modules);
    const RECT pages = PlaceInParent(launcher.tab_control);
    RepaintWithChildren(launcher.main_window, &pages);
}
