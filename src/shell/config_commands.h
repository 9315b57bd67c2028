// The commands that move a configuration between form, record and file: load, save and reset, and the
// question about unsaved changes. Each command reads or writes its file completely before it changes the
// Launcher. Failures are reported as exceptions.
#pragma once

#include "platform/win32.h"
#include "state/launcher.h"

inline constexpr WideView DEFAULT_CONFIG_NAME = TEXT("veldranevm.config");

// Returns whether the form's contents may be discarded. If there are unsaved changes, asks the user. Yes:
// saves and returns what SaveConfiguration returns. No: true. Cancel, or a box that cannot be shown:
// false. Throws as SaveConfiguration does.
bool ConfirmDiscard(Launcher& launcher);

// The command of the load button: calls ConfirmDiscard, asks for a file and loads the file. Throws as
// ConfirmDiscard, PickFile and LoadConfiguration do.
void OnLoadCommand(Launcher& launcher);

// Loads the file at `path` and makes it the current configuration. Throws as ReadConfigFile, AbsolutePath
// and AdoptConfig do; the Launcher is then unchanged, except that `config` is the new record if
// ReadConfigFile returned and AbsolutePath then failed.
void LoadConfiguration(Launcher& launcher, const WideText& path);

// Writes the values of the form to a file and makes that file the current configuration. With `save_as`
// the user chooses the file; otherwise it is the current file or, if there is none, DEFAULT_CONFIG_NAME in
// `start_directory`. Returns false when the user cancels the box. Throws as ReadForm, PickFile,
// WriteConfigFile and AdoptConfig do; the Launcher is then unchanged. The old file is then unchanged too,
// unless AdoptConfig failed: the file is already replaced before AdoptConfig is called.
bool SaveConfiguration(Launcher& launcher, bool save_as);

// The command of the reset button: calls ConfirmDiscard and makes the default values the current
// configuration, without a current file. Throws as ConfirmDiscard and AdoptConfig do.
void ResetConfiguration(Launcher& launcher);
