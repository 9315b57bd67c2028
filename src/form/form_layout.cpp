#include "form/form_layout.h"

#include "form/placement.h"

namespace {

void MoveControls(const Launcher& launcher, std::int32_t dx, std::int32_t dy) {
    HDWP batch = BeginDeferWindowPos(static_cast<int>(launcher.layout_items.size()));
    if (batch == nullptr)
        return;
    for (const LayoutItem& item : launcher.layout_items) {
        const Placement placed = PlaceControl(item, static_cast<UINT>(GetDlgCtrlID(item.window)), dx, dy);
        batch = DeferWindowPos(batch, item.window, nullptr, placed.x, placed.y, placed.width, placed.height,
                               SWP_NOZORDER | SWP_NOACTIVATE);
        if (batch == nullptr)
            return;
    }
    EndDeferWindowPos(batch);
}

void ShowControls(const std::vector<HWND>& controls, bool visible) {
    for (const HWND control : controls)
        ShowWindow(control, visible ? SW_SHOW : SW_HIDE);
}

// Repaints everything in `area` (in client coordinates; null for the whole client area), for two reasons.
// Group boxes and the tab control overlap their siblings, the controls inside the frame, and paint over
// them. Controls that were moved or shown repaint themselves, but not their borders.
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
    MoveControls(launcher, dx, dy);
    if (launcher.module_list != nullptr) {
        const ColumnWidths widths = ModuleColumnWidths(dx);
        SendMessageW(launcher.module_list, LVM_SETCOLUMNWIDTH, 0, MAKELPARAM(widths.file, 0));
        SendMessageW(launcher.module_list, LVM_SETCOLUMNWIDTH, 1, MAKELPARAM(widths.arguments, 0));
    }
    // InvalidateRect alone would leave out the child windows, because the main window clips its children.
    InvalidateRect(launcher.main_window, nullptr, TRUE);
    RepaintWithChildren(launcher.main_window, nullptr);
}

void ShowTabPage(Launcher& launcher) {
    const bool shows_disks = SendMessageW(launcher.tab_control, TCM_GETCURSEL, 0, 0) == 0;
    ShowControls(launcher.disk_page_controls, shows_disks);
    ShowControls(launcher.module_page_controls, !shows_disks);
    RECT pages{};
    GetWindowRect(launcher.tab_control, &pages);
    MapWindowPoints(nullptr, launcher.main_window, reinterpret_cast<POINT*>(&pages), 2);
    RepaintWithChildren(launcher.main_window, &pages);
}
