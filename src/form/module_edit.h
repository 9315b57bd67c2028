// The operations on a record's module list, apart from the controls that show it.
#pragma once

#include <cstdint>
#include <optional>

#include "config/vm_config.h"
#include "platform/win32.h"

// Appends a module with this file; its arguments are the file's own name, with its extension.
void AppendModule(VmConfig& config, const WideText& path);

// Takes the module at `index` out; those below it move up by one. The index must be valid.
void EraseModule(VmConfig& config, std::int32_t index);

// Where the module at `selected` goes when it moves by `delta`; none if nothing is selected or it would leave
// the list.
std::optional<std::int32_t> MoveTarget(const VmConfig& config, std::int32_t selected, std::int32_t delta);

// Lets two modules change places, each with its file and arguments. The indices must be valid.
void SwapModules(VmConfig& config, std::int32_t first, std::int32_t second);
