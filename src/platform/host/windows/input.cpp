// Mouse and keyboard: makes messages from the input of SendInput. The receiver of a message (the window at
// the pointer, or with the focus) is determined when the message is taken. Keys have the American layout.
#include <algorithm>
#include <array>
#include <deque>

#include "platform/host/hooks/call_hooks.h"
#include "platform/host/windows/window.h"

namespace host {
namespace {

struct InputEvent {
    UINT mouse_message = 0;  // 0 for a key
    POINT point{};
    WORD key = 0;
    WORD scan = 0;
    bool up = false;
};

struct Click {
    HWND window = nullptr;
    POINT point{};
    std::uint64_t at_ms = 0;
};

struct InputQueue {
    std::deque<InputEvent> waiting;
    std::array<bool, 256> keys_down{};  // as of the last message that was taken
    Click last_click;
};

InputQueue input_queue;

bool IsDown(int key) {
    return input_queue.keys_down.at(static_cast<std::size_t>(key));
}

WPARAM MouseKeys() {
    return (IsDown(VK_LBUTTON) ? WPARAM{MK_LBUTTON} : 0) | (IsDown(VK_SHIFT) ? WPARAM{MK_SHIFT} : 0) |
           (IsDown(VK_CONTROL) ? WPARAM{MK_CONTROL} : 0);
}

// --- the mouse ---

// Before a click: activates the target's top-level window, unless the target is the active window or answers
// MA_NOACTIVATE. False: the target was destroyed.
bool ActivateByClick(HWND target) {
    const HWND root = RootOf(target);
    if (target == GetActiveWindow())
        return true;
    const LRESULT answer = SendMessageW(target, WM_MOUSEACTIVATE, reinterpret_cast<WPARAM>(root),
                                        MAKELPARAM(HTCLIENT, WM_LBUTTONDOWN));
    if (answer != MA_NOACTIVATE && IsWindow(root))
        ActivateWindow(root, WA_CLICKACTIVE);
    return IsWindow(target) != FALSE;
}

bool IsSecondClick(HWND target, POINT point) {
    constexpr std::uint64_t DOUBLE_CLICK_MS = 500;
    constexpr LONG NEAR = 2;
    Click& last = input_queue.last_click;
    const std::uint64_t now = Now();
    const bool second = last.window == target && now - last.at_ms <= DOUBLE_CLICK_MS &&
                        std::abs(point.x - last.point.x) <= NEAR && std::abs(point.y - last.point.y) <= NEAR;
    last = {second ? nullptr : target, point, now};
    return second && (FindWindowState(target)->window_class->style & CS_DBLCLKS) != 0;
}

// The message for a mouse event; none if no window gets the event.
std::optional<MSG> MouseMessage(const InputEvent& event) {
    const bool pressed = event.mouse_message == WM_LBUTTONDOWN;
    const auto [target, part] =
        GetCapture() != nullptr ? Hit{GetCapture(), HTCLIENT} : HitWindow(event.point);
    if (event.mouse_message != WM_MOUSEMOVE)
        input_queue.keys_down[VK_LBUTTON] = pressed;
    if (target == nullptr || part == HTERROR)
        return std::nullopt;
    if (part != HTCLIENT) {
        if (event.mouse_message != WM_MOUSEMOVE)
            NotImplemented("SendInput", "the mouse on the frame of a window");
        return std::nullopt;
    }
    if (pressed && GetCapture() == nullptr && !ActivateByClick(target))
        return std::nullopt;
    POINT inside = event.point;
    ScreenToClient(target, &inside);
    const bool second = pressed && IsSecondClick(target, event.point);
    return MakeMessage(target, second ? WM_LBUTTONDBLCLK : event.mouse_message, MouseKeys(),
                       MAKELPARAM(inside.x, inside.y));
}

// --- the keyboard ---

std::optional<MSG> KeyMessage(const InputEvent& event) {
    const HWND focus = GetFocus();
    const HWND target = focus != nullptr ? focus : GetActiveWindow();
    const bool with_alt = (IsDown(VK_MENU) && !IsDown(VK_CONTROL)) || event.key == VK_MENU;
    // Without a window with the focus, the active window gets the keys as system keys.
    const bool system = focus == nullptr || with_alt;
    UINT number = system ? WM_SYSKEYDOWN : WM_KEYDOWN;
    if (event.up)
        number = system ? WM_SYSKEYUP : WM_KEYUP;
    input_queue.keys_down.at(event.key) = !event.up;
    if (target == nullptr)
        return std::nullopt;
    constexpr DWORD REPEAT_ONCE = 1;
    constexpr DWORD ALT_IS_DOWN = 0x20000000;
    constexpr DWORD RELEASED = 0xC0000000;
    DWORD details = REPEAT_ONCE | (static_cast<DWORD>(event.scan) << 16);
    details |= with_alt ? ALT_IS_DOWN : 0;
    details |= event.up && event.key != VK_PACKET ? RELEASED : 0;
    return MakeMessage(target, number, event.key, static_cast<LONG>(details));
}

// The character of a key with the present state of Shift and Ctrl; 0 for a key without a character.
WCHAR CharacterOf(WPARAM key) {
    constexpr unsigned CONTROL_BITS = 0x1F;
    if (key >= u'A' && key <= u'Z') {
        if (IsDown(VK_CONTROL))
            return static_cast<WCHAR>(key & CONTROL_BITS);
        return static_cast<WCHAR>(IsDown(VK_SHIFT) ? key : key - u'A' + u'a');
    }
    if (key >= u'0' && key <= u'9' && !IsDown(VK_SHIFT))
        return static_cast<WCHAR>(key);
    constexpr WPARAM FIRST_SIGN = 0xBA;
    if (key >= u'0' && key != VK_PACKET && (key <= u'9' || key >= FIRST_SIGN))
        NotImplemented("TranslateMessage", "the keys of punctuation");
    const bool plain =
        key == VK_SPACE || key == VK_BACK || key == VK_TAB || key == VK_RETURN || key == VK_ESCAPE;
    return plain ? static_cast<WCHAR>(key) : u'\0';
}

// --- adding input ---

void AddMouse(UINT message) {
    InputEvent event;
    event.mouse_message = message;
    event.point = PointerPosition();
    input_queue.waiting.push_back(event);
}

void AddButton(DWORD flags) {
    if (flags != MOUSEEVENTF_LEFTDOWN && flags != MOUSEEVENTF_LEFTUP)
        NotImplemented("SendInput", "other mouse actions than one of the left button");
    AddMouse(flags == MOUSEEVENTF_LEFTDOWN ? WM_LBUTTONDOWN : WM_LBUTTONUP);
}

void AddKey(const KEYBDINPUT& key) {
    if ((key.dwFlags & ~(KEYEVENTF_UNICODE | KEYEVENTF_KEYUP | KEYEVENTF_EXTENDEDKEY)) != 0)
        NotImplemented("SendInput", "keys other than by their code and by their character");
    InputEvent event;
    event.key = (key.dwFlags & KEYEVENTF_UNICODE) != 0 ? WORD{VK_PACKET} : static_cast<WORD>(key.wVk & 0xFF);
    event.scan = key.wScan;
    event.up = (key.dwFlags & KEYEVENTF_KEYUP) != 0;
    input_queue.waiting.push_back(event);
}

}  // namespace

std::optional<MSG> TakeInput() {
    while (!input_queue.waiting.empty()) {
        // The event is removed first: while its message is made, a window may run a message loop.
        const InputEvent event = input_queue.waiting.front();
        input_queue.waiting.pop_front();
        if (const auto message = event.mouse_message == 0 ? KeyMessage(event) : MouseMessage(event))
            return message;
    }
    return std::nullopt;
}

void ResetInput() {
    input_queue = {};
}

}  // namespace host

