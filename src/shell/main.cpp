// The entry point. Command-line arguments are ignored.
#include "shell/dll_search.h"
#include "shell/run_launcher.h"
#include "state/launcher.h"

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, LPWSTR, int show_command) {
    LimitDllSearch();
    Launcher launcher;
    return RunLauncher(launcher, instance, show_command);
}
