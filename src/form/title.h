// The title, the configuration line and the enabling of controls, shown anew from the record and the check
// boxes.
#pragma once

#include "state/launcher.h"

// Writes the title bar and the configuration line. Whoever changes `dirty` or `config_path` calls it.
void RefreshTitle(Launcher& launcher);

// Enables and disables the nine controls that depend on the check boxes, the selected module and the run.
// Where both are called, this one comes first.
void RefreshEnabling(Launcher& launcher);
