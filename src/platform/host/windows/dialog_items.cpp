// The texts of windows, and the controls of a window by their identifiers.
#include "platform/host/windows/window.h"

using host::FindWindowState;
using host::WindowPointer;

BOOL WINAPI SetWindowTextW(HWND window, LPCWSTR text) {
    return SendMessageW(window, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text)) > 0;
}

int WINAPI GetWindowTextLengthW(HWND window) {
    return static_cast<int>(SendMessageW(window, WM_GETTEXTLENGTH, 0, 0));
}

int WINAPI GetWindowTextW(HWND window, LPWSTR text, int capacity) {
    text[0] = 0;
    return static_cast<int>(
        SendMessageW(window, WM_GETTEXT, static_cast<WPARAM>(capacity), reinterpret_cast<LPARAM>(text)));
}

HWND WINAPI GetDlgItem(HWND dialog, int id) {
    const WindowPointer window = FindWindowState(dialog);
    if (window == nullptr)
        return nullptr;
    for (const HWND child : window->children)
        if (static_cast<int>(FindWindowState(child)->id) == id)
            return child;
    SetLastError(ERROR_CONTROL_ID_NOT_FOUND);
    return nullptr;
}

int WINAPI GetDlgCtrlID(HWND handle) {
    const WindowPointer window = FindWindowState(handle);
    return window == nullptr ? 0 : static_cast<int>(window->id);
}

BOOL WINAPI SetDlgItemTextW(HWND dialog, int id, LPCWSTR text) {
    return SetWindowTextW(GetDlgItem(dialog, id), text);
}

UINT WINAPI GetDlgItemTextW(HWND dialog, int id, LPWSTR text, int capacity) {
    return static_cast<UINT>(GetWindowTextW(GetDlgItem(dialog, id), text, capacity));
}

BOOL WINAPI CheckDlgButton(HWND dialog, int id, UINT check) {
    SendMessageW(GetDlgItem(dialog, id), BM_SETCHECK, check, 0);
    return TRUE;
}

UINT WINAPI IsDlgButtonChecked(HWND dialog, int id) {
    return static_cast<UINT>(SendMessageW(GetDlgItem(dialog, id), BM_GETCHECK, 0, 0));
}
