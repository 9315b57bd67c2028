// The entry point. The program has no command-line arguments.
#include "shell/run_launcher.h"
#include "state/launcher.h"

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, LPWSTR, int show_command) {
    Launcher launcher;
    return RunLauncher(launcher, instance, show_command);
}
