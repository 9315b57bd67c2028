// The engine, started as by the launcher, boots kernels on the emulator.
#include <gtest/gtest.h>

#include <fcntl.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

#include "adapter/emulator.h"
#include "adapter/files.h"
#include "cases.h"
#include "engine_end.h"
#include "platform/host/hooks/test_hooks.h"

namespace {

TEST(PictureFaults, LeaveTheOldPictureUnchanged) {
    const ScratchFolder folder;
    TemporaryFile source(folder.path, ".new");
    BootImage image;
    image.front = "new";
    source.Write(image, {}, {});
    const WideText target = folder.Of(TEXT("écran.ppm"));
    WriteBytes(target, "old");
    for (const char* const call : {"CreateFileW", "WriteFile", "FlushFileBuffers", "MoveFileExW"}) {
        const bool is_third = call == std::string_view("CreateFileW");  // two calls open the source
        host::FailCall(call, is_third ? 3 : 1, ERROR_DISK_FULL);
        EXPECT_EQ(MessageOf([&] { source.CopyTo(target); }),
                  "écriture impossible: There is not enough space on the disk.: \"" + Narrow(target) + "\"")
            << call;
        EXPECT_EQ(ReadBytes(target), "old") << call;
        EXPECT_EQ(ListFolder(folder.path).size(), 2U) << call;
    }
    source.CopyTo(target);
    EXPECT_EQ(ReadBytes(target), "new");
}

constexpr const char* NEEDS_LARGE_FILES = "shared memory: File too large";

class Machine : public testing::Test {
protected:
    void SetUp() override {
        if (!MessageOf(FindEmulator).empty())
            GTEST_SKIP() << "no emulator on this machine";
        setenv("TMPDIR", NativePath(folder.path).c_str(), 1);  // for the engine
        config.kernel = BuildFile(TEXT("demo_kernel.elf"));
        config.ram_mib = 32;
        config.timeout_ms = 60000;
        config.headless = true;
    }

    void TearDown() override {
        for (const char* const name : {"TMPDIR", "TESSARUN_QEMU", "TESSARUN_QEMU_OPTIONS"})
            unsetenv(name);
    }

    EngineEnd Run(WideView arguments, EngineRun kind = EngineRun::Real) {
        config.command = arguments;
        const EngineEnd run = RunEngine(TEXT("on_emulator\\tessarun.exe"), folder, config, kind);
        for (const WideText& name : ListFolder(folder.path))
            EXPECT_FALSE(name.starts_with(TEXT("tessarun-"))) << "temporary files are deleted";
        return run;
    }

    // A dry run and a run end with this code and these last words in the log.
    void ExpectRefusal(DWORD exit_code, const std::string& last_words) {
        for (const EngineRun kind : {EngineRun::Dry, EngineRun::Real}) {
            const EngineEnd run = Run(TEXT(""), kind);
            EXPECT_EQ(run.exit_code, exit_code) << run.log;
            EXPECT_TRUE(run.log.ends_with(last_words)) << last_words << "\n" << run.log;
        }
    }

    // Runs the engine where no file can become larger than this, as on a disk that is almost full.
    EngineEnd RunWithSmallFiles(rlim_t bytes, WideView arguments) {
        rlimit limit{};
        getrlimit(RLIMIT_FSIZE, &limit);
        const rlimit small = {bytes, limit.rlim_max};
        signal(SIGXFSZ, SIG_IGN);
        setrlimit(RLIMIT_FSIZE, &small);
        const EngineEnd run = Run(arguments);
        setrlimit(RLIMIT_FSIZE, &limit);
        return run;
    }

    // Makes an executable script the emulator.
    void UseEmulator(const std::string& script) {
        const std::filesystem::path path = NativePath(folder.Of(TEXT("émulateur")));
        WriteBytes(folder.Of(TEXT("émulateur")), script);
        std::filesystem::permissions(path, std::filesystem::perms::owner_all);
        setenv("TESSARUN_QEMU", path.c_str(), 1);
    }

