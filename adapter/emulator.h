// The emulator as a program of this machine: where it is, how it names files, its process. Each build has its
// own.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/win32.h"

// The emulator's program: the one that the environment's TESSARUN_QEMU names, else the first one found where
// the system's programs are. Throws when there is none.
WideText FindEmulator();

// The folder for temporary files, without a separator at its end.
WideText TemporaryFolder();

// A full path as the emulator with this program takes it.
std::string EmulatorPath(const WideText& program, const WideText& path);

// False where no window can be shown.
bool HasDisplay();

// A process that never outlives its owner, be it that he is killed. It runs in the folder for temporary files
// and writes where its owner writes.
class Emulator {
public:
    // Starts it; `zoom` is the scale of its windows. Throws when that fails.
    Emulator(const WideText& program, const std::vector<std::string>& arguments, std::uint32_t zoom);
    // Ends it if it still runs.
    ~Emulator();
    Emulator(const Emulator&) = delete;
    Emulator& operator=(const Emulator&) = delete;

    // False where the platform does not tell, too.
    bool HasEnded();

private:
    std::intptr_t process_ = 0;
    std::intptr_t group_ = 0;
};
