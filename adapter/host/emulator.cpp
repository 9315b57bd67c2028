// The emulator on Linux.
#include "adapter/emulator.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <stdexcept>

#include "adapter/files.h"
#include "base/text_convert.h"
#include "platform/host/system/native.h"

std::string Setting(const char* name) {
    const char* const value = std::getenv(name);
    return value == nullptr ? std::string() : value;
}

std::vector<WideText> UsualPrograms() {
    std::vector<WideText> programs;
    for (const std::string& folder : Split(Setting("PATH"), ':'))
        for (const char* const name : {"/qemu-system-x86_64", "/qemu-system-i386"})
            if (folder.starts_with('/'))
                programs.push_back(host::FromNativePath(folder + name));
    return programs;
}

WideText TemporaryFolder() {
    const std::string folder = Setting("TMPDIR");
    return host::FromNativePath(folder.starts_with('/') ? folder : "/tmp");
}

void DeleteAbandonedFiles() {
    std::error_code ignored;
    const std::filesystem::directory_iterator folder(EmulatorPath({}, TemporaryFolder()), ignored);
    for (const std::filesystem::directory_entry& entry : folder) {
        const std::string name = entry.path().filename();
        const int creator =
            name.starts_with(TEMPORARY_PREFIX) ? std::atoi(name.substr(TEMPORARY_PREFIX.size()).c_str()) : 0;
        if (creator > 0 && kill(creator, 0) != 0 && errno == ESRCH)
            std::filesystem::remove(entry.path(), ignored);
    }
}

std::string EmulatorPath(const WideText&, const WideText& path) {
    if (const auto native = host::ToNativePath(path.c_str()))
        return *native;
    throw std::runtime_error("Chemin incorrect : " + Utf8FromWide(path));
}

const char* OutputDevice(const WideText&) {
    return "stdio,signal=off";
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
        dup2(open("/dev/null", O_RDONLY), STDIN_FILENO);  // not the keyboard of a terminal
        // The parent may have ended before the child requested the signal; then none is sent.
        if (getppid() == parent && chdir(folder.c_str()) == 0)
            execv(path.c_str(), pointers.data());
        std::cerr << "Ce n'est pas un programme : " << path << std::endl;
        _exit(127);
    }
    process_identifier_ = child;
}

Emulator::~Emulator() {
    if (End())
        return;
    kill(process_identifier_, SIGKILL);
    waitpid(process_identifier_, nullptr, 0);
}

std::optional<std::int64_t> Emulator::End() {
    int status = 0;
    if (!end_ && waitpid(process_identifier_, &status, WNOHANG) != 0)
        end_ = WIFSIGNALED(status) ? -WTERMSIG(status) : WEXITSTATUS(status);
    return end_;
}