    ScratchFolder folder;
    VmConfig config;
};

TEST_F(Machine, BootsAKernelWithModulesADiskAndAScreen) {
    const WideText picture = folder.Of(TEXT("écran, 1.ppm"));
    WriteBytes(folder.Of(TEXT("un, deux.bin")), std::string(5000, '\1'));
    WriteBytes(folder.Of(TEXT("trois.bin")), "");
    WriteBytes(folder.Of(TEXT("disque, a.img")), "secteur" + std::string(505, '\0'));
    config.modules = {{folder.Of(TEXT("un, deux.bin")), TEXT(" x,\"y\" é ")},
                      {folder.Of(TEXT("trois.bin")), TEXT("")}};
    config.ide[0] = folder.Of(TEXT("disque, a.img"));
    config.dump = picture;
    WriteBytes(picture, "an older one");
    config.explicit_video = true;
    config.width = 323;
    config.height = 200;
    const EngineEnd run = Run(TEXT(" mode=\"a, b\" code=200 "));
    EXPECT_EQ(run.exit_code, 200U);
    for (const char* const line :
         {"qemu-system-x86_64, processeur qemu64.\n",
          "Écran : 320 x 200 en 32 bits. Demandé : 323 x 200 en 32 bits.\n", "\nChargeur : Multiboot\n",
          "\nArguments : [ mode=\"a, b\" code=200 ]\nMémoire : 31 Mio\n",
          "\nModule 0 : 5000 octets, somme 5000, arguments [ x,\"y\" é ]\nModule 1 : 0 octets, somme 0, "
          "arguments []\n",
          "\nDisque, secteur 0 : [secteur]\nÉcran : 320 x 200 x 32\nFin.\n",
          "\nMachine arrêtée par le noyau, code 200.\n"})
        EXPECT_TRUE(run.LogContains(line)) << line << "\n" << run.log;
    const std::string image = ReadBytes(picture);
    const std::string start = "P6\n320 200\n255\n";
    ASSERT_EQ(image.substr(0, start.size()), start);
    ASSERT_EQ(image.size(), start.size() + 320 * 200 * 3);
    const auto pixel = [&](std::size_t x, std::size_t y) {
        return image.substr(start.size() + (y * 320 + x) * 3, 3);
    };
    EXPECT_EQ(pixel(0, 0) + pixel(319, 199), "\xFF\xFF\xFF\xFF\xFF\xFF") << "the frame";
    EXPECT_EQ(pixel(160, 100), "\x7F\x7F\x40");
    EXPECT_EQ(pixel(318, 1), "\xFD\x01\x40") << "red grows to the right";
}

TEST_F(Machine, EndsWithTheExitCodeOfTheKernel) {
    const struct {
        WideView arguments;
        DWORD exit_code;
        const char* last_line;
    } CASES[] = {
        {TEXT("fin=extinction"), 0, "Machine éteinte par le noyau.\n"},
        {TEXT("fin=arret"), 0, "Processeur à l'arrêt, interruptions coupées : fin de la machine.\n"},
        {TEXT("fin=faute"), 3, "Machine réinitialisée par le noyau, ou triple faute.\n"},
        {TEXT("code=3"), 3, "Machine arrêtée par le noyau, code 3.\n"},
        {TEXT("fin=boucle"), 124, "Délai de 2500 ms écoulé : machine arrêtée.\n"},
    };
    for (const auto& tested : CASES) {
        config.timeout_ms = tested.arguments == TEXT("fin=boucle") ? 2500 : 60000;
        config.dump = folder.Of(tested.arguments);
        const EngineEnd run = Run(tested.arguments);
        EXPECT_EQ(run.exit_code, tested.exit_code) << run.log;
        EXPECT_TRUE(run.log.ends_with("\nFin.\n\n" + std::string(tested.last_line))) << run.log;
        EXPECT_EQ(ReadBytes(config.dump).substr(0, 10), "P6\n640 480") << "the mode in the kernel's header";
    }
}

TEST_F(Machine, BootsKernelsOfEveryShape) {
    constexpr DWORD TEXT_SCREEN = 77, GRAPHICS = 78;
    const struct {
        WideView shape;
        WideView arguments;
        DWORD exit_code;
    } CASES[] = {
        {TEXT("plain"), TEXT(""), TEXT_SCREEN},  // the file's headers are in a segment of their own
        {TEXT("plain"), TEXT("b"), TEXT_SCREEN},
        {TEXT("plain"), TEXT("r"), 3},
        {TEXT("plain"), TEXT("6"), 0},
        {TEXT("relocatable"), TEXT(""), TEXT_SCREEN},
        {TEXT("script"), TEXT(""), TEXT_SCREEN},
        {TEXT("high_virtual"), TEXT(""), TEXT_SCREEN},
        {TEXT("high_physical"), TEXT(""), TEXT_SCREEN},
        {TEXT("addresses"), TEXT(""), TEXT_SCREEN},
        {TEXT("no_header"), TEXT(""), TEXT_SCREEN},
        {TEXT("graphics"), TEXT(""), GRAPHICS},
        {TEXT("text"), TEXT(""), TEXT_SCREEN},
    };
    for (const auto& tested : CASES) {
        config.kernel = BuildFile(TEXT("shapes\\") + WideText(tested.shape) + TEXT(".elf"));
        config.force_no_header = tested.shape == TEXT("no_header");
        const EngineEnd run = Run(tested.arguments);
        EXPECT_EQ(run.exit_code, tested.exit_code) << Narrow(tested.shape) << "\n" << run.log;
    }
    // Of a large file, only what is loaded counts.
    config.kernel = folder.Of(TEXT("large.elf"));
    WriteBytes(config.kernel, ReadBytes(BuildFile(TEXT("shapes\\plain.elf"))));
    std::filesystem::resize_file(NativePath(config.kernel), 40 << 20);
    EXPECT_EQ(Run(TEXT("")).exit_code, TEXT_SCREEN);
    setenv("TESSARUN_QEMU", "/usr/bin/qemu-system-i386", 1);
    const EngineEnd run = Run(TEXT(""));
    EXPECT_EQ(run.exit_code, TEXT_SCREEN);
    EXPECT_TRUE(run.LogContains("qemu-system-i386, processeur qemu32.\n")) << run.log;
}

TEST_F(Machine, RefusesInADryRunWhatARunRefuses) {
    config.timeout_ms = 0;  // none
    const EngineEnd dry = Run(TEXT("fin=boucle"), EngineRun::Dry);
    EXPECT_EQ(dry.exit_code, 0U);
    EXPECT_TRUE(dry.log.ends_with("\nVérification réussie.\n")) << dry.log;
    UseEmulator("#!/bin/sh\necho \"$@\"");
    EXPECT_TRUE(Run(TEXT(""), EngineRun::Dry).LogContains(" -S")) << "the processor does not start";
    EXPECT_FALSE(Run(TEXT("")).LogContains(" -S"));

    config.timeout_ms = 60000;
    UseEmulator("text");
    std::filesystem::permissions(NativePath(folder.Of(TEXT("émulateur"))),
                                 std::filesystem::perms::owner_read);
    ExpectRefusal(4, "L'émulateur s'est arrêté de lui-même, code 127.\n");
    UseEmulator("#!/bin/sh\necho reason >&2\nexit 3");
    ExpectRefusal(4, "\nreason\nL'émulateur s'est arrêté de lui-même, code 3.\n");
    UseEmulator("#!/bin/sh\nkill -9 $$");
    ExpectRefusal(4, "\nL'émulateur a été arrêté par le signal 9.\n");
    UseEmulator("#!/bin/sh\nexec sleep 60");
    config.timeout_ms = 400;
    ExpectRefusal(124, "\nDélai de 400 ms écoulé : machine arrêtée.\n");
    config.timeout_ms = 60000;
    setenv("TESSARUN_QEMU", "/tmp", 1);
    ExpectRefusal(1, "\nErreur : Émulateur introuvable : TESSARUN_QEMU nomme /tmp\n");
    unsetenv("TESSARUN_QEMU");

    unsetenv("DISPLAY");
    unsetenv("WAYLAND_DISPLAY");
    config.headless = false;
    ExpectRefusal(4, "\nSi la fenêtre de la machine ne peut pas s'ouvrir ici, cochez « Sans fenêtres ».\n");
    config.headless = true;
    setenv("TMPDIR", "/nowhere", 1);
    EXPECT_TRUE(
        Run(TEXT(""), EngineRun::Dry).LogContains("Erreur : écriture impossible: The system cannot find"));
    setenv("TMPDIR", NativePath(folder.path).c_str(), 1);
    for (const WideText& unusable :
         {folder.Of(TEXT("absent\\écran.ppm")), WideText(TEXT("C:\\proc\\écran.ppm"))}) {
        config.dump = unusable;
        ExpectRefusal(1, Narrow(unusable) + "\"\n");
    }
    std::string kernel = ReadBytes(config.kernel);
    kernel.replace(kernel.find("\x02\xB0\xAD\x1B"), 4, "none");
    config.kernel = folder.Of(TEXT("sans en-tête.elf"));
    WriteBytes(config.kernel, kernel);
    ExpectRefusal(1, "aucun en-tête Multiboot valide dans les 8192 premiers octets.\n");
}

TEST_F(Machine, ProtectsItsInputs) {
    const WideText disk = folder.Of(TEXT("disque"));
    WriteBytes(disk, std::string(512, 'x'));
    std::filesystem::create_hard_link(NativePath(disk), NativePath(folder.Of(TEXT("lien"))));
    config.ide[1] = disk;
    for (const WideText& other : {folder.Of(TEXT(".\\disque")), folder.Of(TEXT("lien"))}) {
        config.ide[3] = other;
        ExpectRefusal(1, " : ce fichier est nommé deux fois, ou un autre programme l'utilise.\n");
    }
    config.ide[3].clear();
    const WideText module = folder.Of(TEXT("module"));
    WriteBytes(module, "m");
    config.modules = {{module, TEXT("")}};
    config.kernel = folder.Of(TEXT("noyau"));
    WriteBytes(config.kernel, ReadBytes(BuildFile(TEXT("demo_kernel.elf"))));
    for (const WideText& input : {folder.Of(TEXT("lien")), module, config.kernel}) {
        config.dump = input;
        const std::string content = ReadBytes(input);
        ExpectRefusal(1, " : ce fichier est nommé deux fois, ou un autre programme l'utilise.\n");
        EXPECT_EQ(ReadBytes(input), content);
    }
    config.dump.clear();
    // A machine that runs locks its disks in this way.
    const int held = open(NativePath(disk).c_str(), O_RDWR | O_CLOEXEC);
    struct flock lock = {};
    lock.l_type = F_WRLCK;
    ASSERT_EQ(fcntl(held, F_OFD_SETLK, &lock), 0);
    ExpectRefusal(4, "L'émulateur s'est arrêté de lui-même, code 1.\n");
    close(held);
    std::filesystem::resize_file(NativePath(disk), (std::uintmax_t{1} << 37) + 512);
    ExpectRefusal(1, "l'image de disque dépasse 128 Gio.\n");
    std::filesystem::resize_file(NativePath(disk), 512);
    chmod(NativePath(disk).c_str(), 0444);
    ExpectRefusal(1, "écriture impossible: Access is denied.: \"" + Narrow(disk) + "\"\n");
}

// An emulator that connects and answers; the lines that it sends at first, and at each look at the exit port
// and the registers, follow.
const std::string ANSWERING_EMULATOR = R"(#!/bin/bash
[[ $* =~ port=([0-9]+) ]]
exec 3<>/dev/tcp/127.0.0.1/${BASH_REMATCH[1]}
echo '{"QMP": {}}' >&3
read -r -u 3
echo '{"return": {}, "id": "qmp_capabilities"}' >&3
)";

