// An engine on a general emulator: reads the launcher's command line and runs the kernel on the emulator.
//
// Exit codes: the byte that the kernel writes to port 0xF4; 0 for a successful dry run, for a machine that
// was switched off or halted with interrupts off, and for a closed window; 1 for a failed check or step; 2
// for a command line that the launcher would not write; 3 for a reset or a triple fault; 4 for an emulator
// that ended by itself or did not answer at its start; 124 for the time limit.
#include <stdexcept>
#include <utility>

#include "adapter/emulator.h"
#include "adapter/engine_checks.h"
#include "adapter/engine_main.h"
#include "adapter/engine_output.h"
#include "adapter/engine_request.h"
#include "adapter/machine.h"
#include "adapter/sized_file.h"
#include "base/file_system.h"
#include "base/text_convert.h"

namespace {

// Refuses disk images that the emulator cannot use: an empty image would be a drive without a medium, an
// image must be writable, and one image cannot be attached to two drives. All images are open at the same
// time, so the second open of one file fails even when its two paths are different.
void CheckDisks(const VmConfig& config) {
    std::vector<OwnedHandle> held;
    for (const WideText& path : config.ide) {
        if (path.empty())
            continue;
        OwnedHandle file(CreateFileW(path.c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ, nullptr,
                                     OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
        const DWORD failure = GetLastError();
        if (!file)
            throw std::runtime_error(
                Utf8FromWide(path) +
                (failure == ERROR_SHARING_VIOLATION
                     ? " : l'image de disque est nommée deux fois, ou un autre programme l'utilise."
                     : " : l'image de disque est protégée en écriture."));
        if (FileSize(file.Get()) == 0)
            throw std::runtime_error(Utf8FromWide(path) + " : l'image de disque est vide.");
        held.push_back(std::move(file));
    }
}

BootRequest RequestOf(const VmConfig& config) {
    BootRequest request;
    request.arguments = Utf8FromWide(config.command);
    for (const ModuleEntry& module : config.modules)
        request.modules.push_back({SizedFile(module.path).Bytes(), Utf8FromWide(module.command)});
    if (config.explicit_video)
        request.mode = DisplayMode{config.width, config.height};
    request.memory_bytes = config.ram_mib * MIB;
    return request;
}

BootImage ImageOf(const VmConfig& config, const BootRequest& request) {
    const SizedFile kernel(config.kernel);
    if (kernel.Bytes() > request.memory_bytes)
        throw std::runtime_error(Utf8FromWide(config.kernel) + " : le noyau ne tient pas dans la mémoire.");
    try {
        return ComposeBootImage(kernel.Read(0, kernel.Bytes()), request);
    } catch (const std::runtime_error& error) {
        throw std::runtime_error(Utf8FromWide(config.kernel) + " : " + error.what());
    }
}

std::string ModeText(const DisplayMode& mode) {
    return NumberText(mode.width) + " x " + NumberText(mode.height);
}

void PrintMode(const BootImage& image) {
    if (!image.mode)
        return;
    PrintLine("Écran : " + ModeText(*image.mode) + " points de 32 bits." +
              (image.mode->width == image.asked_mode->width
                   ? ""
                   : " Demandé : " + ModeText(*image.asked_mode) + "."));
}

std::uint32_t CheckAndRun(const EngineRequest& request) {
    const VmConfig& config = request.config;
    CheckFiles(config);
    CheckDisks(config);
    const BootRequest boot = RequestOf(config);
    const BootImage image = ImageOf(config, boot);
    const WideText emulator = FindEmulator();
    PrintLine("Émulateur : " + Utf8FromWide(emulator));
    PrintMode(image);
    if (!config.headless && !HasDisplay())
        throw std::runtime_error("Aucun affichage pour la fenêtre de la machine : cochez « Sans fenêtres ».");
    if (request.dry_run) {
        PrintLine("Vérification réussie.");
        return SUCCESS_EXIT_CODE;
    }
    return RunMachine(emulator, config, image, boot);
}

void Run(const std::vector<WideText>& arguments, std::uint32_t& exit_code) {
    exit_code = USAGE_EXIT_CODE;
    const EngineRequest request = ParseEngineArguments(arguments);
    exit_code = FAILURE_EXIT_CODE;
    exit_code = CheckAndRun(request);
}

}  // namespace

extern "C" int wmain(int argc, WCHAR** argv) {
    RunEngineProcess(argc, argv, Run);
}
