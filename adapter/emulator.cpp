// Finds the emulator's program and composes its options.
#include "adapter/emulator.h"

#include <algorithm>
#include <bit>
#include <stdexcept>

#include "base/file_system.h"
#include "base/text_convert.h"

namespace {

// In the emulator's options a comma ends a value; a doubled comma is a literal one.
std::string DoubledCommas(const std::string& text) {
    std::string doubled;
    for (const char character : text)
        doubled.append(character == ',' ? 2 : 1, character);
    return doubled;
}

std::string VideoMib(const std::optional<DisplayMode>& mode) {
    const std::uint64_t bytes = mode ? std::uint64_t{mode->width} * mode->height * 4 : 0;
    return NumberText(std::max<std::uint64_t>(16, std::bit_ceil((bytes + MIB - 1) / MIB)));
}

}  // namespace

std::vector<std::string> Split(std::string_view text, char separator) {
    std::vector<std::string> parts{""};
    bool is_quoted = false;
    for (const char character : text)
        if (character == '"')
            is_quoted = !is_quoted;
        else if (character == separator && !is_quoted)
            parts.emplace_back();
        else
            parts.back() += character;
    std::erase(parts, "");
    return parts;
}

WideText FindEmulator() {
    const std::string named = Setting("TESSARUN_QEMU");
    for (const WideText& program :
         named.empty() ? UsualPrograms() : std::vector{AbsolutePath(WideFromUtf8(named))})
        if (OpenForReading(program))
            return program;
    throw std::runtime_error(named.empty() ? "Émulateur introuvable : installez QEMU (qemu-system-x86)."
                                           : "Émulateur introuvable : TESSARUN_QEMU nomme " + named);
}

std::string ProcessorOf(WideView program) {
    return program.find(TEXT("-i386")) != WideView::npos ? "qemu32" : "qemu64";
}

std::vector<std::string> EmulatorArguments(const VmConfig& config, const EmulatorSetup& setup) {
    std::vector<std::string> arguments{
        "-machine",    "pc",
        "-cpu",        ProcessorOf(setup.program),
        "-nodefaults", "-no-user-config",
        "-no-reboot",  "-no-shutdown",
        "-m",          NumberText(config.ram_mib),
        "-kernel",     setup.image,
        "-device",     "VGA,addr=2,vgamem_mb=" + VideoMib(setup.mode),
        "-display",    config.headless ? "none" : "gtk",  // the default can be a server on a network port
        "-chardev",    "socket,id=control,host=127.0.0.1,port=" + NumberText(setup.control_port),
        "-mon",        "chardev=control,mode=control",
        "-chardev",    OutputDevice(setup.program) + std::string(",id=serial"),
        "-serial",     "chardev:serial",
        "-chardev",    "ringbuf,id=exit",
        "-device",     "isa-debugcon,iobase=0xf4,chardev=exit",
    };
    for (std::size_t at = 0; at < config.ide.size(); ++at) {
        if (config.ide[at].empty())
            continue;
        arguments.emplace_back("-drive");
        arguments.push_back("file=" + DoubledCommas(EmulatorPath(setup.program, config.ide[at])) +
                            ",format=raw,if=ide,index=" + NumberText(at));
    }
    if (setup.is_stopped)
        arguments.emplace_back("-S");
    for (const std::string& option : Split(setup.user_options, ' '))
        arguments.push_back(option);
    return arguments;
}
