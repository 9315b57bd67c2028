// The emulator's command line for one machine. Plain text.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "adapter/boot_image.h"

// The paths as the emulator takes them.
struct MachineRequest {
    std::string image;                 // the file with the boot image
    std::array<std::string, 4> disks;  // raw images; empty: no disk
    std::uint32_t ram_mib = 0;
    std::optional<DisplayMode> mode;
    bool has_window = false;
};

// Where the emulator finds the three channels: ports of this machine's own address.
struct ChannelPorts {
    std::uint16_t control;
    std::uint16_t serial;
    std::uint16_t exit_code;
};

// What the emulator gets after its own name.
std::vector<std::string> EmulatorArguments(const MachineRequest& machine, const ChannelPorts& ports);
