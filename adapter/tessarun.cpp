// An engine on a general emulator: reads the launcher's command line and runs the kernel on the emulator.
//
// Exit codes: the byte that the kernel writes to port 0xF4; 0 for a successful dry run, for a machine that
// was switched off or halted with interrupts off, and for a closed window; 1 for a failed check or step; 2
// for an incorrect command line; 3 for a reset or a triple fault; 4 for an emulator that ended by itself or
// does not answer; 124 for the time limit.
#include <stdexcept>

#include "adapter/emulator.h"
#include "adapter/engine_checks.h"
#include "adapter/engine_process.h"
#include "adapter/files.h"
#include "adapter/machine.h"
#include "base/text_convert.h"

namespace {

constexpr std::uint64_t KERNEL_BYTES_MAX = 1024 * MIB;  // the file is read as a whole

BootImage ImageOf(const VmConfig& config, const std::vector<std::uint64_t>& module_bytes) {
    const InputFile kernel = OpenInput(config.kernel);
    try {
        if (kernel.bytes > KERNEL_BYTES_MAX)
            throw std::runtime_error("le fichier du noyau dépasse 1 Gio.");
        return ComposeBootImage(ReadInput(kernel, 0, kernel.bytes), config, module_bytes);
    } catch (const std::runtime_error& error) {
        throw std::runtime_error(Utf8FromWide(config.kernel) + " : " + error.what());
    }
}

std::string ModeText(const DisplayMode& mode) {
    return NumberText(mode.width) + " x " + NumberText(mode.height) + " points de " + NumberText(mode.bits) +
           " bits.";
}

void Run(const std::vector<WideText>& arguments, std::uint32_t& exit_code) {
    exit_code = USAGE_EXIT_CODE;
    const EngineRequest request = ParseEngineArguments(arguments);
    exit_code = FAILURE_EXIT_CODE;
    const std::vector<std::uint64_t> module_bytes = CheckFiles(request.config);
    CheckWrittenFiles(request.config);
    const BootImage image = ImageOf(request.config, module_bytes);
    const WideText program = FindEmulator();
    EmulatorSetup setup;
    setup.processor = ProcessorOf(program);
    setup.user_options = Setting("TESSARUN_QEMU_OPTIONS");
    PrintLine("Émulateur : " + Utf8FromWide(program) + ", processeur " + setup.processor + ".");
    if (!setup.user_options.empty())
        PrintLine("Options de TESSARUN_QEMU_OPTIONS en vigueur : " + setup.user_options);
    if (image.mode)
        PrintLine("Écran : " + ModeText(*image.mode) +
                  (image.mode == image.asked_mode ? "" : " Demandé : " + ModeText(*image.asked_mode)));
    RunMachine(program, request, image, module_bytes, setup, exit_code);
}

}  // namespace

extern "C" int wmain(int argc, WCHAR** argv) {
    RunEngineProcess(argc, argv, Run);
}
