// Configuration files on a real disk: read, replaced, refused.
#include "config/config_file.h"

#include <gtest/gtest.h>

#include "base/owned_handle.h"
#include "cases.h"
#include "config/config_text.h"
#include "scratch.h"

namespace {

std::string ReadRefusal(const WideText& path) {
    return MessageOf([&] { ReadConfigFile(path); });
}

std::string WriteRefusal(const WideText& path, const VmConfig& config) {
    return MessageOf([&] { WriteConfigFile(path, config); });
}

TEST(ConfigFile, AnchorsItsPathsAndNothingElse) {
    const ScratchFolder folder;
    MakeFolder(folder.Of(TEXT("vm")));
    const WideText path = folder.Of(TEXT("vm\\a.config"));
    WriteBytes(path,
               "version=1\nkernel=..\\k.elf\ncommand=.\\c\ndump=/d.ppm\nide_primary_master=C:/x/../0.img\n"
               "ide_secondary_slave=3.img\nmodule_count=2\nmodule.0.path=m/x\nmodule.0.command=..\\a\n"
               "module.1.path=y\n");
    const VmConfig config = ReadConfigFile(path);
    EXPECT_EQ(Narrow(config.kernel), Narrow(folder.Of(TEXT("k.elf"))));
    EXPECT_EQ(Narrow(config.command), ".\\c");
    EXPECT_EQ(Narrow(config.dump), Narrow(folder.path.substr(0, 2)) + "\\d.ppm");
    EXPECT_EQ(Narrow(config.ide[0]), "C:/x/../0.img");
    EXPECT_EQ(Narrow(config.ide[1]), "");
    EXPECT_EQ(Narrow(config.ide[3]), Narrow(folder.Of(TEXT("vm\\3.img"))));
    EXPECT_EQ(Narrow(config.modules[0].path), Narrow(folder.Of(TEXT("vm\\m\\x"))));
    EXPECT_EQ(Narrow(config.modules[0].command), "..\\a");
    EXPECT_EQ(Narrow(config.modules[1].path), Narrow(folder.Of(TEXT("vm\\y"))));
}

TEST(ConfigFile, IsReadUpToItsLimitAndBesideOthers) {
    const ScratchFolder folder;
    const WideText path = folder.Of(TEXT("a.config"));
    for (const std::string mark : {"", "\xEF\xBB\xBF"}) {
        const std::string start = mark + "version=1\nkernel=C:\\";
        const std::string text = start + std::string(1048576 - start.size(), 'a');
        WriteBytes(path, text + "a");
        EXPECT_EQ(ReadRefusal(path), "Configuration trop volumineuse.");
        WriteBytes(path, text);
        const OwnedHandle other(CreateFileW(path.c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ,
                                            nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
        EXPECT_TRUE(other);
        EXPECT_EQ(ReadConfigFile(path).kernel.size(), 1048576 - start.size() + 3);
    }
    for (const WideText& none : {folder.path, folder.Of(TEXT("b")), folder.Of(TEXT("b\\a")), WideText()})
        EXPECT_EQ(ReadRefusal(none), "Impossible d'ouvrir la configuration.") << Narrow(none);
}

TEST(ConfigFile, StaysAsItWasWhenASaveFails) {
    const std::string cannot_save = "Enregistrement impossible ; l'ancienne configuration est conservée.";
    const ScratchFolder outer;
    const WideText inner = outer.Of(TEXT("vm"));
    MakeFolder(inner);
    const WideText path = inner + TEXT("\\a.config");
    WriteBytes(path, "old");
    VmConfig unlimited, unpaired, huge;
    unlimited.zoom = 5;
    unpaired.dump.assign(1, 0xDC00);
    huge.command.assign(1048576, WCHAR{'a'});
    EXPECT_EQ(WriteRefusal(path, unlimited), "Zoom : choisir entre 100 et 400 %.");
    EXPECT_EQ(WriteRefusal(path, unpaired), "Texte Unicode invalide.");
    EXPECT_EQ(WriteRefusal(path, huge), "Configuration trop volumineuse.");
    EXPECT_EQ(WriteRefusal(outer.Of(TEXT("b\\a.config")), {}),
              "Impossible de créer le fichier de configuration.");
    EXPECT_EQ(WriteRefusal(inner, {}), cannot_save);
    // A reader that does not let others replace the file.
    const OwnedHandle reader(CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                         FILE_ATTRIBUTE_NORMAL, nullptr));
    EXPECT_EQ(WriteRefusal(path, {}), cannot_save);
    EXPECT_EQ(ReadBytes(path), "old");
    EXPECT_EQ(ListFolder(inner).size(), 1U);
    EXPECT_EQ(ListFolder(outer.path).size(), 1U);
}

}  // namespace
