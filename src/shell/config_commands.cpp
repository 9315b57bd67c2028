// Load, save and reset: files first, then the record, then the form. What can fail comes before the first
// change of the record.
#include "shell/config_commands.h"

#include <utility>

#include "base/file_system.h"
#include "base/path_ops.h"
#include "config/config_file.h"
#include "form/file_picker.h"
#include "form/form_exchange.h"

namespace {

constexpr const WCHAR* CONFIG_EXTENSION = TEXT("config");

void SetStatus(const Launcher& launcher, const WCHAR* text) {
    SetWindowTextW(launcher.status_label, text);
}

// Where a save goes; empty when the user cancelled the box.
WideText ChooseTarget(Launcher& launcher, bool save_as) {
    if (save_as) {
        const WideText first_file =
            launcher.config_path.empty() ? WideText(DEFAULT_CONFIG_NAME) : launcher.config_path;
        return PickFile(launcher, true, FILTER_CONFIG, CONFIG_EXTENSION, first_file);
    }
    if (launcher.config_path.empty())
        return JoinPath(launcher.start_directory, DEFAULT_CONFIG_NAME);
    return launcher.config_path;
}

}  // namespace

bool ConfirmDiscard(Launcher& launcher) {
    if (!launcher.dirty)
        return true;
    const int answer =
        MessageBoxW(launcher.main_window, TEXT("Enregistrer les modifications de la configuration ?"),
                    TEXT("Configuration modifiée"), MB_YESNOCANCEL | MB_ICONQUESTION);
    if (answer == IDCANCEL)
        return false;
    if (answer == IDYES)
        return SaveConfiguration(launcher, false);
    return true;
}

void OnLoadCommand(Launcher& launcher) {
    if (!ConfirmDiscard(launcher))
        return;
    const WideText path = PickFile(launcher, false, FILTER_CONFIG, CONFIG_EXTENSION, {});
    if (!path.empty())
        LoadConfiguration(launcher, path);
}

void LoadConfiguration(Launcher& launcher, const WideText& path) {
    launcher.config = ReadConfigFile(path);
    WideText full_path = NormalPath(AbsolutePath(path));
    WideText folder = ParentPath(full_path);
    launcher.config_path = std::move(full_path);
    launcher.run_directory = std::move(folder);
    launcher.dirty = false;
    FillForm(launcher);
    SetStatus(launcher, TEXT("Configuration chargée."));
}

bool SaveConfiguration(Launcher& launcher, bool save_as) {
    VmConfig config = ReadForm(launcher);
    WideText target = ChooseTarget(launcher, save_as);
    if (target.empty())
        return false;
    WideText folder = ParentPath(target);
    WriteConfigFile(target, config);
    launcher.config = std::move(config);
    launcher.config_path = std::move(target);
    launcher.run_directory = std::move(folder);
    launcher.dirty = false;
    FillForm(launcher);
    SetStatus(launcher, TEXT("Configuration enregistrée."));
    return true;
}

void ResetConfiguration(Launcher& launcher) {
    if (!ConfirmDiscard(launcher))
        return;
    WideText folder = launcher.start_directory;
    launcher.config = VmConfig{};
    launcher.config_path.clear();
    launcher.run_directory = std::move(folder);
    launcher.dirty = false;
    FillForm(launcher);
    SetStatus(launcher, TEXT("Réglages par défaut. Choisissez un noyau ELF."));
}
