#include "launch/log_window.h"

#include <algorithm>
#include <new>
#include <stdexcept>
#include <string>

#include "base/file_system.h"
#include "form/form_exchange.h"
#include "launch/log_text.h"

namespace {

constexpr int TEXT_CONTROL_ID = 1;
constexpr WPARAM TEXT_LIMIT_CHARACTERS = WPARAM{2} * LOG_TAIL_LIMIT;  // enough if all bytes are line feeds
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

// The data that the log window stores from one tick to the next, so that a tick on an unchanged log neither
// decodes the log again nor allocates.
struct LogView {
    std::string tail;   // the bytes from which `text` was made
    WideText text;      // the text that the control must show
    std::string fresh;  // the bytes read at this tick
    WideText shown;     // the text read from the control at this tick
};

LogView* ViewOf(HWND window) {
    return reinterpret_cast<LogView*>(GetWindowLongPtrW(window, GWLP_USERDATA));
}

// Returns false when memory is short.
bool MakeView(HWND window) {
    auto* const view = new (std::nothrow) LogView;
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(view));
    return view != nullptr;  // NOLINT(clang-analyzer-cplusplus.NewDeleteLeaks): the window owns it now
}

bool MakeTextControl(HWND window) {
    const HWND control = CreateWindowExW(WS_EX_CLIENTEDGE, TEXT("EDIT"), TEXT(""), TEXT_STYLE, 0, 0, 1, 1,
                                         window, reinterpret_cast<HMENU>(UINT_PTR{TEXT_CONTROL_ID}),
                                         GetModuleHandleW(nullptr), nullptr);
    if (control == nullptr)
        return false;
    SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(GetStockObject(ANSI_FIXED_FONT)), TRUE);
    SendMessageW(control, EM_SETLIMITTEXT, TEXT_LIMIT_CHARACTERS, 0);
    return true;
}

// Reads the last bytes of the file, at most LOG_TAIL_LIMIT, into `tail`; fewer if reading fails. Returns
// false if the file cannot be opened or its size is unknown.
bool ReadLogTail(const WideText& path, std::string& tail) {
    const OwnedHandle file = OpenForReading(path);
    const std::optional<std::uint64_t> size = FileSize(file.Get());
    if (!size)
        return false;
    tail.resize(static_cast<std::size_t>(std::min<std::uint64_t>(*size, LOG_TAIL_LIMIT)));
    tail.resize(ReadAt(file.Get(), *size - tail.size(), tail.data(), tail.size()));
    return true;
}

void ShowTail(HWND control, LogView& view, const WideText& path) {
    if (!ReadLogTail(path, view.fresh))
        return;
    if (view.fresh != view.tail) {
        WideText text = LogText(view.fresh);
        ShowZeros(text);
        view.text.swap(text);
        view.tail.swap(view.fresh);
    }
    ReadControlText(control, view.shown);
    if (view.shown != view.text)
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
    try {
        ShowTail(GetDlgItem(launcher.log_window, TEXT_CONTROL_ID), *ViewOf(launcher.log_window),
                 launcher.log_path);
    } catch (const std::bad_alloc&) {
        // The next tick tries again: an error box at each tick would be worse than a late log.
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
            return MakeView(window) && MakeTextControl(window) ? 0 : -1;
        case WM_NCDESTROY:
            delete ViewOf(window);
            SetWindowLongPtrW(window, GWLP_USERDATA, 0);
            return DefWindowProcW(window, message, wparam, lparam);
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
