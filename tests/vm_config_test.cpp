// The record, its defaults and its limits.
#include "config/vm_config.h"

#include <gtest/gtest.h>

#include "cases.h"

namespace {

constexpr const char* ONE_LINE = "Les valeurs de configuration doivent tenir sur une ligne.";
constexpr const char* NO_FILE = "Le fichier d'un module est vide.";
constexpr const char* SIZE = "Résolution : choisir des dimensions entre 1 et 8192 pixels.";

// In the order in which they are checked.
const struct {
    NumberMember field;
    std::uint32_t lowest, highest;
    std::string message;
} LIMITS[] = {{&VmConfig::ram_mib, 16, 2048, "RAM : choisir entre 16 et 2048 Mio."},
              {&VmConfig::width, 1, 8192, SIZE},
              {&VmConfig::height, 1, 8192, SIZE},
              {&VmConfig::zoom, 1, 4, "Zoom : choisir entre 100 et 400 %."},
              {&VmConfig::timeout_ms, 0, 3600000, "Délai : choisir entre 0 et 3600000 ms."}};

std::string Refusal(const VmConfig& config) {
    return MessageOf([&] { ValidateConfig(config); });
}

TEST(ValidateConfig, HoldsNumbersToTheirLimits) {
    for (const auto& limit : LIMITS) {
        // One below 0 is the largest number of all.
        for (const std::uint32_t number :
             {limit.lowest, limit.highest, limit.lowest - 1, limit.highest + 1}) {
            VmConfig config;
            config.*limit.field = number;
            const bool fits = number == limit.lowest || number == limit.highest;
            EXPECT_EQ(Refusal(config), fits ? "" : limit.message) << number;
        }
    }
}

TEST(ValidateConfig, HoldsEveryTextToOneLine) {
    for (const WCHAR unit : {u'\r', u'\n', u'\0', u'\t', u'\v', u'\u2028'}) {
        const WideText text{'x', unit};
        VmConfig configs[9];
        configs[0].kernel = configs[1].command = configs[2].dump = text;
        for (std::size_t slot = 0; slot < 4; ++slot)
            configs[3 + slot].ide[slot] = text;
        configs[7].modules = {{TEXT("a"), {}}, {text, {}}};
        configs[8].modules = {{TEXT("a"), {}}, {TEXT("b"), text}};
        for (const VmConfig& config : configs)
            EXPECT_EQ(Refusal(config), unit == '\r' || unit == '\n' || unit == 0 ? ONE_LINE : "")
                << "unit " << int{unit} << " in record " << &config - configs;
    }
}

TEST(ValidateConfig, TellsTheFirstRuleThatIsBroken) {
    VmConfig config;
    config.modules.assign(128, {TEXT("a"), {}});
    EXPECT_EQ(Refusal(config), "");
    config.modules[1] = {{}, TEXT("\n")};
    EXPECT_EQ(Refusal(config), NO_FILE);
    config.modules[0].command = TEXT("a\nb");
    EXPECT_EQ(Refusal(config), ONE_LINE);
    config.modules[0] = {};
    EXPECT_EQ(Refusal(config), NO_FILE);
    config.ide[3] = TEXT("a\nb");
    EXPECT_EQ(Refusal(config), ONE_LINE);
    config.modules.emplace_back();
    EXPECT_EQ(Refusal(config), "Maximum : 128 modules.");
    for (std::size_t index = std::size(LIMITS); index-- > 0;) {
        config.*LIMITS[index].field = LIMITS[index].highest + 1;
        EXPECT_EQ(Refusal(config), LIMITS[index].message);
    }
}

}  // namespace
