// A failure in words: status line and box.
#include "shell/show_error.h"

#include "base/text_convert.h"

void ShowError(Launcher& launcher, const std::exception& error) {
    const WideText text = WideFromMessage(error.what());
    SetWindowTextW(launcher.status_label, text.c_str());
    ShowErrorBox(launcher.main_window, text);
}

void ShowErrorBox(HWND owner, const WideText& text) {
    const HWND focus = GetFocus();
    MessageBoxW(owner, text.c_str(), TEXT("Veldrane VM"), MB_ICONERROR);
    // The field that the message speaks of may have got the focus in this very command, unseen by the message
    // loop.
    if (focus != nullptr)
        SetFocus(focus);
}