TEST_F(Machine, WritesNoPictureOfAClosedWindow) {
    UseEmulator(ANSWERING_EMULATOR + R"(
echo '{"event": "SHUTDOWN", "data": {"reason": "host-ui"}}' >&3
while read -r -u 3 line && [[ $line != *quit* ]]; do
    [[ $line != *ringbuf* ]] || echo '{"return": "", "id": "ringbuf-read"}' >&3
done
)");
    config.dump = folder.Of(TEXT("écran.ppm"));
    WriteBytes(config.dump, "old");
    const EngineEnd run = Run(TEXT(""));
    EXPECT_EQ(run.exit_code, 0U);
    EXPECT_TRUE(
        run.log.ends_with("\nFenêtre fermée : machine arrêtée.\n"
                          "Aucune image de l'écran n'est écrite : la machine n'existe plus.\n"))
        << run.log;
    EXPECT_EQ(ReadBytes(config.dump), "old");
}

TEST_F(Machine, PrefersTheExitCodeOfAKernelThatHaltsRightAfterIt) {
    UseEmulator(ANSWERING_EMULATOR + R"(
bytes=
while read -r -u 3 line && [[ $line != *quit* ]]; do
    [[ $line != *ringbuf* ]] || echo "{\"return\": \"$bytes\", \"id\": \"ringbuf-read\"}" >&3
    [[ $line != *registers* ]] || echo '{"return": "EIP=5 EFL=46 HLT=1 ", "id": "human-monitor-command"}' >&3
    [[ $line != *registers* ]] || bytes=Bw==
done
)");
    EXPECT_EQ(Run(TEXT("")).exit_code, 7U);
}

