// The engine, started as by the launcher, boots the project's kernel on the emulator.
#include <gtest/gtest.h>

#include <sys/stat.h>

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
    const WideText source = folder.Of(TEXT("new"));
    const WideText target = folder.Of(TEXT("écran.ppm"));
    WriteBytes(source, "new");
    WriteBytes(target, "old");
    for (const char* const call : {"CreateFileW", "WriteFile", "FlushFileBuffers", "MoveFileExW"}) {
        const bool is_second = call == std::string_view("CreateFileW");  // the first opens the source
        host::FailCall(call, is_second ? 2 : 1, ERROR_DISK_FULL);
        EXPECT_NE(MessageOf([&] { ReplaceByCopy(source, target); }), "") << call;
        EXPECT_EQ(ReadBytes(target), "old") << call;
        EXPECT_EQ(ListFolder(folder.path).size(), 2U) << call;
    }
    ReplaceByCopy(source, target);
    EXPECT_EQ(ReadBytes(target), "new");
}

class Machine : public testing::Test {
protected:
    void SetUp() override {
        if (!MessageOf(FindEmulator).empty())
            GTEST_SKIP() << "no emulator on this machine";
        setenv("TMPDIR", NativePath(folder.path).c_str(), 1);  // for the engine
        config.kernel = BuildFile(TEXT("machine_kernel.elf"));
        config.ram_mib = 32;
        config.timeout_ms = 60000;
        config.headless = true;
    }

    void TearDown() override {
        unsetenv("TMPDIR");
    }

    EngineEnd Run(WideView arguments, EngineRun kind = EngineRun::Real) {
        config.command = arguments;
        const EngineEnd run = RunEngine(TEXT("on_emulator\\tessarun.exe"), folder, config, kind);
        for (const WideText& name : ListFolder(folder.path))
            EXPECT_FALSE(name.starts_with(TEXT("tessarun-"))) << "temporary files are deleted";
        return run;
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
    config.timeout_ms = 0;  // none
    config.dump = picture;
    WriteBytes(picture, "an older one");
    config.explicit_video = true;
    config.width = 323;
    config.height = 200;
    const EngineEnd run = Run(TEXT(" mode=\"a, b\" code=200 "));
    EXPECT_EQ(run.exit_code, 200U);
    for (const char* const line :
         {"Écran : 320 x 200 points de 32 bits. Demandé : 323 x 200.\n", "\nChargeur : Multiboot\n",
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
        EXPECT_TRUE(run.log.ends_with("\nFin.\n" + std::string(tested.last_line))) << run.log;
        EXPECT_EQ(ReadBytes(config.dump).substr(0, 10), "P6\n640 480") << "the mode in the kernel's header";
    }
}

TEST_F(Machine, AcceptsAKernelWithoutHeaderAndReportsErrors) {
    std::string kernel = ReadBytes(config.kernel);
    kernel.replace(kernel.find("\x02\xB0\xAD\x1B"), 4, "none");
    config.kernel = folder.Of(TEXT("sans en-tête.elf"));
    WriteBytes(config.kernel, kernel);
    EXPECT_EQ(Run(TEXT("code=5")).exit_code, 1U);
    config.force_no_header = true;
    const EngineEnd run = Run(TEXT("code=5"));
    EXPECT_EQ(run.exit_code, 5U) << run.log;
    EXPECT_TRUE(run.LogContains("\nÉcran : texte\n")) << run.log;

    config.dump = folder.Of(TEXT("absent\\écran.ppm"));
    const EngineEnd without_folder = Run(TEXT(""));
    EXPECT_EQ(without_folder.exit_code, 1U);
    EXPECT_TRUE(without_folder.LogContains("\nErreur : Image de l'écran impossible : "))
        << without_folder.log;

    const EngineEnd dry = Run(TEXT("code=5"), EngineRun::Dry);
    EXPECT_EQ(dry.exit_code, 0U);
    EXPECT_TRUE(dry.log.ends_with("\nVérification réussie.\n")) << dry.log;
    unsetenv("DISPLAY");
    unsetenv("WAYLAND_DISPLAY");
    config.headless = false;
    EXPECT_TRUE(Run(TEXT(""), EngineRun::Dry)
                    .LogContains("\nErreur : Aucun affichage pour la fenêtre de la machine : "));
    config.headless = true;
    setenv("TESSARUN_QEMU", "/tmp", 1);
    const EngineEnd without_emulator = Run(TEXT(""), EngineRun::Dry);
    unsetenv("TESSARUN_QEMU");
    EXPECT_EQ(without_emulator.exit_code, 1U);
    EXPECT_TRUE(
        without_emulator.LogContains("\nErreur : Émulateur introuvable : TESSARUN_QEMU nomme /tmp\n"));

    const WideText disk = folder.Of(TEXT("disque"));
    config.ide[1] = disk;
    config.ide[3] = folder.Of(TEXT(".\\disque"));
    const struct {
        std::size_t bytes;
        mode_t mode;
        const char* message;
    } CASES[] = {
        {512, 0666, "est nommée deux fois, ou "}, {512, 0444, "en écriture.\n"}, {0, 0666, "vide.\n"}};
    for (const auto& tested : CASES) {
        std::filesystem::remove(NativePath(disk));
        WriteBytes(disk, std::string(tested.bytes, 'x'));
        chmod(NativePath(disk).c_str(), tested.mode);
        const EngineEnd refused = Run(TEXT(""));
        EXPECT_EQ(refused.exit_code, 1U);
        EXPECT_TRUE(refused.LogContains(tested.message)) << refused.log;
    }
}

}  // namespace
