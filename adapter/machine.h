// A machine on the emulator, from its start to its end.
#pragma once

#include <cstdint>

#include "adapter/boot_image.h"
#include "config/vm_config.h"
#include "platform/win32.h"

// Runs the machine of a configuration whose files have been checked. Prints its serial output as it arrives,
// then a line about its end, and writes the picture of its screen if the configuration names a file for it.
// Returns the engine's exit code. Throws when the machine cannot be started or its picture cannot be written.
// Ends the emulator and deletes the temporary files in both cases.
std::uint32_t RunMachine(const WideText& emulator, const VmConfig& config, const BootImage& image,
                         const BootRequest& request);
