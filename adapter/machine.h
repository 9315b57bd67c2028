// A machine on the emulator, from its start to its end.
#pragma once

#include <cstdint>
#include <vector>

#include "adapter/boot_image.h"
#include "adapter/emulator.h"
#include "adapter/engine_request.h"

// Runs the machine of a request whose files have been checked, or in a dry run only creates it. The machine
// writes its serial output to standard output; a line about its end follows. Writes the picture of the screen
// if the configuration names a file for it; not when the user closed the window or the emulator ended.
// `setup` contains the processor and the user's options. Stores the engine's exit code. Throws when the
// machine cannot be started and when the picture cannot be written. Before it returns or throws, it ends the
// emulator and deletes the temporary files.
void RunMachine(const WideText& program, const EngineRequest& request, const BootImage& image,
                const std::vector<std::uint64_t>& module_bytes, EmulatorSetup setup,
                std::uint32_t& exit_code);
