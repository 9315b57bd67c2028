// The emulator: its program, its command line and its process. Each build (Linux, Windows) has its own
// implementation of UsualPrograms and of everything that is declared after it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "adapter/boot_image.h"
#include "base/owned_handle.h"
#include "config/vm_config.h"
#include "platform/win32.h"

// Splits a text at each separator that is not between double quotes. Removes the quotes and the empty parts.
std::vector<std::string> Split(std::string_view text, char separator);

// Returns the path of the emulator's program: the value of the environment variable TESSARUN_QEMU or, when it
// is not set, the first of UsualPrograms that exists. Throws when there is no such program.
WideText FindEmulator();

// The processor of the machine: one that knows 64-bit code, unless the emulator's program is one for 32 bits.
std::string ProcessorOf(WideView program);

// What the emulator needs beside the configuration.
struct EmulatorSetup {
    WideText program;                 // its path
    std::string image;                // the boot image, relative to the folder in which the emulator runs
    std::optional<DisplayMode> mode;  // none: the text screen
    std::uint16_t control_port = 0;   // on the loopback address
    bool is_stopped = false;          // the processor does not start
    std::string user_options;         // for Split at blanks
};

// Returns the emulator's arguments, without the program's name. The user's options come last. Throws as
// EmulatorPath does.
std::vector<std::string> EmulatorArguments(const VmConfig& config, const EmulatorSetup& setup);

// The paths at which an emulator can be, in the order in which they are tried.
std::vector<WideText> UsualPrograms();

// The value of an environment variable; empty when it is not set.
std::string Setting(const char* name);

// The folder for temporary files, without a separator at its end.
WideText TemporaryFolder();

// Deletes the temporary files of engines whose process has ended. Ignores failures.
void DeleteAbandonedFiles();

// Converts a full path to the form that this emulator's program accepts, in UTF-8. Throws when that fails.
std::string EmulatorPath(const WideText& program, const WideText& path);

// The kind of character device that writes to the standard output of this emulator's program.
const char* OutputDevice(const WideText& program);

// The emulator's process. It runs in the folder for temporary files and writes to the engine's output. It
// ends with the engine, even when the engine is killed.
class Emulator {
public:
    // Starts the process; `zoom` is the scale of its window. Throws when the process cannot be created. A
    // Linux program that cannot be executed does not throw: the process ends at once.
    Emulator(const WideText& program, const std::vector<std::string>& arguments, std::uint32_t zoom);
    // Ends the process if it still runs.
    ~Emulator();

    // How the process ended: its exit code or, negative, the signal that ended it; none while it runs.
    std::optional<std::int64_t> End();

private:
    [[maybe_unused]] int process_identifier_ = 0;  // Linux only
    std::optional<std::int64_t> end_;              // Linux only
    OwnedHandle process_;                          // Windows only
    OwnedHandle status_;  // a Linux program under Wine only; see windows/emulator.cpp
};
