// Operations on the module list of a record. No platform call.
#pragma once

#include <cstdint>
#include <optional>

#include "config/vm_config.h"
#include "platform/win32.h"

// Appends a module with this path. Its arguments are the last element of the path, the file's name.
void AppendModule(VmConfig& config, const WideText& path);

// Removes the module at `index`, which must be valid.
void EraseModule(VmConfig& config, std::int32_t index);

// The index to which the module at `selected` moves by `delta`; none if nothing is selected (-1) or the index
// would be outside the list.
std::optional<std::int32_t> MoveTarget(const VmConfig& config, std::int32_t selected, std::int32_t delta);

// Swaps two modules. The indices must be valid.
void SwapModules(VmConfig& config, std::int32_t first, std::int32_t second);
