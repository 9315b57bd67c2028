// Every rule of the configuration format.
#include "config/config_text.h"

#include <gtest/gtest.h>

#include "cases.h"
#include "scratch.h"

namespace {

using namespace std::string_literals;

const std::string V = "version=1\n";

VmConfig FullConfig() {
    VmConfig config;
    config.kernel = TEXT("C:\\été\\k.elf");
    config.command = TEXT(" a=b # c \"d\"\t");
    config.dump = TEXT("x\\😀.ppm");
    config.ide = {TEXT("0.img"), TEXT("1.img"), TEXT("2.img"), TEXT("3.img")};
    config.modules = {{TEXT("m0"), {}}, {TEXT("m1"), TEXT("args 1")}};
    config.ram_mib = 2048;
    config.width = 1;
    config.height = 8192;
    config.zoom = 4;
    config.timeout_ms = 3600000;
    config.headless = true;
    return config;
}

TEST(ConfigText, IsComposedInOneFormAndReadBack) {
    EXPECT_EQ(ComposeConfigText(ParseConfigText("version=1")), ComposeConfigText({}));
    EXPECT_EQ(ComposeConfigText({}),
              "# Veldrane VM - configuration UTF-8\nversion=1\nkernel=\ncommand=\ndump=\n"
              "ram_mib=128\nwidth=800\nheight=600\nzoom=2\ntimeout_ms=0\n"
              "explicit_video=0\nheadless=0\nforce_no_header=0\n"
              "ide_primary_master=\nide_primary_slave=\nide_secondary_master=\nide_secondary_slave=\n"
              "module_count=0\n");
    const std::string full =
        "# Veldrane VM - configuration UTF-8\nversion=1\n"
        "kernel=C:\\\xC3\xA9t\xC3\xA9\\k.elf\ncommand= a=b # c \"d\"\t\ndump=x\\\xF0\x9F\x98\x80.ppm\n"
        "ram_mib=2048\nwidth=1\nheight=8192\nzoom=4\ntimeout_ms=3600000\n"
        "explicit_video=0\nheadless=1\nforce_no_header=0\nide_primary_master=0.img\n"
        "ide_primary_slave=1.img\nide_secondary_master=2.img\nide_secondary_slave=3.img\nmodule_count=2\n"
        "module.0.path=m0\nmodule.0.command=\nmodule.1.path=m1\nmodule.1.command=args 1\n";
    EXPECT_EQ(ComposeConfigText(FullConfig()), full);
    EXPECT_EQ(ComposeConfigText(ParseConfigText(full)), full);
}

// What each text was read as shows in the canonical text.
TEST(ConfigText, IsAcceptedInManyForms) {
    const struct {
        std::string text, line;
    } cases[] = {{"version=1", "module_count=0"},
                 {"\xEF\xBB\xBFversion =1\r\n\r\n \t\n#kernel=x\n   # kernel\n\tdump=d\r\n", "dump=d"},
                 {"  ram_mib=256\n" + V, "ram_mib=256"},
                 {V + "ram_mib \t =00256\r", "ram_mib=256"},
                 {V + "kernel= a b \t\r\n", "kernel= a b \t"},
                 {V + "command=a=b # c", "command=a=b # c"},
                 {V + "headless=001\nexplicit_video=00", "explicit_video=0\nheadless=1\nforce_no_header=0"},
                 {V + "force_no_header=1", "explicit_video=0\nheadless=0\nforce_no_header=1"},
                 {"module.1.path=b\nmodule.0.command=c\nmodule.0.path=a\nmodule_count=2\n" + V,
                  "module.0.path=a\nmodule.0.command=c\nmodule.1.path=b\nmodule.1.command="}};
    for (const auto& c : cases) {
        std::string text;
        EXPECT_EQ(MessageOf([&] { text = ComposeConfigText(ParseConfigText(c.text)); }), "") << c.text;
        EXPECT_NE(text.find("\n" + c.line + "\n"), std::string::npos) << c.text << " became " << text;
    }
}

TEST(ConfigText, IsRefusedForTheFirstThingThatIsWrong) {
    const std::string unknown = "Clé de configuration inconnue : ";
    const std::string no_number = "Valeur numérique invalide : ";
    const std::string outside = "Valeur hors limites : ";
    const struct {
        std::string message;
        std::vector<std::string> texts;
    } cases[] = {
        {"Le fichier doit être encodé en UTF-8.", {"kernel\n# \xFF", "\xFF\xFEv\0"s}},
        {"Ligne de configuration invalide.",
         {V + "=value", V + " \t =value", V + "kernel", V + "kernel\n" + V, V + "ram_mib=x\nzz=\nkernel"}},
        {"Clé répétée : kernel", {"kernel=a\nkernel =a\nkernel"}},
        {"Clé répétée : b", {"b=\na=\nb=\na=\na=", "a=\nb=\nb=\na="}},
        {"Version de configuration non prise en charge (attendu : 1).",
         {"", "\xEF\xBB\xBF", "\xEF\xBB\xBF\xEF\xBB\xBFversion=1", "# version=1\n", "version=\nram_mib=x",
          "version= 1", "version=01", "version=10"}},
        {no_number + "ram_mib", {V + "ram_mib=", V + "ram_mib=256 ", V + "zoom=9\nram_mib=x\nzz="}},
        {no_number + "headless", {V + "headless=true\nmodule_count=129"}},
        {outside + "ram_mib", {V + "zoom=9\nram_mib=4096\nzz=", V + "ram_mib=15", V + "ram_mib=2049"}},
        {outside + "force_no_header",
         {V + "force_no_header=2", V + "force_no_header=4294967297",
          V + "force_no_header=18446744073709551617"}},
        {outside + "module_count", {V + "module_count=129"}},
        {outside + "zoom", {V + "zoom=0", V + "zoom=5"}},
        {outside + "width", {V + "width=0", V + "width=8193"}},
        {outside + "height", {V + "height=0", V + "height=8193"}},
        {outside + "timeout_ms", {V + "timeout_ms=3600001"}},
        {unknown + "Kernel", {V + "Kernel=a"}},
        {unknown + "Zz", {V + "zz=\nZz=\naa="}},
        {unknown + "zz", {V + "\xC3\xA9=\nzz=\nzzz=", V + "kernel=a\r\r\nzz="}},
        {unknown + "\xEF\xBB\xBFkernel", {V + "\xEF\xBB\xBFkernel=a"}},
        {unknown + "ker nel", {V + "ker nel=a"}},
        {unknown + "x", {V + "x=1"}},
        {unknown + "\vzoom", {V + "\vzoom=1"}},
        {unknown + "zoom\xC2\xA0", {V + "zoom\xC2\xA0=1"}},
        {unknown + "module.1.path", {V + "module_count=1\nmodule.1.path=x"}},
        {unknown + "module.0.path", {V + "module.0.path=x"}},
        {unknown + "module.00.path", {V + "module_count=1\nmodule.0.path=x\nmodule.00.path=x"}},
        {"Les valeurs de configuration doivent tenir sur une ligne.",
         {V + "kernel=a\r\r\n", V + "kernel=a\rdump=b", V + "command=a\0"s}},
        {"Le fichier d'un module est vide.", {V + "module_count=1\nmodule.0.command=x"}}};
    for (const auto& c : cases)
        for (const std::string& text : c.texts)
            EXPECT_EQ(MessageOf([&] { ParseConfigText(text); }), c.message) << text;
}

TEST(ConfigText, GivesAValueOnce) {
    ConfigTable table = ReadConfigTable("a=\n");
    EXPECT_EQ(TakeConfigValue(table, "a", "none"), "");
    EXPECT_EQ(TakeConfigValue(table, "a", "none"), "none");
}

TEST(ConfigText, HasALimitInBytes) {
    VmConfig config;
    // An é is one code unit and two bytes.
    config.kernel.assign((MAX_CONFIG_BYTES - ComposeConfigText({}).size()) / 2, WCHAR{0xE9});
    config.dump.assign(MAX_CONFIG_BYTES - ComposeConfigText(config).size(), WCHAR{'a'});
    EXPECT_EQ(ComposeConfigText(config).size(), 1048576U);
    config.dump += WCHAR{'a'};
    EXPECT_EQ(MessageOf([&] { ComposeConfigText(config); }), "Configuration trop volumineuse.");
    config.modules = {{TEXT("a"), {0xD800}}};
    EXPECT_EQ(MessageOf([&] { ComposeConfigText(config); }), "Texte Unicode invalide.");
}

}  // namespace
