// The commands and notifications of the page "Modules Multiboot". `config.modules` is the list; the list view
// shows a copy of it.
#pragma once

#include <cstdint>

#include "state/launcher.h"

// Asks for a file, appends it as a new module and selects that. Throws as PickFile, ReadForm and AdoptConfig
// do, and when the list already has MAX_MODULES entries; nothing has changed then.
void AddModule(Launcher& launcher);

// Removes the selected module and selects the one that followed it. Throws as ReadForm and AdoptConfig do;
// nothing has changed then.
void RemoveModule(Launcher& launcher);

// Swaps the selected module with its neighbour, the one above for a `delta` of -1 or the one below for +1,
// and keeps it selected. Throws as ReadForm and AdoptConfig do; nothing has changed then.
void MoveModule(Launcher& launcher, std::int32_t delta);

// For an edit of the arguments field: stores its text in the selected module. Throws std::bad_alloc when a
// control does not return or refuses the text; the module is unchanged then.
void OnModuleArgsChanged(Launcher& launcher);

// For a change of the selected row: updates `selected_module`, the arguments field and the enabling. Does not
// mark the form as modified. Throws std::bad_alloc when the field refuses the arguments; no row is selected
// then.
void OnModuleSelectionChanged(Launcher& launcher);
