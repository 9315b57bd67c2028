// Handles the keys of a dialog box in any window: Tab, Enter, Escape, the arrow keys and accelerator keys.
#include <algorithm>
#include <array>
#include <string_view>

#include "platform/host/windows/window.h"

namespace host {
namespace {

// The direct child of the dialog that contains the window or is the window; null for the dialog itself.
HWND ControlOf(HWND dialog, HWND handle) {
    while (handle != nullptr && handle != dialog) {
        const WindowPointer window = FindWindowState(handle);
        if (window == nullptr || window->parent == dialog)
            return window == nullptr ? nullptr : handle;
        handle = window->parent;
    }
    return nullptr;
}

bool IsReachable(HWND handle) {
    return (FindWindowState(handle)->style & (WS_VISIBLE | WS_DISABLED)) == WS_VISIBLE;
}

bool IsTabStop(HWND handle) {
    return IsReachable(handle) && (FindWindowState(handle)->style & WS_TABSTOP) != 0;
}

bool StartsGroup(HWND handle) {
    return (FindWindowState(handle)->style & WS_GROUP) != 0;
}

// The control's answer to WM_GETDLGCODE: the keys that it handles itself. With a message, the answer for that
// key.
int DialogCode(HWND control, const MSG* key = nullptr) {
    const WPARAM pressed = key == nullptr ? 0 : key->wParam;
    return static_cast<int>(SendMessageW(control, WM_GETDLGCODE, pressed, reinterpret_cast<LPARAM>(key)));
}

// --- the default button ---

int DefaultId(HWND dialog) {
    const auto answer = SendMessageW(dialog, DM_GETDEFID, 0, 0);
    return HIWORD(answer) == DC_HASDEFID ? LOWORD(answer) : IDOK;
}

void SetButtonStyle(HWND button, DWORD style) {
    SendMessageW(button, BM_SETSTYLE, style, TRUE);
}

// The button with the focus gets the style of a default button; the others lose it.
void MarkDefaultButton(HWND dialog, HWND focus) {
    const int code = DialogCode(focus);
    const std::vector<HWND> children = FindWindowState(dialog)->children;
    for (const HWND child : children) {
        const bool marked = (DialogCode(child) & DLGC_DEFPUSHBUTTON) != 0;
        if (marked && (child != focus || (code & DLGC_DEFPUSHBUTTON) != 0))
            SetButtonStyle(child, BS_PUSHBUTTON);
    }
    if ((code & DLGC_UNDEFPUSHBUTTON) != 0)
        SetButtonStyle(focus, BS_DEFPUSHBUTTON);
    else if ((code & DLGC_DEFPUSHBUTTON) != 0)
        SetButtonStyle(GetDlgItem(dialog, DefaultId(dialog)), BS_DEFPUSHBUTTON);
}

// --- the keys ---

void HandleTab(HWND dialog, const MSG& key) {
    const HWND from = key.hwnd == dialog ? nullptr : key.hwnd;
    const HWND next = GetNextDlgTabItem(dialog, from, GetKeyState(VK_SHIFT) < 0);
    if (next == nullptr)
        return;
    if ((DialogCode(next, &key) & DLGC_HASSETSEL) != 0)
        SendMessageW(next, EM_SETSEL, 0, GetWindowTextLengthW(next));
    SetFocus(next);
    MarkDefaultButton(dialog, next);
}

void SendClick(HWND dialog, int id, HWND button) {
    SendMessageW(dialog, WM_COMMAND, MAKEWPARAM(id, BN_CLICKED), reinterpret_cast<LPARAM>(button));
}

void HandleEnter(HWND dialog) {
    const HWND focus = GetFocus();
    if (IsChild(dialog, focus) && (DialogCode(focus) & DLGC_DEFPUSHBUTTON) != 0) {
        SendClick(dialog, GetDlgCtrlID(focus), focus);
        return;
    }
    const int id = DefaultId(dialog);
    const HWND button = GetDlgItem(dialog, id);
    if (button == nullptr || IsWindowEnabled(button))
        SendClick(dialog, id, button);
}

// The first window that passes the test; null if none does. The search starts after the index, continues at
// the other end of the list, and ends at the index.
template <typename Passes>
HWND NextInCircle(std::span<const HWND> windows, std::size_t index, bool backwards, const Passes& passes) {
    for (std::size_t looked_at = 0; looked_at < windows.size(); ++looked_at) {
        index = (index + (backwards ? windows.size() - 1 : 1)) % windows.size();
        if (passes(windows[index]))
            return windows[index];
    }
    return nullptr;
}

void HandleArrow(HWND dialog, const MSG& key) {
    const bool backwards = key.wParam == VK_LEFT || key.wParam == VK_UP;
    const std::vector<HWND>& children = FindWindowState(dialog)->children;
    const auto start = std::find(children.begin(), children.end(), ControlOf(dialog, key.hwnd));
    if (start == children.end())
        return;
    auto first = start;
    while (first != children.begin() && !StartsGroup(*first))
        --first;
    const auto last = std::find_if(start + 1, children.end(), StartsGroup);
    const HWND next =
        NextInCircle({first, last}, static_cast<std::size_t>(start - first), backwards, IsReachable);
    if (next != nullptr)
        SendMessageW(dialog, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(next), TRUE);
}

WCHAR ToUpper(WCHAR character) {
    const bool is_lower = character >= u'a' && character <= u'z';
    return static_cast<WCHAR>(is_lower ? character - u'a' + u'A' : character);
}

// The character after the first ampersand of the control's text, in upper case; 0 if there is none.
WCHAR AcceleratorOf(HWND control) {
    std::array<WCHAR, 256> buffer{};
    GetWindowTextW(control, buffer.data(), static_cast<int>(buffer.size()));
    const std::u16string_view text(buffer.data());
    const std::size_t ampersand = text.find(u'&');
    const bool is_mark = ampersand != text.npos && ampersand + 1 < text.size();
    return is_mark ? ToUpper(text[ampersand + 1]) : u'\0';
}

// The accelerator key of a button presses the button; that of a label moves the focus to the next control.
// Controls that handle characters themselves have none. True: the dialog handled the key.
bool HandleAccelerator(HWND dialog, WCHAR character) {
    const std::vector<HWND>& children = FindWindowState(dialog)->children;
    for (std::size_t index = 0; index < children.size(); ++index) {
        const HWND control = children[index];
        const int code = DialogCode(control);
        if (!IsReachable(control) || (code & DLGC_WANTCHARS) != 0 ||
            AcceleratorOf(control) != ToUpper(character))
            continue;
        if ((code & DLGC_STATIC) != 0)
            SetFocus(NextInCircle(children, index, false, IsTabStop));
        else
            SendClick(dialog, GetDlgCtrlID(control), control);
        return true;
    }
    return false;
}

// True: the dialog handled the key.
bool HandleKeyDown(HWND dialog, const MSG& key, int code) {
    switch (key.wParam) {
        case VK_TAB:
            HandleTab(dialog, key);
            return true;
        case VK_RIGHT:
        case VK_DOWN:
        case VK_LEFT:
        case VK_UP:
            if ((code & DLGC_WANTARROWS) != 0)
                return false;
            HandleArrow(dialog, key);
            return true;
        case VK_ESCAPE:
            SendClick(dialog, IDCANCEL, GetDlgItem(dialog, IDCANCEL));
            return true;
        case VK_RETURN:
            HandleEnter(dialog);
            return true;
        default:
            return false;
    }
}

}  // namespace
}  // namespace host

