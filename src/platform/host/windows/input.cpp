// Mouse and keyboard: what SendInput puts in becomes messages for the window that is hit, or has the focus,
// at the moment when the message is taken out. Keys follow the plain American layout.
#include <algorithm>
#include <array>
#include <deque>

#include "platform/host/hooks.h"
#include "platform/host/windows/window.h"

namespace host {
namespace {

struct InputEvent {
    bool is_key = false;
    UINT mouse_message = 0;
    POINT point{};
    WORD key = 0;
    WORD scan = 0;
    bool up = false;
    bool extended = false;
};

struct Click {
    HWND window = nullptr;
    POINT point{};
    std::uint64_t at_ms = 0;
};

constexpr std::size_t KEYS = 256;
struct Input {
    std::deque<InputEvent> waiting;
    std::array<bool, KEYS> down_now{};
    std::array<bool, KEYS> down_in_messages{};
    Click last_click;
};

Input& State() {
    static Input state;
    return state;
}

bool IsDown(int key) {
    return State().down_in_messages.at(static_cast<std::size_t>(key));
}

// The state keys have one name for the left and the right one.
WORD GenericKey(WORD key) {
    switch (key) {
        case VK_LSHIFT:
        case VK_RSHIFT:
            return VK_SHIFT;
        case VK_LCONTROL:
        case VK_RCONTROL:
            return VK_CONTROL;
        default:
            return key;
    }
}

WPARAM MouseKeys() {
    WPARAM keys = 0;
    keys |= IsDown(VK_LBUTTON) ? static_cast<WPARAM>(MK_LBUTTON) : 0;
    keys |= IsDown(VK_SHIFT) ? static_cast<WPARAM>(MK_SHIFT) : 0;
    keys |= IsDown(VK_CONTROL) ? static_cast<WPARAM>(MK_CONTROL) : 0;
    return keys;
}

LPARAM PackPoint(POINT point) {
    return MAKELPARAM(static_cast<unsigned>(point.x), static_cast<unsigned>(point.y));
}

// --- the mouse ---

void TellParents(HWND target, POINT point) {
    WindowPointer window = FindWindowState(target);
    while (window != nullptr && window->parent != nullptr &&
           (window->extended_style & WS_EX_NOPARENTNOTIFY) == 0) {
        POINT inside = point;
        ScreenToClient(window->parent, &inside);
        SendMessageW(window->parent, WM_PARENTNOTIFY, WM_LBUTTONDOWN, PackPoint(inside));
        window = FindWindowState(window->parent);
    }
}

// A press on a window that is not the active one. False: the press was all that there was to it.
bool ActivateByClick(HWND target, LRESULT part) {
    const HWND root = RootOf(target);
    if (target == GetActiveWindow())
        return true;
    const LRESULT answer = SendMessageW(target, WM_MOUSEACTIVATE, reinterpret_cast<WPARAM>(root),
                                        MAKELPARAM(static_cast<unsigned>(part), WM_LBUTTONDOWN));
    if (answer != MA_NOACTIVATE && answer != MA_NOACTIVATEANDEAT && IsWindow(root))
        ActivateWindow(root, WA_CLICKACTIVE);
    return answer != MA_ACTIVATEANDEAT && answer != MA_NOACTIVATEANDEAT && IsWindow(target);
}

bool IsSecondClick(HWND target, POINT point) {
    constexpr std::uint64_t DOUBLE_CLICK_MS = 500;
    constexpr LONG NEAR = 2;
    Click& last = State().last_click;
    const std::uint64_t now = Now();
    const bool second = last.window == target && now - last.at_ms <= DOUBLE_CLICK_MS &&
                        std::abs(point.x - last.point.x) <= NEAR && std::abs(point.y - last.point.y) <= NEAR;
    last = {second ? nullptr : target, point, now};
    return second && (FindWindowState(target)->window_class->style & CS_DBLCLKS) != 0;
}

UINT FrameMessage(UINT client_message) {
    switch (client_message) {
        case WM_MOUSEMOVE:
            return WM_NCMOUSEMOVE;
        case WM_LBUTTONDOWN:
            return WM_NCLBUTTONDOWN;
        default:
            return WM_NCLBUTTONUP;
    }
}

MSG MouseMessage(const InputEvent& event, HWND target, LRESULT part) {
    const auto time = static_cast<DWORD>(Now());
    if (part != HTCLIENT) {
        return {target,
                FrameMessage(event.mouse_message),
                static_cast<WPARAM>(part),
                PackPoint(event.point),
                time,
                event.point};
    }
    POINT inside = event.point;
    ScreenToClient(target, &inside);
    return {target, event.mouse_message, MouseKeys(), PackPoint(inside), time, event.point};
}

enum class Outcome { TAKEN, SWALLOWED, HELD_BACK };

Outcome TakeMouse(const InputEvent& event, const MessageFilter& filter, bool remove, MSG& message) {
    const bool pressed = event.mouse_message == WM_LBUTTONDOWN;
    LRESULT part = HTCLIENT;
    const HWND target = GetCapture() != nullptr ? GetCapture() : HitWindow(event.point, part);
    const bool held = target != nullptr && part != HTERROR &&
                      !PassesFilter(filter, target, MouseMessage(event, target, part).message);
    if (held)
        return Outcome::HELD_BACK;
    if (remove && event.mouse_message != WM_MOUSEMOVE)
        State().down_in_messages[VK_LBUTTON] = pressed;
    if (target == nullptr || part == HTERROR)
        return Outcome::SWALLOWED;
    if (remove && pressed && GetCapture() == nullptr) {
        TellParents(target, event.point);
        if (!ActivateByClick(target, part))
            return Outcome::SWALLOWED;
    }
    message = MouseMessage(event, target, part);
    if (remove && pressed && part == HTCLIENT && IsSecondClick(target, event.point))
        message.message = WM_LBUTTONDBLCLK;
    return Outcome::TAKEN;
}

// --- the keyboard ---

Outcome TakeKey(const InputEvent& event, const MessageFilter& filter, bool remove, MSG& message) {
    const HWND focus = GetFocus();
    const HWND target = focus != nullptr ? focus : GetActiveWindow();
    const WORD key = GenericKey(event.key);
    const bool with_alt = (IsDown(VK_MENU) && !IsDown(VK_CONTROL)) || key == VK_MENU;
    // Without a focus the active window gets its keys as system keys.
    const bool system = focus == nullptr || with_alt;
    UINT number = system ? WM_SYSKEYDOWN : WM_KEYDOWN;
    if (event.up)
        number = system ? WM_SYSKEYUP : WM_KEYUP;
    if (target != nullptr && !PassesFilter(filter, target, number))
        return Outcome::HELD_BACK;
    if (remove) {
        State().down_in_messages.at(event.key) = !event.up;
        State().down_in_messages.at(key) = !event.up;
    }
    if (target == nullptr)
        return Outcome::SWALLOWED;
    constexpr DWORD REPEAT_ONCE = 1;
    constexpr DWORD EXTENDED = 0x01000000;
    constexpr DWORD RELEASED = 0xC0000000;
    const bool is_text = event.key == VK_PACKET;
    DWORD details = REPEAT_ONCE | (static_cast<DWORD>(event.scan) << 16);
    details |= event.extended && !is_text ? EXTENDED : 0;
    details |= event.up && !is_text ? RELEASED : 0;
    message = {target, number, key, static_cast<LONG>(details), static_cast<DWORD>(Now()), PointerPosition()};
    return Outcome::TAKEN;
}

// The character of a key as the state keys stand; 0 for a key without one.
WCHAR CharacterOf(WPARAM key) {
    constexpr std::u16string_view SHIFTED_DIGITS = u")!@#$%^&*(";
    constexpr WPARAM FIRST_SIGN = 0xBA;
    constexpr WPARAM LAST_SIGN = 0xDF;
    constexpr unsigned CONTROL_BITS = 0x1F;
    const bool shift = IsDown(VK_SHIFT);
    if (key >= u'A' && key <= u'Z') {
        if (IsDown(VK_CONTROL))
            return static_cast<WCHAR>(key & CONTROL_BITS);
        return static_cast<WCHAR>(shift ? key : key - u'A' + u'a');
    }
    if (key >= u'0' && key <= u'9')
        return shift ? SHIFTED_DIGITS[key - u'0'] : static_cast<WCHAR>(key);
    if (key >= FIRST_SIGN && key <= LAST_SIGN)
        NotImplemented("TranslateMessage", "the keys of punctuation; send such characters as text");
    const bool plain =
        key == VK_SPACE || key == VK_BACK || key == VK_TAB || key == VK_RETURN || key == VK_ESCAPE;
    return plain ? static_cast<WCHAR>(key) : u'\0';
}

// --- what comes in ---

void AddMouse(const MOUSEINPUT& mouse) {
    constexpr DWORD KNOWN =
        MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE | MOUSEEVENTF_LEFTDOWN | MOUSEEVENTF_LEFTUP;
    if ((mouse.dwFlags & ~KNOWN) != 0)
        NotImplemented("SendInput", "other mouse actions than moves and the left button");
    Input& state = State();
    if ((mouse.dwFlags & MOUSEEVENTF_MOVE) != 0) {
        const bool absolute = (mouse.dwFlags & MOUSEEVENTF_ABSOLUTE) != 0;
        constexpr LONGLONG WHOLE = 65536;
        const LONGLONG x =
            absolute ? mouse.dx * LONGLONG{SCREEN_WIDTH} / WHOLE : PointerPosition().x + mouse.dx;
        const LONGLONG y =
            absolute ? mouse.dy * LONGLONG{SCREEN_HEIGHT} / WHOLE : PointerPosition().y + mouse.dy;
        SetCursorPos(static_cast<int>(x), static_cast<int>(y));
    }
    for (const auto& [flag, message, down] : {std::tuple{MOUSEEVENTF_LEFTDOWN, WM_LBUTTONDOWN, true},
                                              std::tuple{MOUSEEVENTF_LEFTUP, WM_LBUTTONUP, false}}) {
        if ((mouse.dwFlags & flag) != 0) {
            state.down_now[VK_LBUTTON] = down;
            state.waiting.push_back({false, message, PointerPosition(), 0, 0, false, false});
        }
    }
}

void AddKey(const KEYBDINPUT& key) {
    if ((key.dwFlags & KEYEVENTF_SCANCODE) != 0)
        NotImplemented("SendInput", "keys by their scan code");
    const bool is_text = (key.dwFlags & KEYEVENTF_UNICODE) != 0;
    const bool up = (key.dwFlags & KEYEVENTF_KEYUP) != 0;
    const auto code = static_cast<WORD>(is_text ? VK_PACKET : key.wVk & 0xFF);
    State().down_now.at(code) = !up;
    State().down_now.at(GenericKey(code)) = !up;
    State().waiting.push_back(
        {true, 0, PointerPosition(), code, key.wScan, up, (key.dwFlags & KEYEVENTF_EXTENDEDKEY) != 0});
}

SHORT KeyState(const std::array<bool, KEYS>& keys, int key) {
    constexpr int DOWN = -0x8000;
    return static_cast<SHORT>(keys.at(static_cast<std::size_t>(key & 0xFF)) ? DOWN : 0);
}

}  // namespace

bool TakeInput(const MessageFilter& filter, bool remove, MSG& message) {
    while (!State().waiting.empty()) {
        const InputEvent event = State().waiting.front();
        if (remove) {
            // Out of the queue first: on its way the event can make windows run loops of their own.
            State().waiting.pop_front();
        }
        const Outcome outcome = event.is_key ? TakeKey(event, filter, remove, message)
                                             : TakeMouse(event, filter, remove, message);
        if (outcome == Outcome::TAKEN)
            return true;
        if (outcome == Outcome::HELD_BACK) {
            if (remove)
                State().waiting.push_front(event);
            return false;
        }
        if (!remove)
            State().waiting.pop_front();
    }
    return false;
}

}  // namespace host

