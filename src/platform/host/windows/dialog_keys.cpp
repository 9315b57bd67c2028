// The keyboard of a dialog box, for any window that wants it: Tab, Enter, Escape, the arrow keys.
#include <algorithm>

#include "platform/host/hooks.h"
#include "platform/host/windows/window.h"

namespace host {
namespace {

// The control that the window is, or is a part of: a direct child of the dialog; null for the dialog itself.
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

int DialogCode(HWND handle) {
    return static_cast<int>(SendMessageW(handle, WM_GETDLGCODE, 0, 0));
}

int DialogCodeFor(HWND handle, MSG& message) {
    return static_cast<int>(
        SendMessageW(handle, WM_GETDLGCODE, message.wParam, reinterpret_cast<LPARAM>(&message)));
}

// --- the default button ---

HWND DefaultButton(HWND dialog) {
    const auto answer = static_cast<DWORD>(SendMessageW(dialog, DM_GETDEFID, 0, 0));
    return HIWORD(std::uintptr_t{answer}) == DC_HASDEFID ? GetDlgItem(dialog, LOWORD(std::uintptr_t{answer}))
                                                         : nullptr;
}

void SetButtonStyle(HWND button, DWORD style) {
    SendMessageW(button, BM_SETSTYLE, style, TRUE);
}

// The button with the focus wears the mark of the default button; the others take it off.
void MarkDefaultButton(HWND dialog, HWND focus) {
    const int code = DialogCode(focus);
    const std::vector<HWND> children = FindWindowState(dialog)->children;
    for (const HWND child : children) {
        const bool marked = (DialogCode(child) & DLGC_DEFPUSHBUTTON) != 0;
        if (marked && (child != focus || (code & DLGC_DEFPUSHBUTTON) != 0))
            SetButtonStyle(child, BS_PUSHBUTTON);
    }
    if ((code & DLGC_UNDEFPUSHBUTTON) != 0) {
        SetButtonStyle(focus, BS_DEFPUSHBUTTON);
    } else if ((code & DLGC_DEFPUSHBUTTON) != 0) {
        if (const HWND button = DefaultButton(dialog); button != nullptr)
            SetButtonStyle(button, BS_DEFPUSHBUTTON);
    }
}

// --- the keys ---

void SelectText(HWND control, int code) {
    if ((code & DLGC_HASSETSEL) != 0)
        SendMessageW(control, EM_SETSEL, 0, GetWindowTextLengthW(control));
}

void Tab(HWND dialog, MSG& message) {
    const bool backwards = GetKeyState(VK_SHIFT) < 0;
    const HWND from = message.hwnd == dialog ? nullptr : message.hwnd;
    const HWND next = GetNextDlgTabItem(dialog, from, backwards ? TRUE : FALSE);
    if (next == nullptr)
        return;
    SelectText(next, DialogCodeFor(next, message));
    SetFocus(next);
    MarkDefaultButton(dialog, next);
}

void Press(HWND dialog, int id, HWND button) {
    SendMessageW(dialog, WM_COMMAND, MAKEWPARAM(static_cast<unsigned>(id), BN_CLICKED),
                 reinterpret_cast<LPARAM>(button));
}

void Enter(HWND dialog) {
    const HWND focus = GetFocus();
    const bool in_dialog = focus != nullptr && IsChild(dialog, focus) != FALSE;
    if (in_dialog && (DialogCode(focus) & DLGC_DEFPUSHBUTTON) != 0) {
        Press(dialog, GetDlgCtrlID(focus), focus);
        return;
    }
    const auto answer = static_cast<DWORD>(SendMessageW(dialog, DM_GETDEFID, 0, 0));
    const bool has_default = HIWORD(std::uintptr_t{answer}) == DC_HASDEFID;
    const int id = has_default ? LOWORD(std::uintptr_t{answer}) : IDOK;
    const HWND button = GetDlgItem(dialog, id);
    if (button == nullptr || IsWindowEnabled(button) != FALSE)
        Press(dialog, id, button);
}

void Arrow(HWND dialog, MSG& message) {
    const bool backwards = message.wParam == VK_LEFT || message.wParam == VK_UP;
    const HWND next = GetNextDlgGroupItem(dialog, message.hwnd, backwards ? TRUE : FALSE);
    if (next != nullptr) {
        DialogCodeFor(next, message);
        SendMessageW(dialog, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(next), TRUE);
    }
}

// Whether the key was one for the dialog.
bool TakeKeyDown(HWND dialog, MSG& message, int code) {
    switch (message.wParam) {
        case VK_TAB:
            if ((code & DLGC_WANTTAB) == 0) {
                Tab(dialog, message);
                return true;
            }
            return false;
        case VK_RIGHT:
        case VK_DOWN:
        case VK_LEFT:
        case VK_UP:
            if ((code & DLGC_WANTARROWS) == 0) {
                Arrow(dialog, message);
                return true;
            }
            return false;
        case VK_ESCAPE:
        case VK_CANCEL:
            Press(dialog, IDCANCEL, GetDlgItem(dialog, IDCANCEL));
            return true;
        case VK_EXECUTE:
        case VK_RETURN:
            Enter(dialog);
            return true;
        default:
            return false;
    }
}

std::size_t StepFrom(std::size_t index, std::size_t count, bool backwards) {
    return backwards ? (index + count - 1) % count : (index + 1) % count;
}

}  // namespace
}  // namespace host

