// The entry point. The program has no command-line arguments.
#include "shell/dll_search.h"
#include "shell/run_launcher.h"
#include "state/launcher.h"

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, LPWSTR, int show_command) {
    LimitDllSearch();
    Launcher launcher;
    return RunLauncher(launcher, instance, show_command);
}
