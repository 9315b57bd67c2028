// Messages of controls to their parents, the messages that controls do not handle, and InitCommonControlsEx.
#include <algorithm>
#include <array>

#include "platform/host/api/comctl32.h"
#include "platform/host/api/kernel32.h"
#include "platform/host/controls/control.h"
#include "platform/host/hooks/call_hooks.h"

namespace host {
namespace {

struct MessageRange {
    UINT first;
    UINT last;
};

// The ranges of the messages that only controls define.
constexpr auto CONTROL_MESSAGES = std::to_array<MessageRange>({
    {EM_GETSEL, BM_CLICK + 2},
    {0x0140, 0x01BF},
    {WM_CUT, WM_UNDO},
    {WM_USER, WM_APP - 1},
});

bool IsControlMessage(UINT message) {
    return std::any_of(
        CONTROL_MESSAGES.begin(), CONTROL_MESSAGES.end(),
        [message](const MessageRange& range) { return message >= range.first && message <= range.last; });
}

}  // namespace

bool IsInClientArea(HWND window, LPARAM point) {
    RECT client{};
    GetClientRect(window, &client);
    return Contains(client, {XOf(point), YOf(point)});
}

void SendCommand(HWND control, int code) {
    SendMessageW(GetParent(control), WM_COMMAND,
                 MAKEWPARAM(static_cast<unsigned>(GetDlgCtrlID(control)), static_cast<unsigned>(code)),
                 reinterpret_cast<LPARAM>(control));
}

void SendNotification(HWND control, UINT code, NMHDR& header) {
    header.hwndFrom = control;
    header.idFrom = static_cast<UINT_PTR>(GetDlgCtrlID(control));
    header.code = code;
    SendMessageW(GetParent(control), WM_NOTIFY, header.idFrom, reinterpret_cast<LPARAM>(&header));
}

LRESULT DefControlProcedure(const char* class_name, HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    if (message == WM_SETFONT) {
        SetWindowLongPtrW(window, FONT_OFFSET, static_cast<LONG_PTR>(wparam));
        return 0;
    }
    if (message == WM_GETFONT)
        return GetWindowLongPtrW(window, FONT_OFFSET);
    if (IsControlMessage(message))
        NotImplemented(class_name, "message", message);
    return DefWindowProcW(window, message, wparam, lparam);
}

}  // namespace host

BOOL WINAPI InitCommonControlsEx(const INITCOMMONCONTROLSEX* classes) {
    constexpr DWORD KNOWN_CLASSES = ICC_LISTVIEW_CLASSES | ICC_TAB_CLASSES;
    if (host::CallFails("InitCommonControlsEx", {classes->dwICC}))
        return FALSE;
    if (classes->dwSize != sizeof(INITCOMMONCONTROLSEX) || (classes->dwICC & ~KNOWN_CLASSES) != 0)
        host::NotImplemented("InitCommonControlsEx", "other classes than lists and tabs");
    return TRUE;
}
