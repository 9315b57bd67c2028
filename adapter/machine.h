// A machine on the emulator, from its start to its end.
#pragma once

#include <cstdint>

#include "adapter/boot_image.h"
#include "config/vm_config.h"
#include "platform/win32.h"

// Runs the machine of a configuration whose files have been checked: what its serial port says comes out on
// standard output as it is written, then a line about its end; the picture of its screen is written if the
// configuration names a file for it. Gives the engine's exit code. Throws when the machine cannot be run to
// its end; nothing stays behind then either.
std::uint32_t RunMachine(const WideText& emulator, const VmConfig& config, const BootImage& image,
                         const BootRequest& request);
