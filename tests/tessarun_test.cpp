// The stand-in engine: its command line, and runs started as by the launcher.
#include <gtest/gtest.h>

#include <array>
#include <set>

#include "adapter/engine_checks.h"
#include "adapter/engine_process.h"
#include "base/owned_handle.h"
#include "cases.h"
#include "demo/tessarun_machine.h"
#include "demo/tessarun_script.h"
#include "engine_end.h"
#include "launch/engine_command.h"

namespace {

// Splits a text at bars.
std::vector<WideText> Split(std::string_view text) {
    std::vector<WideText> parts{WideText()};
    for (const WCHAR character : Wide(text))
        if (character == TEXT('|'))
            parts.emplace_back();
        else
            parts.back() += character;
    return parts;
}

// Runs the stand-in with the build's kernel, unless the record contains another one.
EngineEnd RunStandIn(const ScratchFolder& folder, VmConfig config, EngineRun run) {
    if (config.kernel.empty())
        config.kernel = BuildFile(TEXT("demo_kernel.elf"));
    return RunEngine(TEXT("tessarun.exe"), folder, config, run);
}

TEST(Tessarun, StoresEachValueOfTheCommandLineInItsField) {
    const EngineRequest request = ParseEngineArguments(
        Split("k.elf|--ram|256|--zoom|1|--timeout|60000|--cmdline|--dry-run|--dump-fb|d.ppm|--fb|1024|768|"
              "--headless|--force-no-header|--ide-primary-master|0|--ide-primary-slave|1|"
              "--ide-secondary-master|2|--ide-secondary-slave|3|--module-args|a|x y|--module-args|b|"));
    const VmConfig& config = request.config;
    EXPECT_FALSE(request.dry_run) << "the value of --cmdline is not an option";
    EXPECT_EQ(config.command, TEXT("--dry-run"));
    EXPECT_EQ(config.kernel + config.dump, TEXT("k.elfd.ppm"));
    EXPECT_EQ(config.ide[0] + config.ide[1] + config.ide[2] + config.ide[3], TEXT("0123"));
    EXPECT_EQ((std::array{config.ram_mib, config.zoom, config.timeout_ms, config.width, config.height}),
              (std::array<std::uint32_t, 5>{256, 1, 60000, 1024, 768}));
    EXPECT_TRUE(config.explicit_video && config.headless && config.force_no_header);
    ASSERT_EQ(config.modules.size(), 2U);
    EXPECT_EQ(config.modules[0].path + config.modules[0].command, TEXT("ax y"));
    EXPECT_EQ(config.modules[1].path + config.modules[1].command, TEXT("b"));
    EXPECT_TRUE(ParseEngineArguments(BuildEngineArguments(config, true)).dry_run);
}

TEST(Tessarun, RefusesAnIncorrectCommandLine) {
    const struct {
        std::string arguments;
        const char* message;
    } CASES[] = {
        {"k|--timeout|5|--dry-run|--ram|16", ""},  // by hand: any order, not all
        {"--ram|16", "Noyau manquant."},
        {"k|--ram", "Valeur manquante : --ram"},
        {"k|--fb|1", "Valeur manquante : --fb"},
        {"k|--ram|016", "Nombre incorrect : 016"},
        {"k|--ram|15", "RAM : choisir entre 16 et 2048 Mio."},
        {"k|--fb|8192|8193", "Résolution : choisir des dimensions entre 1 et 8192 pixels."},
        {"k|--dry-run=1", "Option inconnue : --dry-run=1"},
        {"k|--module-args||", "Le fichier d'un module est vide."},
    };
    for (const auto& refused : CASES) {
        EXPECT_EQ(MessageOf([&] { ParseEngineArguments(Split(refused.arguments)); }), refused.message)
            << refused.arguments;
    }
}

TEST(Tessarun, PrintsItsArgumentsAndInheritedHandlesAndSimulatesAMachine) {
    const ScratchFolder folder;
    SECURITY_ATTRIBUTES inherit = {sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
    const OwnedHandle other(CreateFileW(folder.Of(TEXT("autre")).c_str(), GENERIC_WRITE,
                                        FILE_SHARE_READ | FILE_SHARE_WRITE, &inherit, CREATE_ALWAYS,
                                        FILE_ATTRIBUTE_NORMAL, nullptr));
    VmConfig config;
    config.command = TEXT("\"é\" demo.lignes=2 demo.octets=100 demo.invalide demo.texte=bonjour demo.code=7");
    const EngineEnd end = RunStandIn(folder, config, EngineRun::Real);
    EXPECT_EQ(end.exit_code, 7U);
    EXPECT_EQ(end.log.find("Moteur de démonstration"), 0U) << end.log;
    EXPECT_TRUE(end.LogContains("\n--cmdline\n" + Narrow(config.command) + "\n"));
    EXPECT_TRUE(end.LogContains("\nRépertoire de travail : " + Narrow(folder.path) + "\n")) << end.log;
    EXPECT_TRUE(end.LogContains("Machine démarrée.\nbonjour\n" + std::string(63, '.') + "\n" +
                                std::string(36, '.') +
                                "\xFF\nLigne 1 sur 2.\nLigne 2 sur 2.\nMachine arrêtée, code 7.\n"))
        << end.log;
    std::set<std::string> inherited;
    const std::string mark = "Handle hérité : ";
    for (std::size_t at = end.log.find(mark); at != std::string::npos; at = end.log.find(mark, at + 1)) {
        const std::string line = end.log.substr(at, end.log.find('\n', at) - at);
        inherited.insert(line.substr(line.find(' ', mark.size()) + 1));
    }
    EXPECT_EQ(inherited.size(), 2U) << "the log and the standard input: " << end.log;
}

TEST(Tessarun, ReturnsTheExitCodeOfItsResult) {
    const ScratchFolder folder;
    WriteBytes(folder.Of(TEXT("secteurs")), std::string(1024, '\0'));
    WriteBytes(folder.Of(TEXT("reste")), std::string(1023, '\0'));
    WriteBytes(folder.Of(TEXT("vide")), "");
    MakeFolder(folder.Of(TEXT("dossier")));
    std::string kernel = ReadBytes(BuildFile(TEXT("demo_kernel.elf")));
    const std::string second_header("\xD6\x50\x52\xE8\0\0\0\0\x10\0\0\0\x1A\xAF\xAD\x17", 16);
    kernel.replace(kernel.find("\x02\xB0\xAD\x1B"), 16, second_header);
    WriteBytes(folder.Of(TEXT("deux")), kernel);
    const struct {
        const char* kernel;
        const char* command;
        const char* disk;
        const char* module;
        std::uint32_t limit_ms;
        DWORD dry_code;
        DWORD run_code;
        const char* last_line;  // of the run
    } CASES[] = {
        {"", "demo.code=3221225477", "secteurs", "reste", 0, 0, 3221225477, "code 3221225477.\n"},
        {"", "demo.duree=60000", "", "", 150, 0, TIME_LIMIT_EXIT_CODE, "écoulé : machine arrêtée.\n"},
        {"", "", "reste", "", 0, 1, 1, "secteurs entiers de 512 octets.\n"},
        {"", "", "vide", "", 0, 1, 1, "l'image de disque est vide.\n"},
        {"", "", "absent", "", 0, 1, 1, "absent : fichier introuvable.\n"},
        {"", "", "", "dossier", 0, 1, 1, "dossier : ce n'est pas un fichier ordinaire.\n"},
        {"deux", "", "", "", 0, 1, 1, "il faut un en-tête Multiboot 1.\n"},
        {"secteurs", "", "", "", 0, 1, 1, "petit-boutiste.\n"},
        {"", "demo.code=x", "", "", 0, 2, 2, "Nombre incorrect : x\n"},
    };
    for (const auto& tested : CASES) {
        VmConfig config;
        config.timeout_ms = tested.limit_ms;
        config.command = Wide(tested.command);
        config.kernel = *tested.kernel == '\0' ? WideText() : folder.Of(Wide(tested.kernel));
        config.ide[3] = *tested.disk == '\0' ? WideText() : folder.Of(Wide(tested.disk));
        if (*tested.module != '\0')
            config.modules = {{folder.Of(Wide(tested.module)), TEXT("")}};
        const EngineEnd dry = RunStandIn(folder, config, EngineRun::Dry);
        EXPECT_EQ(dry.exit_code, tested.dry_code) << dry.log;
        EXPECT_EQ(dry.log.ends_with("\nVérification réussie.\n"), tested.dry_code == 0) << dry.log;
        EXPECT_FALSE(dry.LogContains("Machine")) << dry.log;
        const EngineEnd run = RunStandIn(folder, config, EngineRun::Real);
        EXPECT_EQ(run.exit_code, tested.run_code) << run.log;
        EXPECT_TRUE(run.log.ends_with(tested.last_line)) << run.log;
    }
}

}  // namespace
