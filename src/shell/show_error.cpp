#include "shell/show_error.h"

#include "config/text_convert.h"

void ShowError(Launcher& launcher, const std::exception& error) {
    const WideText text = WideFromMessage(error.what());
    SetWindowTextW(launcher.status_label, text.c_str());
    ShowErrorBox(launcher.main_window, text);
}

void ShowErrorBox(HWND owner, const WideText& text) {
    MessageBoxW(owner, text.c_str(), TEXT("Veldrane VM"), MB_ICONERROR);
}
