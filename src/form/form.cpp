#include "form/form.h"

#include <stdexcept>

#include "form/control_table.h"
#include "form/form_exchange.h"
#include "form/form_layout.h"

namespace {

constexpr WideView EDIT_CLASS = TEXT("EDIT");
constexpr WPARAM EDIT_LIMIT_CHARACTERS = 32760;

// Replaces a control's window procedure and stores the previous one in the control's user data.
void Subclass(HWND control, WNDPROC procedure) {
    SetWindowLongPtrW(control, GWLP_USERDATA, GetWindowLongPtrW(control, GWLP_WNDPROC));
    SetWindowLongPtrW(control, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(procedure));
}

LRESULT CallPreviousProcedure(HWND control, UINT message, WPARAM wparam, LPARAM lparam) {
    const auto previous = reinterpret_cast<WNDPROC>(GetWindowLongPtrW(control, GWLP_USERDATA));
    return CallWindowProcW(previous, control, message, wparam, lparam);
}

// Group boxes and the tab control overlap their siblings, the controls inside the frame. Without this
// function, the siblings would disappear for a moment each time the frame erases its background.
void ExcludeSiblings(HWND frame, HDC surface) {
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
        ExcludeSiblings(window, reinterpret_cast<HDC>(wparam));
    return CallPreviousProcedure(window, message, wparam, lparam);
}

// The platform never erases the background of a group box whose parent clips its children: old pixels
// would remain visible. So the group box asks its parent to erase the background.
LRESULT CALLBACK GroupBoxProc(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    if (message != WM_ERASEBKGND)
        return CallPreviousProcedure(window, message, wparam, lparam);
    ExcludeSiblings(window, reinterpret_cast<HDC>(wparam));
    return SendMessageW(GetParent(window), WM_ERASEBKGND, wparam, lparam);
}

// The configuration line and the status line show paths, and a path may contain an ampersand. With the
// styles of the control table, a label would treat the ampersand as the mark of an accelerator key and not
// paint it.
LRESULT CALLBACK PathLabelProc(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    switch (message) {
        case WM_GETDLGCODE:
            // The search for accelerator keys skips controls that want characters.
            return DLGC_WANTCHARS;
        case WM_STYLECHANGING:
        case WM_STYLECHANGED:
            return 0;  // sent by the two changes below; outside of them the label has the style of the table
        case WM_PAINT:
        case WM_SETTEXT: {
            const LONG_PTR style = GetWindowLongPtrW(window, GWL_STYLE);
            SetWindowLongPtrW(window, GWL_STYLE, style | SS_NOPREFIX);
            const LRESULT result = CallPreviousProcedure(window, message, wparam, lparam);
            SetWindowLongPtrW(window, GWL_STYLE, style);
            return result;
        }
        default:
            return CallPreviousProcedure(window, message, wparam, lparam);
    }
}

void FillZoomList(HWND combo_box) {
    for (const WCHAR* text : {TEXT("100 %"), TEXT("200 %"), TEXT("300 %"), TEXT("400 %")})
        RequireAccepted(SendMessageW(combo_box, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text)) >= 0);
}

void InsertTabs(HWND tab_control) {
    WPARAM index = 0;
    for (const WCHAR* name : {TEXT("Disques IDE"), TEXT("Modules Multiboot")}) {
        TCITEMW item{};
        item.mask = TCIF_TEXT;
        item.pszText = const_cast<WCHAR*>(name);
        RequireAccepted(
            SendMessageW(tab_control, TCM_INSERTITEMW, index++, reinterpret_cast<LPARAM>(&item)) >= 0);
    }
}

void InsertColumn(HWND list, WPARAM index, const WCHAR* title, int width) {
    LVCOLUMNW column{};
    column.mask = LVCF_WIDTH | LVCF_TEXT;
    column.cx = width;
    column.pszText = const_cast<WCHAR*>(title);
    RequireAccepted(SendMessageW(list, LVM_INSERTCOLUMNW, index, reinterpret_cast<LPARAM>(&column)) >= 0);
}

void PrepareModuleList(HWND list) {
    SendMessageW(list, LVM_SETEXTENDEDLISTVIEWSTYLE, 0, LVS_EX_FULLROWSELECT | LVS_EX_DOUBLEBUFFER);
    InsertColumn(list, 0, TEXT("Fichier"), 420);
    InsertColumn(list, 1, TEXT("Arguments"), 285);
}

// Does the remaining steps for one control, right after its creation.
void FinishControl(Launcher& launcher, const ControlRow& row, HWND control) {
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
    if (row.page == Page::Disks)
        launcher.disk_page_controls.push_back(control);
    if (row.page == Page::Modules)
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
        FinishControl(launcher, row, control);
    }
    ShowTabPage(launcher);
}
