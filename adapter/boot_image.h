// Composes the file that the emulator boots, in memory. The file contains the kernel's segments unchanged
// and, on the pages after them, one added segment with a stub, the kernel's arguments and the modules. The
// emulator's own loader loads the file.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

inline constexpr std::uint64_t MIB = 1 << 20;

// A framebuffer of 32 bits a pixel instead of the text screen.
struct DisplayMode {
    std::uint32_t width;  // pixels
    std::uint32_t height;
};

struct BootModule {
    std::uint64_t bytes;
    std::string arguments;
};

struct BootRequest {
    std::string arguments;  // of the kernel
    std::vector<BootModule> modules;
    std::optional<DisplayMode> mode;  // overrides the mode that the kernel's header requests
    std::uint64_t memory_bytes = 0;   // the size of the machine's memory
};

struct BootImage {
    std::string front;                      // the file up to the first module
    std::optional<DisplayMode> asked_mode;  // the requested mode; none: the text screen
    std::optional<DisplayMode> mode;        // the mode that is set; its width is a multiple of 8
};

// Composes the image of a kernel that CheckKernelImage accepts. The file consists of `front` and then of each
// module's content, followed by PaddingBehind(its size) zero bytes. Throws when the kernel cannot be loaded,
// when it requires a loader feature that is not supported, and when the kernel and its modules do not fit
// into the machine's memory.
BootImage ComposeBootImage(std::string_view kernel, const BootRequest& request);

// The number of bytes from this size to the next multiple of a page, 0 to 4095.
std::uint32_t PaddingBehind(std::uint64_t bytes);
