// The demonstration on the layer: the launcher and its user run in one process, in the current directory.
// With the argument `machine`, plays the demonstration of a real machine.
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
        bool is_correct = false;
        const bool is_machine = count == 2 && std::string_view(arguments[1]) == "machine";
        const auto tour = is_machine ? MachineTour : Tour;
        const int exit_code =
            user::RunWithUserThread(launcher, [&] { is_correct = tour(CurrentDirectory()); });
        return is_correct && exit_code == 0 ? 0 : 1;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
