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
    // The platform gives the focus back to the window and not to the field that the message speaks of.
    if (owner != nullptr && GetFocus() == owner && IsWindow(focus) != FALSE &&
        IsWindowEnabled(focus) != FALSE)
        SetFocus(focus);
}
