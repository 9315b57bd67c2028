// Updates the title, the configuration line and the enabled state of the controls from the Launcher and
// the check boxes.
#pragma once

#include "state/launcher.h"

// Writes the title bar and the configuration line. Call it after every change of `dirty` or `config_path`.
void RefreshTitle(Launcher& launcher);

// Enables or disables the nine controls that depend on the check boxes, the selected module and the run. If
// both functions are needed, call RefreshEnabling before RefreshTitle.
void RefreshEnabling(Launcher& launcher);
