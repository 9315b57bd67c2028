// The emulator's command line for one machine.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "adapter/boot_image.h"
#include "config/vm_config.h"

// The paths of the raw disk images in the form that the emulator accepts. An empty path: no disk.
using DiskPaths = std::array<std::string, 4>;

// The ports of the three channels, on the loopback address.
struct ChannelPorts {
    std::uint16_t control;
    std::uint16_t serial;
    std::uint16_t exit_port;
};

// Returns the emulator's arguments, without the program's name. `image` is the path of the boot image,
// relative to the folder in which the emulator runs.
std::vector<std::string> EmulatorArguments(const VmConfig& config, const std::string& image,
                                           const DiskPaths& disks, const std::optional<DisplayMode>& mode,
                                           const ChannelPorts& ports);
