// Composes the emulator's options.
#include "adapter/emulator_arguments.h"

#include <algorithm>
#include <bit>

#include "base/text_convert.h"

namespace {

constexpr std::uint64_t VIDEO_MIB_MIN = 16;

std::string Channel(const char* name, std::uint16_t port) {
    return std::string("socket,id=") + name + ",host=127.0.0.1,port=" + NumberText(port);
}

// In the emulator's options a comma ends a value; a doubled comma is a literal one.
std::string DoubledCommas(const std::string& text) {
    std::string doubled;
    for (const char character : text)
        doubled.append(character == ',' ? 2 : 1, character);
    return doubled;
}

std::string VideoMib(const std::optional<DisplayMode>& mode) {
    const std::uint64_t bytes = mode ? std::uint64_t{mode->width} * mode->height * 4 : 0;
    return NumberText(std::max(VIDEO_MIB_MIN, std::bit_ceil((bytes + MIB - 1) / MIB)));
}

}  // namespace

std::vector<std::string> EmulatorArguments(const VmConfig& config, const std::string& image,
                                           const DiskPaths& disks, const std::optional<DisplayMode>& mode,
                                           const ChannelPorts& ports) {
    std::vector<std::string> arguments{
        "-machine",    "pc,accel=tcg",
        "-nodefaults", "-no-user-config",
        "-no-reboot",  "-no-shutdown",
        "-m",          NumberText(config.ram_mib),
        "-kernel",     image,
        "-device",     "VGA,vgamem_mb=" + VideoMib(mode),
        "-display",    config.headless ? "none" : "gtk",  // the default can be a server on a network port
        "-chardev",    Channel("control", ports.control),
        "-mon",        "chardev=control,mode=control",
        "-chardev",    Channel("serial", ports.serial),
        "-serial",     "chardev:serial",
        "-chardev",    Channel("exit", ports.exit_port),
        "-device",     "isa-debugcon,iobase=0xf4,chardev=exit",
    };
    for (std::size_t at = 0; at < disks.size(); ++at) {
        if (disks[at].empty())
            continue;
        arguments.emplace_back("-drive");
        arguments.push_back("file=" + DoubledCommas(disks[at]) +
                            ",format=raw,if=ide,index=" + NumberText(at));
    }
    return arguments;
}