using host::FindWindowState;

HWND WINAPI GetNextDlgTabItem(HWND dialog, HWND control, BOOL previous) {
    const host::WindowPointer window = FindWindowState(dialog);
    if (window == nullptr || window->children.empty())
        return nullptr;
    const std::vector<HWND>& children = window->children;
    const std::size_t count = children.size();
    const bool backwards = previous != FALSE;
    const HWND start = host::ControlOf(dialog, control);
    const auto place = std::find(children.begin(), children.end(), start);
    std::size_t index = backwards ? 0 : count - 1;
    if (place != children.end())
        index = static_cast<std::size_t>(place - children.begin());
    for (std::size_t looked_at = 0; looked_at < count; ++looked_at) {
        index = host::StepFrom(index, count, backwards);
        if (host::IsTabStop(children[index]))
            return children[index];
    }
    return start;
}

HWND WINAPI GetNextDlgGroupItem(HWND dialog, HWND control, BOOL previous) {
    const host::WindowPointer window = FindWindowState(dialog);
    const HWND start = host::ControlOf(dialog, control);
    if (window == nullptr || start == nullptr)
        return nullptr;
    const std::vector<HWND>& children = window->children;
    auto first = std::find(children.begin(), children.end(), start);
    auto last = first + 1;
    while (first != children.begin() && !host::StartsGroup(*first))
        --first;
    last = std::find_if(last, children.end(), host::StartsGroup);
    const auto count = static_cast<std::size_t>(last - first);
    auto index = static_cast<std::size_t>(std::find(first, last, start) - first);
    for (std::size_t looked_at = 0; looked_at < count; ++looked_at) {
        index = host::StepFrom(index, count, previous != FALSE);
        const HWND candidate = *(first + static_cast<std::ptrdiff_t>(index));
        if (host::IsReachable(candidate))
            return candidate;
    }
    return start;
}

BOOL WINAPI IsDialogMessageW(HWND dialog, LPMSG message) {
    if (FindWindowState(dialog) == nullptr || message->hwnd == nullptr)
        return FALSE;
    if (message->hwnd != dialog && IsChild(dialog, message->hwnd) == FALSE)
        return FALSE;
    if (message->message == WM_KEYDOWN) {
        const int code = host::DialogCodeFor(message->hwnd, *message);
        if ((code & DLGC_WANTALLKEYS) == 0 && host::TakeKeyDown(dialog, *message, code))
            return TRUE;
    } else if (message->message == WM_CHAR) {
        // The keys that the dialog took above bring their characters no more; all others are the control's.
        host::DialogCodeFor(message->hwnd, *message);
    }
    TranslateMessage(message);
    DispatchMessageW(message);
    return TRUE;
}
