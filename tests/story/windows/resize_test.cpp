// Dragging a corner of the window, which the layer does not implement.
#include <gtest/gtest.h>

#include "form/form_ids.h"
#include "launcher_run.h"

namespace {

void SendMouse(DWORD flags) {
    INPUT input{};
    input.type = INPUT_MOUSE;
    input.mi.dwFlags = flags;
    SendInput(1, &input, sizeof input);
}

// Drags the lower right corner by dx and dy pixels. Returns the new size of the window.
SIZE DragCorner(int dx, int dy) {
    const HWND window = user::MainWindow();
    RECT place{};
    user::OnProgramThread([&] {
        GetWindowRect(window, &place);
        SetCursorPos(place.right - 2, place.bottom - 2);
        SendMouse(MOUSEEVENTF_LEFTDOWN);
    });
    for (int step = 1; step <= 4; ++step) {
        user::Pause(30);
        user::OnProgramThread(
            [&] { SetCursorPos(place.right - 2 + dx * step / 4, place.bottom - 2 + dy * step / 4); });
    }
    user::OnProgramThread([] { SendMouse(MOUSEEVENTF_LEFTUP); });
    user::Pause(100);
    user::OnProgramThread([&] { GetWindowRect(window, &place); });
    return {place.right - place.left, place.bottom - place.top};
}

TEST(Resize, StopsAtTheInitialSizeWhenACornerIsDragged) {
    LauncherRun run;
    run.Run([&] {
        RECT first{};
        user::OnProgramThread([&] { GetWindowRect(run.launcher.main_window, &first); });
        const SIZE larger = DragCorner(120, 60);
        EXPECT_EQ(larger.cx, first.right - first.left + 120);
        EXPECT_EQ(larger.cy, first.bottom - first.top + 60);
        const SIZE smallest = DragCorner(-400, -300);
        EXPECT_EQ(smallest.cx, first.right - first.left);
        EXPECT_EQ(smallest.cy, first.bottom - first.top);
    });
}

}  // namespace
