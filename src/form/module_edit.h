// Operations on the module list of a record. No platform call.
#pragma once

#include <cstdint>
#include <optional>

#include "config/vm_config.h"
#include "platform/win32.h"

// Appends a module with this path. Its arguments are set to the file name, the last element of the path.
void AppendModule(VmConfig& config, const WideText& path);

// Removes the module at `index`, which must be valid.
void EraseModule(VmConfig& config, std::int32_t index);

// Returns the index to which a move by `delta` takes the module at index `selected`; none if `selected` is
// -1 (no selection) or the new index would be outside the list.
std::optional<std::int32_t> MoveTarget(const VmConfig& config, std::int32_t selected, std::int32_t delta);

// Swaps the modules at the two indices, which must be valid.
void SwapModules(VmConfig& config, std::int32_t first, std::int32_t second);
