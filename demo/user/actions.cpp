// The user's actions: mouse and keyboard input, and messages that read the windows.
#include <string>
#include <vector>

#include "base/text_convert.h"
#include "demo/user/user.h"
#include "form/form_ids.h"
#include "launch/log_window.h"
#include "shell/dispatch.h"

namespace user {

namespace {

constexpr int FILE_NAME_EDIT = 0x480;
constexpr int FILE_NAME_COMBO = 0x47C;

void SendKey(WORD key, DWORD flags) {
    INPUT input{};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = key;
    // The keys from Page Up to Delete, arrows included. Without the flag they are keys of the numeric keypad.
    const bool extended = key >= VK_PRIOR && key <= VK_DELETE;
    input.ki.dwFlags = flags | (extended ? KEYEVENTF_EXTENDEDKEY : 0);
    SendInput(1, &input, sizeof input);
}

void SendCharacter(WCHAR character, DWORD flags) {
    INPUT input{};
    input.type = INPUT_KEYBOARD;
    input.ki.wScan = static_cast<WORD>(character);
    input.ki.dwFlags = KEYEVENTF_UNICODE | flags;
    SendInput(1, &input, sizeof input);
}

void SendButton(DWORD flags) {
    INPUT input{};
    input.type = INPUT_MOUSE;
    input.mi.dwFlags = flags;
    SendInput(1, &input, sizeof input);
}

void ClickScreen(int x, int y) {
    SetCursorPos(x, y);
    SendButton(MOUSEEVENTF_LEFTDOWN);
    SendButton(MOUSEEVENTF_LEFTUP);
}

WideText ReadText(HWND window) {
    const auto length = static_cast<std::size_t>(SendMessageW(window, WM_GETTEXTLENGTH, 0, 0));
    WideText text(length + 1, WCHAR{});
    text.resize(static_cast<std::size_t>(
        SendMessageW(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()))));
    return text;
}

struct ClassSearch {
    WideView class_name;
    DWORD process;  // 0: any
    HWND found;
};

DWORD ProcessOf(HWND window) {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    return process;
}

WideText ClassOf(HWND window) {
    WCHAR name[64]{};
    return {name, static_cast<std::size_t>(GetClassNameW(window, name, 64))};
}

BOOL CALLBACK VisibleOfClass(HWND window, LPARAM lparam) {
    auto& search = *reinterpret_cast<ClassSearch*>(lparam);
    const bool is_ours = search.process == 0 || ProcessOf(window) == search.process;
    if (!is_ours || IsWindowVisible(window) == FALSE || ClassOf(window) != search.class_name)
        return TRUE;
    search.found = window;
    return FALSE;
}

HWND FindVisible(WideView class_name) {
    // Other programs may have boxes of this class.
    const HWND program = FindWindowW(MAIN_WINDOW_CLASS, nullptr);
    ClassSearch search{class_name, program == nullptr ? 0 : ProcessOf(program), nullptr};
    EnumWindows(VisibleOfClass, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

// Searches children at every level: the controls of a file box are not always direct children of the box.
HWND FindDescendant(HWND window, int id) {
    for (HWND child = GetWindow(window, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT)) {
        if (GetDlgCtrlID(child) == id)
            return child;
        if (const HWND found = FindDescendant(child, id))
            return found;
    }
    return nullptr;
}

// The control for the file's name in a file box: a combo box or an edit field.
HWND NameFieldOf(HWND box) {
    for (const int id : {FILE_NAME_COMBO, FILE_NAME_EDIT}) {
        const HWND field = FindDescendant(box, id);
        if (field != nullptr && IsWindowVisible(field) != FALSE)
            return field;
    }
    return nullptr;
}

template <typename Value>
Value Ask(const std::function<Value()>& question) {
    Value answer{};
    OnProgramThread([&] { answer = question(); });
    return answer;
}

}  // namespace

HWND MainWindow() {
    return Ask<HWND>([] { return FindWindowW(MAIN_WINDOW_CLASS, nullptr); });
}

HWND LogWindow() {
    return Ask<HWND>([] { return FindWindowW(LOG_WINDOW_CLASS, nullptr); });
}

HWND Box() {
    return Ask<HWND>([] { return FindVisible(BOX_CLASS); });
}

HWND Control(UINT id) {
    const HWND window = MainWindow();
    return Ask<HWND>([&] { return GetDlgItem(window, static_cast<int>(id)); });
}

WideText TextOf(HWND window) {
    return Ask<WideText>([&] { return ReadText(window); });
}

WideText ControlText(UINT id) {
    return TextOf(Control(id));
}

bool IsEnabled(UINT id) {
    const HWND control = Control(id);
    return Ask<bool>([&] { return IsWindowEnabled(control) != FALSE; });
}

bool IsVisible(UINT id) {
    const HWND control = Control(id);
    return Ask<bool>([&] { return IsWindowVisible(control) != FALSE; });
}

bool IsChecked(UINT id) {
    const HWND control = Control(id);
    return Ask<bool>([&] { return SendMessageW(control, BM_GETCHECK, 0, 0) == BST_CHECKED; });
}

WideText Title() {
    return TextOf(MainWindow());
}

WideText Status() {
    return ControlText(IDC_STATUS);
}

std::string BoxText() {
    const HWND box = Box();
    return Ask<std::string>([&] {
        std::string text = Utf8FromWide(ReadText(box));
        for (HWND child = GetWindow(box, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT)) {
            const WideText name = ClassOf(child);
            const bool is_static = name == TEXT("Static") || name == TEXT("STATIC");
            if (const WideText line = is_static ? ReadText(child) : WideText(); !line.empty())
                text += "\n" + Utf8FromWide(line);
        }
        return text;
    });
}

bool WaitForStatus(WideView text, unsigned limit_ms) {
    const HWND label = Control(IDC_STATUS);
    return WaitUntil([&] { return TextOf(label) == text; }, limit_ms);
}

bool WaitForBox() {
    return WaitUntil([] { return FindVisible(BOX_CLASS) != nullptr; });
}

bool WaitForNoBox() {
    return WaitUntil([] { return FindVisible(BOX_CLASS) == nullptr; });
}

void Click(UINT id) {
    ClickWindow(Control(id));
}

void ClickWindow(HWND window) {
    WaitUntil([&] { return IsWindowVisible(window) != FALSE; });
    OnProgramThread([&] {
        RECT place{};
        GetWindowRect(window, &place);
        ClickScreen((place.left + place.right) / 2, (place.top + place.bottom) / 2);
    });
}

void ClickAt(HWND window, int x, int y) {
    OnProgramThread([&] {
        POINT place{x, y};
        ClientToScreen(window, &place);
        ClickScreen(place.x, place.y);
    });
}

void Type(WideView text) {
    for (const WCHAR character : text) {
        OnProgramThread([&] {
            SendCharacter(character, 0);
            SendCharacter(character, KEYEVENTF_KEYUP);
        });
    }
}

void Press(WORD key) {
    OnProgramThread([&] {
        SendKey(key, 0);
        SendKey(key, KEYEVENTF_KEYUP);
    });
}

void PressWith(WORD modifier, WORD key) {
    OnProgramThread([&] {
        SendKey(modifier, 0);
        SendKey(key, 0);
        SendKey(key, KEYEVENTF_KEYUP);
        SendKey(modifier, KEYEVENTF_KEYUP);
    });
}

void Fill(UINT id, WideView text) {
    FillWindow(Control(id), text);
}

void FillWindow(HWND field, WideView text) {
    ClickWindow(field);
    Press(VK_HOME);
    PressWith(VK_SHIFT, VK_END);
    Press(VK_DELETE);
    Type(text);
    WaitUntil([&] { return ReadText(field) == text; }, 3000);
}

void ChooseTab(int index) {
    const HWND tabs = Control(IDC_PAGE_TABS);
    ClickAt(tabs, 20, 10);
    Press(VK_LEFT);  // in case the click was ignored as the second of a double click
    for (int step = 0; step < index; ++step)
        Press(VK_RIGHT);
    WaitUntil([&] { return SendMessageW(tabs, TCM_GETCURSEL, 0, 0) == index; }, 3000);
}

void ChooseRow(int index) {
    const HWND list = Control(IDC_MODULE_LIST);
    RECT row{};
    OnProgramThread([&] {
        row.left = LVIR_BOUNDS;
        SendMessageW(list, LVM_GETITEMRECT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&row));
    });
    ClickAt(list, row.left + 30, (row.top + row.bottom) / 2);
    WaitUntil(
        [&] {
            return SendMessageW(list, LVM_GETNEXTITEM, static_cast<WPARAM>(-1),
                                MAKELPARAM(LVNI_SELECTED, 0)) == index;
        },
        3000);
}

void AnswerBox(int button_id) {
    WaitForBox();
    const HWND box = Box();
    ClickWindow(Ask<HWND>([&] { return GetDlgItem(box, button_id); }));
    WaitUntil([&] { return IsWindow(box) == FALSE || IsWindowVisible(box) == FALSE; }, 5000);
}

HWND FileNameField() {
    const HWND box = Box();
    return Ask<HWND>([&] { return NameFieldOf(box); });
}

void ChooseFile(WideView path) {
    WaitForBox();
    const HWND box = Box();
    FillWindow(FileNameField(), path);
    Press(VK_RETURN);
    WaitUntil([&] { return IsWindow(box) == FALSE || IsWindowVisible(box) == FALSE; }, 5000);
}

void CancelFile() {
    WaitForBox();
    const HWND box = Box();
    ClickWindow(Ask<HWND>([&] { return FindDescendant(box, IDCANCEL); }));
    WaitForNoBox();
}

void CloseMainWindow() {
    const HWND window = MainWindow();
    OnProgramThread([&] { PostMessageW(window, WM_SYSCOMMAND, SC_CLOSE, 0); });
}

void ResizeClient(int width, int height) {
    const HWND window = MainWindow();
    OnProgramThread([&] {
        RECT outer{0, 0, width, height};
        AdjustWindowRectEx(&outer, WS_OVERLAPPEDWINDOW, FALSE, 0);
        SetWindowPos(window, nullptr, 0, 0, outer.right - outer.left, outer.bottom - outer.top,
                     SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    });
}

}  // namespace user
