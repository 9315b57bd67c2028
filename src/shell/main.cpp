// The entry point. The program has no command-line arguments.
#include <cstdlib>

#include "shell/dll_search.h"
#include "shell/run_launcher.h"
#include "state/launcher.h"

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, LPWSTR, int show_command) {
    LimitDllSearch();
    Launcher launcher;
    return RunLauncher(launcher, instance, show_command);
}

// The runtime's own handler would print the name of an exception that nobody caught, which nobody sees here;
// the means to spell that name are a fifth of the executable.
namespace __gnu_cxx {
void __verbose_terminate_handler();  // NOLINT(bugprone-reserved-identifier): the runtime's name
void __verbose_terminate_handler() {
    std::abort();
}
}  // namespace __gnu_cxx
