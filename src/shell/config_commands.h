// The commands between form, record and file: load, save, reset, and the question about unsaved changes. Each
// reads or writes its file completely before it changes the Launcher. Failures are thrown.
#pragma once

#include "platform/win32.h"
#include "state/launcher.h"

inline constexpr WideView DEFAULT_CONFIG_NAME = TEXT("veldranevm.config");

// Whether the form's contents may be discarded. With unsaved changes the user is asked: Yes saves first, No
// discards, Cancel is false, and so is a question that cannot be shown. Throws as SaveConfiguration does.
bool ConfirmDiscard(Launcher& launcher);

// The command of the button: asks for a file and loads it.
void OnLoadCommand(Launcher& launcher);

// Loads the file at `path` and makes it the current configuration. When the file cannot be read, nothing
// changes.
void LoadConfiguration(Launcher& launcher, const WideText& path);

// Writes the values of the form to the current file or, with `save_as`, to one that the user chooses, and
// makes it the current configuration. False when the user cancels the box. When this throws, the Launcher is
// unchanged, and so is the old file unless the failure came after it was replaced (std::bad_alloc, from a
// control).
bool SaveConfiguration(Launcher& launcher, bool save_as);

// The command of the button: the default values, without a current file.
void ResetConfiguration(Launcher& launcher);
