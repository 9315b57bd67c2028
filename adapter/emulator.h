// The emulator's program, its file names and its process. Each build has its own implementation.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/owned_handle.h"
#include "platform/win32.h"

// The path of the emulator's program: the value of the environment variable TESSARUN_QEMU, otherwise the
// first one in the usual folders of programs. Throws when there is none.
WideText FindEmulator();

// The folder for temporary files, without a separator at its end.
WideText TemporaryFolder();

// A full path in the form that this emulator takes, in UTF-8.
std::string EmulatorPath(const WideText& program, const WideText& path);

// False when no window can be shown.
bool HasDisplay();

// The emulator's process. It ends with the engine, even when the engine is killed; under Wine an emulator of
// the system below does not. It runs in the folder for temporary files and inherits the engine's output.
class Emulator {
public:
    // Starts it; `zoom` is the scale of its window. Throws when that fails.
    Emulator(const WideText& program, const std::vector<std::string>& arguments, std::uint32_t zoom);
    // Ends the process if it still runs.
    ~Emulator();
    Emulator(const Emulator&) = delete;
    Emulator& operator=(const Emulator&) = delete;

    // Also false when there is no handle of the process to ask.
    bool HasEnded();

private:
    int process_identifier_ = 0;  // Linux only; 0 once the process has ended
    OwnedHandle process_;         // Windows only
    OwnedHandle job_;             // Windows only; closing it ends the process
};
