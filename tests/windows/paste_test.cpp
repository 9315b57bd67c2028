// The clipboard belongs to the real platform alone: the layer has none.
#include <gtest/gtest.h>

#include <cstring>

#include "form/form_ids.h"
#include "launcher_run.h"

namespace {

void PutOnClipboard(HWND owner, WideView text) {
    OpenClipboard(owner);
    EmptyClipboard();
    const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, (text.size() + 1) * sizeof(WCHAR));
    auto* to = static_cast<WCHAR*>(GlobalLock(memory));
    to[text.copy(to, text.size())] = 0;
    GlobalUnlock(memory);
    SetClipboardData(CF_UNICODETEXT, memory);
    CloseClipboard();
}

TEST(Paste, OfLettersIntoANumberFieldIsRefusedAtReading) {
    LauncherRun run;
    run.Run([&] {
        user::Do([&] { PutOnClipboard(run.launcher.main_window, TEXT("6x4")); });
        user::Fill(IDC_TIMEOUT_MS, TEXT(""));
        user::PressWith(VK_CONTROL, 'V');
        EXPECT_TRUE(user::WaitUntil([] { return user::ControlText(IDC_TIMEOUT_MS) == TEXT("6x4"); }))
            << Narrow(user::ControlText(IDC_TIMEOUT_MS));
        user::Click(IDC_VERIFY);
        EXPECT_EQ(TakeErrorBox(), "Veldrane VM\nNombre invalide : délai (0..3600000 ms)");
    });
}

}  // namespace
