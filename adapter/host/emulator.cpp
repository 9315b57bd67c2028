// The emulator on Linux.
#include "adapter/emulator.h"

#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <stdexcept>
#include <string_view>

#include "base/path_ops.h"
#include "base/text_convert.h"
#include "platform/host/system/native.h"

namespace {

std::string Setting(const char* name) {
    const char* const value = std::getenv(name);
    return value == nullptr ? std::string() : value;
}

WideText WindowsPath(const std::string& native) {
    return NormalPath(TEXT("C:") + WideFromUtf8(native));
}

bool IsProgram(const std::string& path) {
    std::error_code unknown;
    return path.starts_with('/') && std::filesystem::is_regular_file(path, unknown) &&
           access(path.c_str(), X_OK) == 0;
}

}  // namespace

WideText FindEmulator() {
    const std::string named = Setting("TESSARUN_QEMU");
    if (IsProgram(named))
        return WindowsPath(named);
    if (!named.empty())
        throw std::runtime_error("Émulateur introuvable : TESSARUN_QEMU nomme " + named);
    const std::string folders = Setting("PATH");
    for (std::string_view left = folders; !left.empty();) {
        const std::string folder(left.substr(0, left.find(':')));
        left.remove_prefix(std::min(folder.size() + 1, left.size()));
        for (const char* const name : {"/qemu-system-i386", "/qemu-system-x86_64"})
            if (IsProgram(folder + name))
                return WindowsPath(folder + name);
    }
    throw std::runtime_error("Émulateur introuvable : installez le paquet qemu-system-x86.");
}

WideText TemporaryFolder() {
    const std::string folder = Setting("TMPDIR");
    return WindowsPath(folder.starts_with('/') ? folder : "/tmp");
}

std::string EmulatorPath(const WideText&, const WideText& path) {
    if (const auto native = host::ToNativePath(path.c_str()))
        return *native;
    throw std::runtime_error("Chemin incorrect : " + Utf8FromWide(path));
}

bool HasDisplay() {
    return !Setting("DISPLAY").empty() || !Setting("WAYLAND_DISPLAY").empty();
}

Emulator::Emulator(const WideText& program, const std::vector<std::string>& arguments, std::uint32_t zoom) {
    std::string path = EmulatorPath(program, program);
    std::vector<std::string> texts = arguments;
    std::vector<char*> pointers{path.data()};
    for (std::string& text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    const std::string folder = EmulatorPath(program, TemporaryFolder());
    setenv("GDK_SCALE", NumberText(zoom).c_str(), 1);
    const pid_t parent = getpid();
    const pid_t child = fork();
    if (child < 0)
        throw std::runtime_error("Lancement de l'émulateur impossible.");
    if (child == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        // The parent may have ended before the child requested the signal; then none is sent.
        if (getppid() == parent && chdir(folder.c_str()) == 0)
            execv(path.c_str(), pointers.data());
        std::cerr << "Ce n'est pas un programme : " << path << std::endl;
        _exit(127);
    }
    process_identifier_ = child;
}

Emulator::~Emulator() {
    if (HasEnded())
        return;
    kill(process_identifier_, SIGKILL);
    waitpid(process_identifier_, nullptr, 0);
}

bool Emulator::HasEnded() {
    if (process_identifier_ != 0 && waitpid(process_identifier_, nullptr, WNOHANG) != 0)
        process_identifier_ = 0;
    return process_identifier_ == 0;
}
