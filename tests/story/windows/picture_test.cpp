// Pixels of the window after changes that could leave parts of it unpainted.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "form/form_ids.h"
#include "launcher_run.h"

namespace {

// The pixels of a part of the window, in client coordinates.
std::vector<COLORREF> Pixels(HWND window, const RECT& part) {
    std::vector<COLORREF> pixels;
    const HDC screen = GetDC(window);
    for (LONG y = part.top; y < part.bottom; ++y)
        for (LONG x = part.left; x < part.right; ++x)
            pixels.push_back(GetPixel(screen, x, y));
    ReleaseDC(window, screen);
    return pixels;
}

RECT PlaceOf(const Launcher& launcher, UINT id) {
    const HWND control = GetDlgItem(launcher.main_window, static_cast<int>(id));
    RECT place{};
    GetWindowRect(control, &place);
    MapWindowPoints(nullptr, launcher.main_window, reinterpret_cast<POINT*>(&place), 2);
    return place;
}

// The result of `look` after everything has been drawn.
template <typename Look>
auto Seen(const Launcher& launcher, const Look& look) {
    user::Pause(150);
    decltype(look()) seen{};
    user::OnProgramThread([&] {
        UpdateWindow(launcher.main_window);
        seen = look();
    });
    return seen;
}

TEST(Picture, PaintsGroupBoxesAndFramesCompletelyAtTheStartAndAfterEachChange) {
    LauncherRun run;
    run.Run([&] {
        const Launcher& launcher = run.launcher;
        const HWND window = launcher.main_window;
        const COLORREF face = GetSysColor(COLOR_BTNFACE);
        const auto expect_painted = [&](const char* moment) {
            SCOPED_TRACE(moment);
            // Inside both group boxes, where there is no control.
            for (const RECT& empty : {RECT{900, 110, 904, 210}, RECT{900, 250, 904, 350}}) {
                const auto inside = Seen(launcher, [&] { return Pixels(window, empty); });
                EXPECT_EQ(std::set<COLORREF>(inside.begin(), inside.end()), std::set<COLORREF>{face});
            }
            // An edit field's sunken frame is drawn in at least three colours down its left edge.
            for (const UINT id :
                 {IDC_KERNEL_PATH, IDC_RAM_MIB, IDC_IDE_PRIMARY_MASTER, IDC_IDE_SECONDARY_SLAVE}) {
                RECT edge = PlaceOf(launcher, id);
                edge.top += 10;
                edge.bottom = edge.top + 1;
                edge.right = edge.left + 4;
                const auto frame = Seen(launcher, [&] { return Pixels(window, edge); });
                EXPECT_GE(std::set<COLORREF>(frame.begin(), frame.end()).size(), 3U) << id;
            }
        };
        expect_painted("at the start");
        user::ChooseTab(1);
        user::ChooseTab(0);
        expect_painted("after two changes of the page");
        user::ResizeClient(921, 700);
        expect_painted("after a resize");
    });
}

// The width of the drawn text in the label, in pixels.
LONG DrawnWidth(const Launcher& launcher, UINT id, const WCHAR* text) {
    user::OnProgramThread([&] { SetDlgItemTextW(launcher.main_window, static_cast<int>(id), text); });
    const RECT place = PlaceOf(launcher, id);
    const auto pixels = Seen(launcher, [&] { return Pixels(launcher.main_window, place); });
    const LONG across = place.right - place.left;
    LONG drawn = 0;
    for (std::size_t at = 0; at < pixels.size(); ++at)
        if (pixels[at] != GetSysColor(COLOR_BTNFACE))
            drawn = std::max(drawn, static_cast<LONG>(at) % across);
    return drawn;
}

TEST(Picture, ShowsAnAmpersandInAPath) {
    LauncherRun run;
    run.Run([&] {
        for (const UINT id : {IDC_STATUS, IDC_CONFIG_LINE}) {
            const LONG with = DrawnWidth(run.launcher, id, TEXT("C:\\R&D"));
            EXPECT_GT(with, DrawnWidth(run.launcher, id, TEXT("C:\\RD")) + 3) << id;
            EXPECT_LT(with, DrawnWidth(run.launcher, id, TEXT("C:\\R&&D")) - 3) << id;
        }
    });
}

}  // namespace
