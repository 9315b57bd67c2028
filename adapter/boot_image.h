// Composes the file that the emulator boots, in memory. The file contains the kernel's segments unchanged
// and, on the pages after them, one added segment with a stub, the kernel's arguments and the modules. The
// emulator's own loader loads the file.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "config/vm_config.h"

inline constexpr std::uint64_t MIB = 1 << 20;

// A framebuffer instead of the text screen.
struct DisplayMode {
    std::uint32_t width;  // pixels
    std::uint32_t height;
    std::uint32_t bits = 32;  // per pixel

    bool operator==(const DisplayMode&) const = default;
};

struct BootImage {
    std::string front;                      // the file up to the first module
    std::optional<DisplayMode> asked_mode;  // the requested mode; none: the text screen
    std::optional<DisplayMode> mode;        // the mode that is set: 32 bits, its width a multiple of 8
};

// Composes the image of an i386 ELF kernel with the arguments and the modules of the configuration. Without
// explicit_video the kernel's header gives the display mode. `module_bytes` are the sizes of the modules. The
// file consists of `front` and then of each module's content, followed by PaddingBehind(its size) zero bytes.
// Throws when the kernel cannot be loaded, when it requires a loader feature that is not supported, and when
// the kernel and its modules do not fit into the machine's memory.
BootImage ComposeBootImage(std::string_view kernel, const VmConfig& config,
                           const std::vector<std::uint64_t>& module_bytes);

// The number of bytes from this size to the next multiple of a page, 0 to 4095.
std::uint32_t PaddingBehind(std::uint64_t bytes);
