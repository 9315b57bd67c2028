// The file that the emulator boots: the kernel's segments unchanged and, on the pages behind them, one
// segment of our own with a stub, the kernel's arguments and the modules. The emulator's own loader does the
// rest. Plain bytes.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// What the kernel gets in place of the text screen: a framebuffer of 32 bits a pixel.
struct DisplayMode {
    std::uint32_t width;  // pixels; the display has multiples of 8 only
    std::uint32_t height;
};

struct BootModule {
    std::uint64_t bytes;
    std::string arguments;
};

struct BootRequest {
    std::string arguments;  // the kernel's
    std::vector<BootModule> modules;
    std::optional<DisplayMode> mode;  // instead of what the kernel's header asks for
    std::uint64_t memory_bytes = 0;   // of the machine
};

struct BootImage {
    std::string front;                      // the file up to the first module
    std::optional<DisplayMode> asked_mode;  // as it was asked for; none: the text screen
    std::optional<DisplayMode> mode;        // as the kernel gets it
};

// Makes the image of a 32-bit ELF kernel, which is taken to be whole. Behind `front` the file goes on with
// the modules, each followed by PaddingBehind it in zeros. Throws for a kernel that cannot be loaded, for one
// that asks its loader for what is unknown here, and where kernel and modules do not fit into the memory.
BootImage ComposeBootImage(std::string_view kernel, const BootRequest& request);

// The bytes up to the next page.
std::uint32_t PaddingBehind(std::uint64_t bytes);