HWND WINAPI GetNextDlgTabItem(HWND dialog, HWND control, BOOL previous) {
    const host::WindowPointer window = host::FindWindowState(dialog);
    if (window == nullptr || window->children.empty())
        return nullptr;
    const std::vector<HWND>& children = window->children;
    const auto place = std::find(children.begin(), children.end(), host::ControlOf(dialog, control));
    std::size_t index = previous != FALSE ? 0 : children.size() - 1;
    if (place != children.end())
        index = static_cast<std::size_t>(place - children.begin());
    return host::NextInCircle(children, index, previous != FALSE, host::IsTabStop);
}

BOOL WINAPI IsDialogMessageW(HWND dialog, LPMSG message) {
    if (!IsWindow(dialog) || (message->hwnd != dialog && !IsChild(dialog, message->hwnd)))
        return FALSE;
    if (message->message == WM_KEYDOWN) {
        const int code = host::DialogCode(message->hwnd, message);
        if ((code & DLGC_WANTALLKEYS) == 0 && host::HandleKeyDown(dialog, *message, code))
            return TRUE;
    }
    if (message->message == WM_SYSCHAR &&
        host::HandleAccelerator(dialog, static_cast<WCHAR>(message->wParam)))
        return TRUE;
    TranslateMessage(message);
    DispatchMessageW(message);
    return TRUE;
}
