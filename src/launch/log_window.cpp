// The window with the log: made on demand, filled with the tail of the file.
#include "launch/log_window.h"

#include <algorithm>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>

#include "base/file_system.h"
#include "form/form_exchange.h"
#include "launch/log_text.h"

namespace {

constexpr int TEXT_CONTROL_ID = 1;
constexpr WPARAM TEXT_LIMIT_CHARACTERS =
    WPARAM{2} * LOG_TAIL_LIMIT;  // every byte a line feed that gains a return
constexpr DWORD TEXT_STYLE = WS_CHILD | WS_VISIBLE | WS_VSCROLL | WS_HSCROLL | ES_MULTILINE | ES_AUTOVSCROLL |
                             ES_AUTOHSCROLL | ES_READONLY;

bool LogWindowExists(const Launcher& launcher) {
    return launcher.log_window != nullptr && IsWindow(launcher.log_window) != FALSE;
}

void MakeLogWindow(Launcher& launcher) {
    launcher.log_window = CreateWindowExW(WS_EX_TOOLWINDOW, LOG_WINDOW_CLASS, TEXT("Veldrane VM — Journal"),
                                          WS_OVERLAPPEDWINDOW, CW_USEDEFAULT, CW_USEDEFAULT, 850, 520,
                                          launcher.main_window, nullptr, launcher.instance, nullptr);
    if (launcher.log_window == nullptr)
        throw std::runtime_error("Création du journal impossible.");
}

// What goes from one tick to the next, so that an unchanged log is not decoded again and needs no memory. The
// text control owns it.
struct LogView {
    WNDPROC control_procedure = nullptr;
    std::string tail;         // the bytes that `text` was made of
    bool is_settled = false;  // it came out twice in a row: a conversion can fail for a moment
    WideText text;            // what the control is to show
    std::string fresh;        // the bytes at this tick
    WideText shown;           // what the control holds at this tick
};

LogView* ViewOf(HWND control) {
    return reinterpret_cast<LogView*>(GetWindowLongPtrW(control, GWLP_USERDATA));
}

LRESULT CALLBACK TextControlProc(HWND control, UINT message, WPARAM wparam, LPARAM lparam) {
    LogView* const view = ViewOf(control);
    const WNDPROC own_procedure = view->control_procedure;
    if (message == WM_NCDESTROY) {
        SetWindowLongPtrW(control, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(own_procedure));
        delete view;
    }
    return CallWindowProcW(own_procedure, control, message, wparam, lparam);
}

// False when there is no window or no memory for it.
bool MakeTextControl(HWND window) {
    std::unique_ptr<LogView> view(new (std::nothrow) LogView);
    const HWND control = CreateWindowExW(WS_EX_CLIENTEDGE, TEXT("EDIT"), TEXT(""), TEXT_STYLE, 0, 0, 1, 1,
                                         window, reinterpret_cast<HMENU>(UINT_PTR{TEXT_CONTROL_ID}),
                                         GetModuleHandleW(nullptr), nullptr);
    if (view == nullptr || control == nullptr)
        return false;
    view->control_procedure = reinterpret_cast<WNDPROC>(GetWindowLongPtrW(control, GWLP_WNDPROC));
    SetWindowLongPtrW(control, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(view.release()));
    SetWindowLongPtrW(control, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(TextControlProc));
    SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(GetStockObject(ANSI_FIXED_FONT)), TRUE);
    SendMessageW(control, EM_SETLIMITTEXT, TEXT_LIMIT_CHARACTERS, 0);
    return true;
}

// The last bytes of the file, at most LOG_TAIL_LIMIT of them, and fewer where reading fails; false if the
// file cannot be opened.
bool ReadLogTail(const WideText& path, std::string& tail) {
    const OwnedHandle file = OpenForReading(path);
    std::uint64_t size = 0;
    if (!file || !FileSize(file.Get(), size))
        return false;
    tail.resize(static_cast<std::size_t>(std::min<std::uint64_t>(size, LOG_TAIL_LIMIT)));
    std::size_t read = 0;
    if (!tail.empty())
        ReadAt(file.Get(), size - tail.size(), tail.data(), tail.size(), read);
    tail.resize(read);
    return true;
}

// As bytes in one go: the operator of wide texts takes one character after the other.
bool IsSame(const WideText& left, const WideText& right) {
    return std::equal(left.begin(), left.end(), right.begin(), right.end());
}

void ShowTail(HWND control, LogView& view, const WideText& path) {
    if (!ReadLogTail(path, view.fresh))
        return;
    const bool is_same = view.fresh == view.tail;
    if (!is_same || !view.is_settled) {
        WideText text = LogText(view.fresh);
        ShowZeros(text);
        view.is_settled = is_same && text == view.text;
        view.text.swap(text);
        view.tail.swap(view.fresh);
    }
    // The control's text is fetched only where it can still be the same.
    if (static_cast<std::size_t>(GetWindowTextLengthW(control)) == view.text.size()) {
        ReadControlText(control, view.shown);
        if (IsSame(view.shown, view.text))
            return;
    }
    SetWindowTextW(control, view.text.c_str());
}

}  // namespace

void ShowLogWindow(Launcher& launcher) {
    if (launcher.log_path.empty() || QueryFileType(launcher.log_path, "status") != FileType::Regular) {
        SetWindowTextW(launcher.status_label, TEXT("Aucun journal. Lancez une vérification ou la VM."));
        return;
    }
    if (!LogWindowExists(launcher))
        MakeLogWindow(launcher);
    RefreshLogWindow(launcher);
    ShowWindow(launcher.log_window, SW_SHOW);
    SetForegroundWindow(launcher.log_window);
}

void RefreshLogWindow(Launcher& launcher) {
    if (!LogWindowExists(launcher) || launcher.log_path.empty())
        return;
    const HWND control = GetDlgItem(launcher.log_window, TEXT_CONTROL_ID);
    LogView* const view = ViewOf(control);
    if (view == nullptr)
        return;
    try {
        ShowTail(control, *view, launcher.log_path);
    } catch (const std::bad_alloc&) {
        // The next tick tries again; a box at each tick would be the worse news.
    }
}

bool HandleLogKeys(const Launcher& launcher, MSG& message) {
    constexpr WPARAM CONTROL_A = 1;
    if (!LogWindowExists(launcher))
        return false;
    const HWND control = GetDlgItem(launcher.log_window, TEXT_CONTROL_ID);
    if (GetFocus() == launcher.log_window) {
        SetFocus(control);
        if (message.hwnd == launcher.log_window &&
            (message.message == WM_KEYDOWN || message.message == WM_CHAR))
            message.hwnd = control;
    }
    if (message.hwnd != control || message.message != WM_CHAR || message.wParam != CONTROL_A)
        return false;
    SendMessageW(control, EM_SETSEL, 0, -1);
    return true;
}

LRESULT CALLBACK LogWindowProc(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    switch (message) {
        case WM_CREATE:
            // A log window without its text would stay so; one that cannot be made is tried again.
            return MakeTextControl(window) ? 0 : -1;
        case WM_SIZE:
            MoveWindow(GetDlgItem(window, TEXT_CONTROL_ID), 0, 0, LOWORD(lparam), HIWORD(lparam), TRUE);
            return 0;
        case WM_CLOSE:
            ShowWindow(window, SW_HIDE);
            return 0;
        default:
            return DefWindowProcW(window, message, wparam, lparam);
    }
}
