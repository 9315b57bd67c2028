// The demonstration over the layer: the launcher and its user in one process. Arguments: none; run in the
// folder.
#include <cstdio>
#include <exception>

#include "base/file_system.h"
#include "demo/tour.h"
#include "demo/user/user.h"

void ShowPicture(HWND, const std::string&, const std::string&) {}  // the layer does not draw

int main() {
    try {
        Launcher launcher;
        bool right = false;
        const int exit_code = user::RunWithUser(launcher, [&] { right = Tour(CurrentDirectory()); });
        return right && exit_code == 0 ? 0 : 1;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
