// A machine on the emulator, from its start to its end.
#pragma once

#include <cstdint>

#include "adapter/boot_image.h"
#include "config/vm_config.h"
#include "platform/win32.h"

// Runs the machine of a configuration whose files have been checked. Prints the serial output as it arrives
// and then a line about the end of the machine. Writes the picture of the screen if the configuration names a
// file for it; not when the user closed the window or the emulator ended. Returns the engine's exit code.
// Throws when the machine cannot be started and when the picture cannot be written. Before it returns or
// throws, it ends the emulator and deletes the temporary files.
std::uint32_t RunMachine(const WideText& emulator, const VmConfig& config, const BootImage& image,
                         const BootRequest& request);