TEST_F(Machine, ContinuesWhenItsLogIsFull) {
    config.kernel = BuildFile(TEXT("shapes\\plain.elf"));
    const EngineEnd run = RunWithSmallFiles(40000, TEXT("f"));
    if (run.LogContains(NEEDS_LARGE_FILES))
        GTEST_SKIP() << "QEMU 10 does not start with this limit";
    EXPECT_EQ(run.exit_code, 1U);
    EXPECT_EQ(run.log.size(), 40000U);
}

TEST_F(Machine, KeepsTheOldPictureWhenTheNewOneCannotBeWritten) {
    config.dump = folder.Of(TEXT("écran.ppm"));
    WriteBytes(config.dump, "old");
    for (const auto& [arguments, exit_code] :
         {std::pair(WideView(TEXT("code=5")), 5U), std::pair(WideView(TEXT("fin=arret")), 1U)}) {
        const EngineEnd run = RunWithSmallFiles(100000, arguments);
        if (run.LogContains(NEEDS_LARGE_FILES))
            GTEST_SKIP() << "QEMU 10 does not start with this limit";
        EXPECT_EQ(run.exit_code, exit_code) << "the kernel's, unless it reports success";
        EXPECT_TRUE(run.LogContains("\nErreur : Image de l'écran impossible : ")) << run.log;
        EXPECT_EQ(ReadBytes(config.dump), "old");
    }
}

