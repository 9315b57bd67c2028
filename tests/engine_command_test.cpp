// The engine's command line and its quoting.
#include "launch/engine_command.h"

#include <gtest/gtest.h>

#include "cases.h"
#include "scratch.h"

namespace {

constexpr WideView ENGINE = TEXT("C:\\Outils VM\\tessarun.exe");
const std::string USUAL_LINE =
    R"("C:\Outils VM\tessarun.exe" "C:\Images\noyau.elf" "--ram" "128" "--zoom" "2" "--timeout" "0")";

VmConfig WithKernel() {
    VmConfig config;
    config.kernel = TEXT("C:\\Images\\noyau.elf");
    return config;
}

std::string Line(const VmConfig& config, bool dry_run) {
    return Narrow(BuildEngineCommandLine(ENGINE, config, dry_run));
}

TEST(EngineCommand, QuotesEveryArgument) {
    const auto rows = Rows(2, R"(
        - ""        --ram "--ram"       a\\b "a\\b"     C:\images\ "C:\images\\"    C:\images\\ "C:\images\\\\"
        x"y "x\"y"  x\"y "x\\\"y"       x\\"y "x\\\\\"y"        \a"\" "\a\"\\\""    été😀 "été😀"
    )");
    for (const auto& row : rows)
        EXPECT_EQ(Narrow(QuoteEngineArgument(Wide(row[0]))), row[1]) << row[0];
    EXPECT_TRUE(QuoteEngineArgument(TEXT("a \tb ")) == TEXT("\"a \tb \""));
}

TEST(EngineCommand, NamesWhatIsSetInOneOrder) {
    VmConfig config = WithKernel();
    config.ram_mib = 256;
    config.zoom = 1;
    config.timeout_ms = 60000;
    config.command = TEXT("mode=\"rapide\" debug");
    config.explicit_video = config.headless = true;
    config.width = 1024;
    config.height = 768;
    config.ide[0] = TEXT("D:\\Disques\\a.img");
    config.ide[3] = TEXT("D:\\Disques\\b c.img");
    config.modules = {{TEXT("D:\\Modules\\init.bin"), TEXT("--verbose")},
                      {TEXT("D:\\Modules\\data.bin"), {}}};
    const std::string start =
        R"("C:\Outils VM\tessarun.exe" "C:\Images\noyau.elf" "--ram" "256" "--zoom" "1")"
        R"( "--timeout" "60000" "--cmdline" "mode=\"rapide\" debug" "--fb" "1024" "768")"
        R"( "--headless")";
    const std::string end = R"( "--ide-primary-master" "D:\Disques\a.img")"
                            R"( "--ide-secondary-slave" "D:\Disques\b c.img")"
                            R"( "--module-args" "D:\Modules\init.bin" "--verbose")"
                            R"( "--module-args" "D:\Modules\data.bin" "")";
    EXPECT_EQ(Line(config, true), start + R"( "--dry-run")" + end);
    EXPECT_EQ(Line(config, false), start + end);
}

TEST(EngineCommand, NamesEachOptionByItself) {
    using Set = void (*)(VmConfig&);
    const std::pair<Set, const char*> cases[] = {
        {[](VmConfig&) {}, ""},
        {[](VmConfig& config) { config.dump = TEXT("d.ppm"); }, R"( "--dump-fb" "d.ppm")"},
        {[](VmConfig& config) { config.headless = true; }, R"( "--headless")"},
        {[](VmConfig& config) { config.force_no_header = true; }, R"( "--force-no-header")"},
        {[](VmConfig& config) { config.explicit_video = true; }, R"( "--fb" "800" "600")"},
        {[](VmConfig& config) { config.width = config.height = 1; }, ""},
        {[](VmConfig& config) { config.ide[1] = TEXT("i.img"); }, R"( "--ide-primary-slave" "i.img")"},
        {[](VmConfig& config) { config.ide[2] = TEXT("i.img"); }, R"( "--ide-secondary-master" "i.img")"}};
    for (const auto& [set, added] : cases) {
        VmConfig config = WithKernel();
        set(config);
        EXPECT_EQ(Line(config, false), USUAL_LINE + added);
    }
}

TEST(EngineCommand, HoldsAtMostWhatThePlatformTakes) {
    VmConfig config = WithKernel();
    config.command = {0xD83D, 0xDE00};
    config.command.append(32766 - BuildEngineCommandLine(ENGINE, config, false).size(), WCHAR{'a'});
    EXPECT_EQ(BuildEngineCommandLine(ENGINE, config, false).size(), 32766U);
    config.command.back() = WCHAR{'"'};  // one more in its quoted form
    EXPECT_EQ(MessageOf([&] { Line(config, false); }), "Commande de lancement trop longue.");
    config.kernel.clear();
    EXPECT_EQ(MessageOf([&] { Line(config, false); }), "Choisissez un fichier noyau ELF.");
    config.ram_mib = 0;
    EXPECT_EQ(MessageOf([&] { Line(config, false); }), "RAM : choisir entre 16 et 2048 Mio.");
}

}  // namespace
