// The emulator's program, its file names and its process. Each build has its own implementation.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/owned_handle.h"
#include "platform/win32.h"

// Returns the path of the emulator's program: the value of the environment variable TESSARUN_QEMU or, when it
// is not set, the first emulator in the usual folders of programs. Throws when there is no such program.
WideText FindEmulator();

// The folder for temporary files, without a separator at its end.
WideText TemporaryFolder();

// Converts a full path to the form that this emulator's program accepts, in UTF-8. Throws when that fails.
std::string EmulatorPath(const WideText& program, const WideText& path);

// Whether the emulator can show a window.
bool HasDisplay();

// The emulator's process. It runs in the folder for temporary files and inherits the engine's output. It ends
// with the engine, even when the engine is killed. Exception: a Linux emulator that is started under Wine can
// outlive the engine.
class Emulator {
public:
    // Starts the process; `zoom` is the scale of its window. Throws when the process cannot be created. On
    // Linux, a program that cannot be executed does not throw: the process ends at once with exit code 127.
    Emulator(const WideText& program, const std::vector<std::string>& arguments, std::uint32_t zoom);
    // Ends the process if it still runs.
    ~Emulator();
    Emulator(const Emulator&) = delete;
    Emulator& operator=(const Emulator&) = delete;

    // Whether the process has ended. Always false for a Linux emulator under Wine, which has no process
    // handle.
    bool HasEnded();

private:
    int process_identifier_ = 0;  // Linux only; 0 once the process has ended
    OwnedHandle process_;         // Windows only
    OwnedHandle job_;             // Windows only; closing it ends the process
};
