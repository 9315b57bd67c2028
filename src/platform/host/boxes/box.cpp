// The window of a box: its position, its focus, and its message loop.
#include "platform/host/boxes/box.h"

#include "platform/host/controls/control.h"
#include "platform/host/hooks/call_hooks.h"

namespace host {
namespace {

constexpr DWORD BOX_STYLE = WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_CLIPSIBLINGS;
constexpr DWORD BOX_EXTENDED_STYLE = WS_EX_DLGMODALFRAME | WS_EX_CONTROLPARENT | WS_EX_WINDOWEDGE;

POINT MiddleOf(HWND owner, int width, int height) {
    RECT around = {0, 0, SCREEN_WIDTH, SCREEN_HEIGHT};
    if (owner != nullptr && IsWindowVisible(owner))
        GetWindowRect(owner, &around);
    return {(around.left + around.right - width) / 2, (around.top + around.bottom - height) / 2};
}

LRESULT FollowFocus(Box& box, WPARAM activation) {
    if (LOWORD(activation) != WA_INACTIVE)
        SetFocus(box.focus);
    else if (const HWND focus = GetFocus(); focus != nullptr && IsChild(box.window, focus))
        box.focus = focus;
    return 0;
}

bool HasDialogCode(HWND control, int code) {
    return (SendMessageW(control, WM_GETDLGCODE, 0, 0) & code) != 0;
}

// Moves the focus for a key. If a button gets the focus, it becomes the default button (for Enter); otherwise
// the box's own default button does.
LRESULT MoveFocus(const Box& box, HWND next) {
    for (HWND button = GetWindow(box.window, GW_CHILD); button != nullptr;
         button = GetWindow(button, GW_HWNDNEXT))
        if (HasDialogCode(button, DLGC_DEFPUSHBUTTON))
            SendMessageW(button, BM_SETSTYLE, BS_PUSHBUTTON, TRUE);
    const HWND marked =
        HasDialogCode(next, DLGC_UNDEFPUSHBUTTON) ? next : GetDlgItem(box.window, box.default_id);
    if (marked != nullptr)
        SendMessageW(marked, BM_SETSTYLE, BS_DEFPUSHBUTTON, TRUE);
    SetFocus(next);
    return 0;
}

bool WaitForMessage(MSG& message) {
    const SuspendHooks suspended;
    return GetMessageW(&message, nullptr, 0, 0) > 0;
}

void PumpMessages(const Box& box) {
    while (box.is_open) {
        MSG message{};
        if (!WaitForMessage(message)) {
            PostQuitMessage(static_cast<int>(message.wParam));
            return;
        }
        if (!IsDialogMessageW(box.window, &message)) {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
    }
}

}  // namespace

void MakeBox(Box& box, HWND owner, const WCHAR* title, int width, int height) {
    const SuspendHooks suspended;
    const HWND root = owner == nullptr ? nullptr : RootOf(owner);
    const POINT corner = MiddleOf(root, width, height);
    CreateWindowExW(BOX_EXTENDED_STYLE, u"#32770", title, BOX_STYLE, corner.x, corner.y, width, height, root,
                    nullptr, nullptr, &box);
}

HWND AddToBox(const Box& box, const BoxControl& control) {
    const SuspendHooks suspended;
    return CreateWindowExW(0, control.class_name, control.text, control.style | WS_CHILD | WS_VISIBLE,
                           control.place.left, control.place.top, control.place.width, control.place.height,
                           box.window, reinterpret_cast<HMENU>(static_cast<UINT_PTR>(control.id)), nullptr,
                           nullptr);
}

void CloseBox(Box& box, int answer) {
    box.answer = answer;
    box.is_open = false;
}

int RunBox(Box& box) {
    const HWND owner = GetWindow(box.window, GW_OWNER);
    const HWND active_before = owner != nullptr ? owner : GetActiveWindow();
    const bool disables = owner != nullptr && IsWindowEnabled(owner) != FALSE;
    if (disables)
        EnableWindow(owner, FALSE);
    ShowWindow(box.window, SW_SHOW);
    SetFocus(box.focus);
    PumpMessages(box);
    if (disables && IsWindow(owner))
        EnableWindow(owner, TRUE);
    if (active_before != nullptr && IsWindow(active_before))
        SetActiveWindow(active_before);
    if (box.window != nullptr)
        DestroyWindow(box.window);
    return box.answer;
}

LRESULT CALLBACK BoxProcedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    if (message == WM_NCCREATE) {
        const auto* const creation = reinterpret_cast<const CREATESTRUCTW*>(lparam);
        if (creation->lpCreateParams == nullptr)
            NotImplemented("CreateWindowExW", "#32770 other than by the layer's boxes");
        SetWindowLongPtrW(window, STATE_OFFSET, reinterpret_cast<LONG_PTR>(creation->lpCreateParams));
        static_cast<Box*>(creation->lpCreateParams)->window = window;
    }
    auto* const box = reinterpret_cast<Box*>(GetWindowLongPtrW(window, STATE_OFFSET));
    if (box == nullptr)
        return DefWindowProcW(window, message, wparam, lparam);
    switch (message) {
        case WM_COMMAND:
            if (HIWORD(wparam) == BN_CLICKED)
                box->on_command(LOWORD(wparam));
            return 0;
        case WM_CLOSE:
            box->on_command(IDCANCEL);
            return 0;
        case WM_ACTIVATE:
            return FollowFocus(*box, wparam);
        case WM_NEXTDLGCTL:
            if (lparam == 0)
                NotImplemented("WM_NEXTDLGCTL", "the next or the previous control");
            return MoveFocus(*box, reinterpret_cast<HWND>(wparam));
        case DM_GETDEFID:
            return MAKELPARAM(static_cast<unsigned>(box->default_id), DC_HASDEFID);
        case WM_NCDESTROY:
            // The open box may be destroyed together with its owner.
            box->is_open = false;
            box->window = nullptr;
            SetWindowLongPtrW(window, STATE_OFFSET, 0);
            return DefWindowProcW(window, message, wparam, lparam);
        default:
            return DefControlProcedure("#32770", window, message, wparam, lparam);
    }
}

}  // namespace host
