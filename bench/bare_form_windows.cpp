// The program that the start is compared with: the same window with its 56 controls, and nothing behind them.
#include "form/control_table.h"
#include "form/form_layout.h"

namespace {

void MakeControls(HWND window) {
    const auto font = reinterpret_cast<WPARAM>(GetStockObject(DEFAULT_GUI_FONT));
    for (const ControlRow& row : CONTROL_TABLE) {
        const DWORD shown = row.page == Page::Modules ? 0 : WS_VISIBLE;
        const DWORD edge = WideView(row.class_name) == TEXT("EDIT") ? WS_EX_CLIENTEDGE : 0;
        const HWND control = CreateWindowExW(
            edge, row.class_name, row.text, row.style | WS_CHILD | shown, row.x, row.y, row.width, row.height,
            window, reinterpret_cast<HMENU>(UINT_PTR{row.id}), GetModuleHandleW(nullptr), nullptr);
        SendMessageW(control, WM_SETFONT, font, TRUE);
    }
}

LRESULT CALLBACK BareProc(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    if (message == WM_CREATE)
        MakeControls(window);
    if (message == WM_DESTROY)
        PostQuitMessage(0);
    return DefWindowProcW(window, message, wparam, lparam);
}

}  // namespace

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, LPWSTR, int show_command) {
    INITCOMMONCONTROLSEX controls{sizeof controls, ICC_LISTVIEW_CLASSES | ICC_TAB_CLASSES};
    InitCommonControlsEx(&controls);
    WNDCLASSW window_class{};
    window_class.lpfnWndProc = BareProc;
    window_class.hInstance = instance;
    window_class.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    window_class.hbrBackground = reinterpret_cast<HBRUSH>(UINT_PTR{COLOR_BTNFACE + 1});
    window_class.lpszClassName = TEXT("BareForm");
    RegisterClassW(&window_class);
    const SIZE size = BaseWindowSize();
    const HWND window =
        CreateWindowExW(0, window_class.lpszClassName, TEXT("Bare"), MAIN_WINDOW_STYLE, CW_USEDEFAULT,
                        CW_USEDEFAULT, size.cx, size.cy, nullptr, nullptr, instance, nullptr);
    ShowWindow(window, show_command);
    UpdateWindow(window);
    for (MSG message{}; GetMessageW(&message, nullptr, 0, 0) > 0;)
        DispatchMessageW(&message);
    return 0;
}
