// The emulator's options, one group after the other.
#include "adapter/emulator_arguments.h"

#include <algorithm>
#include <bit>

#include "base/text_convert.h"

namespace {

constexpr std::uint64_t MIB = 1 << 20;
constexpr std::uint64_t VIDEO_MIB_MIN = 16;

std::string Channel(const char* name, std::uint16_t port) {
    return std::string("socket,id=") + name + ",host=127.0.0.1,port=" + NumberText(port);
}

// A comma ends a value of the emulator's options; two stand for one.
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

std::vector<std::string> EmulatorArguments(const MachineRequest& machine, const ChannelPorts& ports) {
    std::vector<std::string> arguments{
        "-machine",    "pc,accel=tcg",
        "-nodefaults", "-no-user-config",
        "-no-reboot",  "-no-shutdown",
        "-m",          NumberText(machine.ram_mib),
        "-kernel",     machine.image,
        "-device",     "VGA,vgamem_mb=" + VideoMib(machine.mode),
        "-display",    machine.has_window ? "gtk" : "none",  // without it: a network port
        "-chardev",    Channel("control", ports.control),
        "-mon",        "chardev=control,mode=control",
        "-chardev",    Channel("serial", ports.serial),
        "-serial",     "chardev:serial",
        "-chardev",    Channel("exit", ports.exit_code),
        "-device",     "isa-debugcon,iobase=0xf4,chardev=exit",
    };
    for (std::size_t at = 0; at < machine.disks.size(); ++at) {
        if (machine.disks[at].empty())
            continue;
        arguments.emplace_back("-drive");
        arguments.push_back("file=" + DoubledCommas(machine.disks[at]) +
                            ",format=raw,if=ide,index=" + NumberText(at));
    }
    return arguments;
}
