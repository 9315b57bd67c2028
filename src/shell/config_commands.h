// The flows between form, record and file: load, save, reset, and the prompt that guards unsaved changes.
// Each reads or writes its file completely before the record changes, and ends by rewriting the form. A
// failure throws.
#pragma once

#include "platform/win32.h"
#include "state/launcher.h"

inline constexpr WideView DEFAULT_CONFIG_NAME = TEXT("veldranevm.config");

// Whether the form's content may be dropped; with unsaved changes the user decides, and the answer Yes saves
// first. False also where the question cannot be shown. Throws what that save throws.
bool ConfirmDiscard(Launcher& launcher);

// The command of the button: asks for a file and loads it.
void OnLoadCommand(Launcher& launcher);

// Makes the file at `path` the current configuration. A file that cannot be read changes nothing.
void LoadConfiguration(Launcher& launcher, const WideText& path);

// Writes what the form holds to the current file or, with `save_as`, to one that the user chooses, and makes
// that the current configuration. False: the user cancelled the box. A failure leaves the record and the old
// file as they were.
bool SaveConfiguration(Launcher& launcher, bool save_as);

// The command of the button: back to the defaults, with no current file.
void ResetConfiguration(Launcher& launcher);
