// The controls as the table lists them, and what some of them need as soon as they stand.
#include "form/form.h"

#include <stdexcept>

#include "form/control_table.h"
#include "form/form_exchange.h"
#include "form/form_layout.h"
#include "form/writable_text.h"

namespace {

constexpr WideView EDIT_CLASS = TEXT("EDIT");
constexpr WPARAM EDIT_LIMIT_CHARACTERS = 32760;

// Puts a procedure in front of a control's own one, which is kept in the control's user data.
void Subclass(HWND control, WNDPROC procedure) {
    SetWindowLongPtrW(control, GWLP_USERDATA, GetWindowLongPtrW(control, GWLP_WNDPROC));
    SetWindowLongPtrW(control, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(procedure));
}

LRESULT CallOwnProcedure(HWND control, UINT message, WPARAM wparam, LPARAM lparam) {
    const auto own = reinterpret_cast<WNDPROC>(GetWindowLongPtrW(control, GWLP_USERDATA));
    return CallWindowProcW(own, control, message, wparam, lparam);
}

// A group box and the tab control lie over the controls that they frame, as their siblings. Their own surface
// leaves these out: they would vanish for a moment each time that the frame is painted before them.
void LeaveSiblingsOut(HWND frame, HDC surface) {
    const auto* const launcher =
        reinterpret_cast<const Launcher*>(GetWindowLongPtrW(GetParent(frame), GWLP_USERDATA));
    for (const LayoutItem& sibling : launcher->layout_items) {
        if (sibling.window == frame || IsWindowVisible(sibling.window) == FALSE)
            continue;
        RECT place{};
        GetWindowRect(sibling.window, &place);
        MapWindowPoints(nullptr, frame, reinterpret_cast<POINT*>(&place), 2);
        ExcludeClipRect(surface, place.left, place.top, place.right, place.bottom);
    }
}

LRESULT CALLBACK TabControlProc(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    if (message == WM_ERASEBKGND)
        LeaveSiblingsOut(window, reinterpret_cast<HDC>(wparam));
    return CallOwnProcedure(window, message, wparam, lparam);
}

// A group box in a parent that clips its children never gets its background erased: it would show whatever
// was there before. It is given the parent's background instead.
LRESULT CALLBACK GroupBoxProc(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    if (message != WM_ERASEBKGND)
        return CallOwnProcedure(window, message, wparam, lparam);
    LeaveSiblingsOut(window, reinterpret_cast<HDC>(wparam));
    return SendMessageW(GetParent(window), WM_ERASEBKGND, wparam, lparam);
}

// The labels of the table take an ampersand for the mark of an accelerator and swallow it, and these two show
// paths. While one paints or takes its text, it is told not to.
LRESULT CALLBACK PathLabelProc(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    if (message != WM_PAINT && message != WM_SETTEXT)
        return CallOwnProcedure(window, message, wparam, lparam);
    const LONG_PTR style = GetWindowLongPtrW(window, GWL_STYLE);
    SetWindowLongPtrW(window, GWL_STYLE, style | SS_NOPREFIX);
    const LRESULT result = CallOwnProcedure(window, message, wparam, lparam);
    SetWindowLongPtrW(window, GWL_STYLE, style);
    return result;
}

void FillZoomList(HWND combo_box) {
    for (const WCHAR* text : {TEXT("100 %"), TEXT("200 %"), TEXT("300 %"), TEXT("400 %")})
        RequireTaken(SendMessageW(combo_box, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text)) >= 0);
}

void InsertTabs(HWND tab_control) {
    WPARAM index = 0;
    for (const WCHAR* name : {TEXT("Disques IDE"), TEXT("Modules Multiboot")}) {
        TCITEMW item{};
        item.mask = TCIF_TEXT;
        item.pszText = WritableText(name);
        RequireTaken(SendMessageW(tab_control, TCM_INSERTITEMW, index++, reinterpret_cast<LPARAM>(&item)) >=
                     0);
    }
}

void InsertColumn(HWND list, WPARAM index, const WCHAR* title, int width) {
    LVCOLUMNW column{};
    column.mask = LVCF_WIDTH | LVCF_TEXT;
    column.cx = width;
    column.pszText = WritableText(title);
    RequireTaken(SendMessageW(list, LVM_INSERTCOLUMNW, index, reinterpret_cast<LPARAM>(&column)) >= 0);
}

void PrepareModuleList(HWND list) {
    SendMessageW(list, LVM_SETEXTENDEDLISTVIEWSTYLE, 0, LVS_EX_FULLROWSELECT | LVS_EX_DOUBLEBUFFER);
    InsertColumn(list, 0, TEXT("Fichier"), 420);
    InsertColumn(list, 1, TEXT("Arguments"), 285);
}

// What a control needs as soon as it stands.
void Prepare(Launcher& launcher, const ControlRow& row, HWND control) {
    switch (row.id) {
        case IDC_CONFIG_LINE:
            launcher.path_label = control;
            Subclass(control, PathLabelProc);
            break;
        case IDC_ZOOM:
            FillZoomList(control);
            break;
        case IDC_PAGE_TABS:
            launcher.tab_control = control;
            Subclass(control, TabControlProc);
            InsertTabs(control);
            break;
        case IDC_MODULE_LIST:
            launcher.module_list = control;
            PrepareModuleList(control);
            break;
        case IDC_STATUS:
            launcher.status_label = control;
            Subclass(control, PathLabelProc);
            break;
        default:
            break;
    }
    if (row.style == BS_GROUPBOX && row.class_name == WideView(TEXT("BUTTON")))
        Subclass(control, GroupBoxProc);
    if (row.place == Place::DiskPage)
        launcher.disk_page_controls.push_back(control);
    if (row.place == Place::ModulePage)
        launcher.module_page_controls.push_back(control);
}

}  // namespace

HWND CreateControl(Launcher& launcher, WideView class_name, WideView text, UINT id, std::int32_t x,
                   std::int32_t y, std::int32_t width, std::int32_t height, DWORD style, bool stretch) {
    const bool is_edit = class_name == EDIT_CLASS;
    const HWND control =
        CreateWindowExW(is_edit ? WS_EX_CLIENTEDGE : 0, WideText(class_name).c_str(), WideText(text).c_str(),
                        style | WS_CHILD | WS_VISIBLE, x, y, width, height, launcher.main_window,
                        reinterpret_cast<HMENU>(static_cast<UINT_PTR>(id)), launcher.instance, nullptr);
    if (control == nullptr)
        throw std::runtime_error("Création d'un contrôle impossible.");
    SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(launcher.gui_font), TRUE);
    if (is_edit)
        SendMessageW(control, EM_LIMITTEXT, EDIT_LIMIT_CHARACTERS, 0);
    launcher.layout_items.push_back({control, x, y, width, height, stretch});
    return control;
}

void BuildForm(Launcher& launcher) {
    const FillingScope filling(launcher);
    launcher.gui_font = static_cast<HFONT>(GetStockObject(DEFAULT_GUI_FONT));
    for (const ControlRow& row : CONTROL_TABLE) {
        const HWND control = CreateControl(launcher, row.class_name, row.text, row.id, row.x, row.y,
                                           row.width, row.height, row.style, row.stretch);
        Prepare(launcher, row, control);
    }
    ShowTabPage(launcher);
}
