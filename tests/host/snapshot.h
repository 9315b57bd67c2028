// Snapshots of the program's state, to be compared.
#pragma once

#include <map>
#include <string>

#include "state/launcher.h"

// Maps names to the texts and states of the launcher's windows and of its record.
using Snapshot = std::map<std::string, std::string>;

// The names of a control's content and of its enabled state.
std::string FieldName(UINT id);
std::string EnabledName(UINT id);

Snapshot TakeSnapshot(const Launcher& launcher);
