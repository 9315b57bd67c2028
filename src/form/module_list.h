// The commands and notifications of the page "Modules Multiboot". The modules are stored in
// `config.modules`; the list view shows a copy.
#pragma once

#include <cstdint>

#include "state/launcher.h"

// Asks for a file, appends it as a new module and selects the module. Throws as PickFile, ReadForm and
// AdoptConfig do, and when the list already has MAX_MODULES entries; the list is then unchanged.
void AddModule(Launcher& launcher);

// Removes the selected module and selects the following one; no module if the removed one was the last.
// Does nothing if no module is selected. Throws as ReadForm and AdoptConfig do; the list is then
// unchanged.
void RemoveModule(Launcher& launcher);

// Swaps the selected module with the one above (`delta` -1) or below (`delta` +1). The moved module
// remains selected. Does nothing if no module is selected or there is none to swap with. Throws as
// ReadForm and AdoptConfig do; the list is then unchanged.
void MoveModule(Launcher& launcher, std::int32_t delta);

// Called after each edit of the arguments field: stores its text in the selected module and sets `dirty`.
// Does nothing if no module is selected or `filling` is set. Throws std::bad_alloc when the field does not
// return its text or the list refuses the text; the module is then unchanged.
void OnModuleArgsChanged(Launcher& launcher);

// Called after each change of the selected row: updates `selected_module`, the arguments field and the
// enabled states. Does not set `dirty`. Throws std::bad_alloc when the field refuses the arguments; no row
// is then selected.
void OnModuleSelectionChanged(Launcher& launcher);