TEST_F(Machine, DeletesTheFilesOfAnEngineThatWasKilled) {
    const pid_t ended = fork();
    if (ended == 0)
        _exit(0);
    waitpid(ended, nullptr, 0);
    const WideText abandoned = folder.Of(TEXT("tessarun-") + Wide(std::to_string(ended)) + TEXT("-1.elf"));
    const WideText in_use = folder.Of(TEXT("tessarun-") + Wide(std::to_string(getpid())) + TEXT("-1.elf"));
    WriteBytes(abandoned, "");
    WriteBytes(in_use, "");
    RunEngine(TEXT("on_emulator\\tessarun.exe"), folder, config, EngineRun::Dry);
    EXPECT_FALSE(Exists(abandoned));
    EXPECT_TRUE(Exists(in_use));
}

TEST_F(Machine, RefusesAnArgumentThatIsNotUtf8) {
    const std::string engine = NativePath(BuildFile(TEXT("on_emulator\\tessarun.exe")));
    EXPECT_EQ(WEXITSTATUS(std::system(("'" + engine + "' \xE9 2>/dev/null").c_str())), 2);
}

TEST_F(Machine, AddsTheUsersOptionsToTheEmulators) {
    const std::string options = "-D \"" + NativePath(folder.Of(TEXT("une trace.log"))).native() + "\" -d int";
    setenv("TESSARUN_QEMU_OPTIONS", options.c_str(), 1);
    const EngineEnd run = Run(TEXT("code=5"));
    EXPECT_EQ(run.exit_code, 5U);
    EXPECT_TRUE(run.LogContains("\nOptions de TESSARUN_QEMU_OPTIONS en vigueur : " + options + "\n"))
        << run.log;
    EXPECT_TRUE(Exists(folder.Of(TEXT("une trace.log"))));
    setenv("TESSARUN_QEMU_OPTIONS", "-nothing", 1);
    ExpectRefusal(4, "L'émulateur s'est arrêté de lui-même, code 1.\n");
}

}  // namespace