UINT WINAPI SendInput(UINT count, INPUT* inputs, int input_bytes) {
    if (input_bytes != static_cast<int>(sizeof(INPUT))) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return 0;
    }
    std::for_each(inputs, inputs + count, [](const INPUT& input) {
        if (input.type == INPUT_MOUSE)
            host::AddMouse(input.mi);
        else if (input.type == INPUT_KEYBOARD)
            host::AddKey(input.ki);
        else
            host::NotImplemented("SendInput", "other devices");
    });
    return count;
}

BOOL WINAPI TranslateMessage(const MSG* message) {
    if (message->message != WM_KEYDOWN && message->message != WM_SYSKEYDOWN)
        return message->message == WM_KEYUP || message->message == WM_SYSKEYUP ? TRUE : FALSE;
    const WCHAR character =
        message->wParam == VK_PACKET ? HIWORD(message->lParam) : host::CharacterOf(message->wParam);
    if (character != 0) {
        const bool system = message->message == WM_SYSKEYDOWN && message->wParam != VK_PACKET;
        PostMessageW(message->hwnd, system ? WM_SYSCHAR : WM_CHAR, character, 1);
    }
    return TRUE;
}

SHORT WINAPI GetKeyState(int key) {
    return host::KeyState(host::State().down_in_messages, key);
}

BOOL WINAPI SetCursorPos(int x, int y) {
    host::Input& state = host::State();
    host::MovePointer({std::clamp(x, 0, host::SCREEN_WIDTH - 1), std::clamp(y, 0, host::SCREEN_HEIGHT - 1)});
    auto& waiting = state.waiting;
    // Only the last of several moves is told.
    if (!waiting.empty() && !waiting.back().is_key && waiting.back().mouse_message == WM_MOUSEMOVE)
        waiting.pop_back();
    waiting.push_back({false, WM_MOUSEMOVE, host::PointerPosition(), 0, 0, false, false});
    return TRUE;
}
