// The page of the Multiboot modules: its commands and what its controls notify. The list itself is
// `config.modules`; the list view is its mirror.
#pragma once

#include <cstdint>

#include "state/launcher.h"

// Asks for a file and appends it as a new module, which is then selected. Throws what the file box and
// ReadForm throw, and at the limit of modules, with nothing changed.
void AddModule(Launcher& launcher);

// Takes the selected module out; the one below it is then selected. Throws what ReadForm throws, with
// nothing changed.
void RemoveModule(Launcher& launcher);

// Lets the selected module change places with its neighbour, -1 above or +1 below, and keeps it selected.
// Throws what ReadForm throws, with nothing changed.
void MoveModule(Launcher& launcher, std::int32_t delta);

// The arguments field was edited: the selected module takes its text at once.
void OnModuleArgsChanged(Launcher& launcher);

// The list view reports another selection: the record and the arguments field follow it. Marks nothing as
// modified.
void OnModuleSelectionChanged(Launcher& launcher);
