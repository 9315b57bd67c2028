#include "launch/engine_run.h"

#include <stdexcept>
#include <utility>

#include "base/file_system.h"
#include "base/path_ops.h"
#include "base/text_convert.h"
#include "form/form_exchange.h"
#include "form/form_ids.h"
#include "form/title.h"
#include "launch/engine_command.h"
#include "launch/engine_start.h"
#include "launch/log_window.h"
#include "launch/run_result.h"

namespace {

void RequireFile(const WideText& path) {
    if (QueryFileType(path, "status") != FileType::Regular)
        throw std::runtime_error("Fichier introuvable : " + Utf8FromWide(path));
}

// Throws unless all files that the engine reads exist. The export file need not exist: the engine writes
// it.
void RequireInputFiles(const VmConfig& config) {
    RequireFile(config.kernel);
    for (const WideText& image : config.ide)
        if (!image.empty())
            RequireFile(image);
    for (const ModuleEntry& module : config.modules)
        RequireFile(module.path);
}

DWORD TakeExitCode(Launcher& launcher) {
    DWORD exit_code = 0;
    GetExitCodeProcess(launcher.engine_process, &exit_code);
    CloseHandle(launcher.engine_process);
    launcher.engine_process = nullptr;
    return exit_code;
}

}  // namespace

void LaunchEngine(Launcher& launcher, bool dry_run) {
    if (launcher.engine_process != nullptr)
        return;
    const VmConfig config = ReadForm(launcher);
    if (config.kernel.empty()) {
        SetFocus(GetDlgItem(launcher.main_window, IDC_KERNEL_PATH));
        throw std::runtime_error("Choisissez un noyau ELF.");
    }
    RequireInputFiles(config);
    if (QueryFileType(launcher.engine_path, "status") != FileType::Regular)
        throw std::runtime_error("tessarun.exe doit être placé à côté du lanceur.");
    WideText command_line = BuildEngineCommandLine(launcher.engine_path, config, dry_run);
    launcher.log_path = JoinPath(launcher.run_directory, TEXT("veldranevm.log"));
    OwnedHandle process =
        StartEngine(launcher.engine_path, std::move(command_line), launcher.run_directory, launcher.log_path);
    launcher.engine_process = process.Release();
    launcher.run_is_dry = dry_run;
    SetWindowTextW(launcher.status_label,
                   dry_run ? TEXT("Vérification en cours...")
                           : TEXT("VM démarrée. Les réglages s'appliquent au prochain lancement."));
    RefreshEnabling(launcher);
}

void PollEngine(Launcher& launcher) {
    if (launcher.engine_process == nullptr)
        return;
    if (WaitForSingleObject(launcher.engine_process, 0) != WAIT_OBJECT_0)
        return;
    const DWORD exit_code = TakeExitCode(launcher);
    SetWindowTextW(launcher.status_label, RunResultText(exit_code, launcher.run_is_dry).c_str());
    RefreshEnabling(launcher);
    RefreshLogWindow(launcher);
    if (exit_code != 0)
        ShowLogWindow(launcher);
}