UINT WINAPI SendInput(UINT count, INPUT* inputs, int) {
    std::for_each(inputs, inputs + count, [](const INPUT& input) {
        if (input.type == INPUT_MOUSE)
            host::AddButton(input.mi.dwFlags);
        else if (input.type == INPUT_KEYBOARD)
            host::AddKey(input.ki);
        else
            host::NotImplemented("SendInput", "other devices");
    });
    return count;
}

BOOL WINAPI TranslateMessage(const MSG* message) {
    if (message->message != WM_KEYDOWN && message->message != WM_SYSKEYDOWN)
        return FALSE;
    const WCHAR character =
        message->wParam == VK_PACKET ? HIWORD(message->lParam) : host::CharacterOf(message->wParam);
    if (character != 0) {
        const bool system = message->message == WM_SYSKEYDOWN && message->wParam != VK_PACKET;
        PostMessageW(message->hwnd, system ? WM_SYSCHAR : WM_CHAR, character, 1);
    }
    return TRUE;
}

SHORT WINAPI GetKeyState(int key) {
    constexpr SHORT DOWN = -0x8000;
    return host::IsDown(key) ? DOWN : SHORT{0};
}

BOOL WINAPI SetCursorPos(int x, int y) {
    host::MovePointer({std::clamp(x, 0, host::SCREEN_WIDTH - 1), std::clamp(y, 0, host::SCREEN_HEIGHT - 1)});
    host::AddMouse(WM_MOUSEMOVE);
    return TRUE;
}
