// The demonstration over the layer: the launcher and its user in one process; run in the folder. With the
// argument `machine` that of a real machine.
#include <cstdio>
#include <exception>
#include <string_view>

#include "base/file_system.h"
#include "demo/tour.h"
#include "demo/user/user.h"

void ShowPicture(HWND, const std::string&, const std::string&) {}  // the layer does not draw

int main(int count, char** arguments) {
    try {
        Launcher launcher;
        bool right = false;
        const bool is_machine = count == 2 && std::string_view(arguments[1]) == "machine";
        const auto tour = is_machine ? MachineTour : Tour;
        const int exit_code = user::RunWithUser(launcher, [&] { right = tour(CurrentDirectory()); });
        return right && exit_code == 0 ? 0 : 1;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
