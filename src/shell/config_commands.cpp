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

// Returns the path of the file to write; empty when the user cancels the box.
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
    if (answer == IDYES)
        return SaveConfiguration(launcher, false);
    return answer == IDNO;  // MessageBoxW returns 0 when it cannot show the box
}

void OnLoadCommand(Launcher& launcher) {
    if (!ConfirmDiscard(launcher))
        return;
    const WideText path = PickFile(launcher, false, FILTER_CONFIG, CONFIG_EXTENSION, {});
    if (!path.empty())
        LoadConfiguration(launcher, path);
}

void LoadConfiguration(Launcher& launcher, const WideText& path) {
    CurrentConfig next{ReadConfigFile(path), {}, {}, false};
    const FormContent shown = ReadContent(launcher);
    // The swap makes the new record current, with the old path, if AbsolutePath throws.
    std::swap(launcher.config, next.config);
    next.config_path = NormalPath(AbsolutePath(path));
    next.run_directory = ParentPath(next.config_path);
    std::swap(launcher.config, next.config);
    AdoptConfig(launcher, std::move(next), shown);
    SetStatus(launcher, TEXT("Configuration chargée."));
}

bool SaveConfiguration(Launcher& launcher, bool save_as) {
    CurrentConfig next{ReadForm(launcher), {}, {}, false};
    next.config_path = ChooseTarget(launcher, save_as);
    if (next.config_path.empty())
        return false;
    next.run_directory = ParentPath(next.config_path);
    const FormContent shown = ReadContent(launcher);
    WriteConfigFile(next.config_path, next.config);
    AdoptConfig(launcher, std::move(next), shown);
    SetStatus(launcher, TEXT("Configuration enregistrée."));
    return true;
}

void ResetConfiguration(Launcher& launcher) {
    if (!ConfirmDiscard(launcher))
        return;
    AdoptConfig(launcher, {VmConfig{}, {}, launcher.start_directory, false}, ReadContent(launcher));
    SetStatus(launcher, TEXT("Réglages par défaut. Choisissez un noyau ELF."));
}
