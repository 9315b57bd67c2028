// The launch configuration: the values that a configuration file contains and that a launch of the virtual
// machine needs.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/win32.h"

inline constexpr std::size_t MAX_MODULES = 128;
inline constexpr std::uint32_t RAM_MIB_MIN = 16;
inline constexpr std::uint32_t RAM_MIB_MAX = 2048;
inline constexpr std::uint32_t SIZE_PIXELS_MIN = 1;
inline constexpr std::uint32_t SIZE_PIXELS_MAX = 8192;
inline constexpr std::uint32_t ZOOM_MIN = 1;
inline constexpr std::uint32_t ZOOM_MAX = 4;
inline constexpr std::uint32_t TIMEOUT_MS_MAX = 3600000;

// One Multiboot module.
struct ModuleEntry {
    WideText path;     // never empty in a valid record
    WideText command;  // the module's arguments; may be empty
};

// The initial values are the program's defaults.
struct VmConfig {
    WideText kernel;   // the ELF file; may be empty, but not for a launch
    WideText command;  // the kernel command line; empty: none is passed
    WideText dump;     // file for the PPM export of the framebuffer; empty: no export
    // Raw disk images: primary master and slave, secondary master and slave; empty: no disk.
    std::array<WideText, 4> ide;
    std::vector<ModuleEntry> modules;  // in the order in which the engine gets them
    std::uint32_t ram_mib = 128;       // guest memory
    std::uint32_t width = 800;         // pixels; passed to the engine only with explicit_video
    std::uint32_t height = 600;        // pixels; as for width
    std::uint32_t zoom = 2;            // factor: 1 is 100 %, 4 is 400 %
    std::uint32_t timeout_ms = 0;      // time limit of a run; 0: none
    bool explicit_video = false;       // width and height replace the size that the kernel requests
    bool headless = false;             // run the engine without windows
    bool force_no_header = false;      // accept an ELF kernel without a Multiboot header
};

// The types of pointers to the record's fields, for tables.
using TextMember = WideText VmConfig::*;
using NumberMember = std::uint32_t VmConfig::*;
using FlagMember = bool VmConfig::*;

// Calls `visit` for each field of the record that contains a path: kernel, dump, ide 0 to 3, and the path
// of each module, in this order.
template <typename Visit>
void ForEachPath(VmConfig& config, const Visit& visit) {
    visit(config.kernel);
    visit(config.dump);
    for (WideText& image : config.ide)
        visit(image);
    for (ModuleEntry& module : config.modules)
        visit(module.path);
}

// Throws if the text contains CR, LF or NUL: such a text cannot be stored in one line of a configuration
// file.
void RequireOneLine(WideView text);

// Throws with the message of the first limit that the record breaks. Does not check whether files exist.
void ValidateConfig(const VmConfig& config);
