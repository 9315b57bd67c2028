// The engine's command line: one example, and the limit of its length; the fuzz target tests the quoting.
#include "launch/engine_command.h"

#include <gtest/gtest.h>

#include "cases.h"
#include "scratch.h"

namespace {

std::string Line(const VmConfig& config, bool dry_run) {
    return Narrow(BuildEngineCommandLine(TEXT("C:\\Outils VM\\tessarun.exe"), config, dry_run));
}

TEST(EngineCommand, QuotesEveryArgumentAndKeepsTheOrder) {
    VmConfig config;
    config.kernel = TEXT("C:\\é.elf");
    config.command = TEXT("mode=\"rapide\" \\");
    config.headless = config.force_no_header = true;
    EXPECT_EQ(Line(config, true), R"("C:\Outils VM\tessarun.exe" "C:\é.elf" "--ram" "128" "--zoom" "2")"
                                  R"( "--timeout" "0" "--cmdline" "mode=\"rapide\" \\" "--headless")"
                                  R"( "--force-no-header" "--dry-run")");
}

TEST(EngineCommand, IsRefusedWhenItIsTooLongForThePlatform) {
    VmConfig config;
    config.kernel = TEXT("k");
    config.command = TEXT("a");
    config.command.append(32766 - Line(config, false).size(), WCHAR{0xE9});
    EXPECT_EQ(BuildEngineCommandLine(TEXT("C:\\Outils VM\\tessarun.exe"), config, false).size(), 32766U);
    config.command.back() = WCHAR{'"'};  // quoted, one character longer
    EXPECT_EQ(MessageOf([&] { Line(config, false); }), "Commande de lancement trop longue.");
    config.kernel.clear();
    EXPECT_EQ(MessageOf([&] { Line(config, false); }), "Choisissez un fichier noyau ELF.");
    config.ram_mib = 0;
    EXPECT_EQ(MessageOf([&] { Line(config, false); }), "RAM : choisir entre 16 et 2048 Mio.");
}

}  // namespace
