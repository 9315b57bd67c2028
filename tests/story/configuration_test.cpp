// Sessions with configurations and modules: what the window and the files show after each command.
#include <gtest/gtest.h>

#include <map>

#include "controls.h"
#include "launcher_run.h"

namespace {

using namespace control;

enum class Edits { None, Unsaved };

// Waits for the status line, the configuration line and the title that a command leaves.
void ExpectHead(const WCHAR* status, const std::string& line, Edits edits) {
    const bool is_edited = edits == Edits::Unsaved;
    const std::string marked_line = line + (is_edited ? "  (modifiée)" : "");
    const std::string title = std::string("Veldrane VM — Configuration") + (is_edited ? " *" : "");
    EXPECT_TRUE(user::WaitUntil([&] {
        return user::Status() == status && Narrow(user::ControlText(CONFIG_LINE)) == marked_line &&
               Narrow(user::Title()) == title;
    })) << marked_line;
}

std::map<unsigned, std::string> Shown() {
    std::map<unsigned, std::string> shown;
    user::OnProgramThread([&] {
        for (const unsigned id : {KERNEL, ARGUMENTS, PICTURE, RAM, TIME_LIMIT, WIDTH, HEIGHT, ZOOM, DISK_0,
                                  DISK_1, DISK_2, DISK_3})
            shown[id] = Narrow(user::ControlText(id));
        for (const unsigned id : {WITHOUT_HEADER, OWN_SIZE, WITHOUT_WINDOWS})
            shown[id] = user::IsChecked(id) ? "x" : "";
    });
    return shown;
}

const std::map<unsigned, std::string> DEFAULTS = {
    {KERNEL, ""},   {ARGUMENTS, ""}, {PICTURE, ""},        {RAM, "128"},   {TIME_LIMIT, "0"},
    {WIDTH, "800"}, {HEIGHT, "600"}, {ZOOM, "200 %"},      {DISK_0, ""},   {DISK_1, ""},
    {DISK_2, ""},   {DISK_3, ""},    {WITHOUT_HEADER, ""}, {OWN_SIZE, ""}, {WITHOUT_WINDOWS, ""}};

TEST(Configuration, IsEditedSavedLoadedAndReset) {
    const WCHAR* const first = TEXT("Choisissez un noyau ELF, puis lancez la VM.");
    const WCHAR* const saved = TEXT("Configuration enregistrée.");
    const WCHAR* const loaded = TEXT("Configuration chargée.");
    const WCHAR* const reset = TEXT("Réglages par défaut. Choisissez un noyau ELF.");
    const std::string none = "Nouvelle configuration — non enregistrée";
    LauncherRun run;
    const std::string home = Narrow(run.folder.path) + "\\";
    const std::map<unsigned, std::string> filled = {{KERNEL, home + "noyau.elf"},
                                                    {ARGUMENTS, "a=b"},
                                                    {PICTURE, home + "p.ppm"},
                                                    {RAM, "256"},
                                                    {TIME_LIMIT, "5000"},
                                                    {WIDTH, "640"},
                                                    {HEIGHT, "480"},
                                                    {ZOOM, "300 %"},
                                                    {DISK_0, home + "0.img"},
                                                    {DISK_1, home + "1.img"},
                                                    {DISK_2, home + "2.img"},
                                                    {DISK_3, home + "3.img"},
                                                    {WITHOUT_HEADER, "x"},
                                                    {OWN_SIZE, "x"},
                                                    {WITHOUT_WINDOWS, "x"}};
    const std::string text = "# Veldrane VM - configuration UTF-8\nversion=1\nkernel=" + home +
                             "noyau.elf\ncommand=a=b\ndump=" + home +
                             "p.ppm\nram_mib=256\nwidth=640\nheight=480\nzoom=3\ntimeout_ms=5000\n"
                             "explicit_video=1\nheadless=1\nforce_no_header=1\nide_primary_master=" +
                             home + "0.img\nide_primary_slave=" + home +
                             "1.img\nide_secondary_master=" + home + "2.img\nide_secondary_slave=" + home +
                             "3.img\nmodule_count=0\n";
    const std::pair<unsigned, const WCHAR*> typed[] = {
        {KERNEL, TEXT("noyau.elf")}, {ARGUMENTS, TEXT("a=b")},   {PICTURE, TEXT("p.ppm")},
        {RAM, TEXT("256")},          {TIME_LIMIT, TEXT("5000")}, {WIDTH, TEXT("640")},
        {HEIGHT, TEXT("480")},       {DISK_0, TEXT("0.img")},    {DISK_1, TEXT("1.img")},
        {DISK_2, TEXT("2.img")},     {DISK_3, TEXT("3.img")}};
    run.Run([&] {
        EXPECT_EQ(Shown(), DEFAULTS);
        ExpectHead(first, none, Edits::None);
        EXPECT_FALSE(user::IsEnabled(WIDTH) || user::IsEnabled(HEIGHT));
        user::Click(OWN_SIZE);
        ExpectHead(first, none, Edits::Unsaved);
        EXPECT_TRUE(user::IsEnabled(WIDTH) && user::IsEnabled(HEIGHT));
        user::OnProgramThread([&] {
            for (const auto& [id, name] : typed)
                SetWindowTextW(user::Control(id), name);
        });
        user::OnProgramThread([&] { SetFocus(GetDlgItem(run.launcher.main_window, ZOOM)); });
        user::Press(VK_DOWN);
        user::Click(WITHOUT_HEADER);
        user::Click(WITHOUT_WINDOWS);
        EXPECT_TRUE(user::WaitUntil([] { return !user::IsEnabled(ZOOM); }));
        user::Click(SAVE);
        ExpectHead(saved, home + "veldranevm.config", Edits::None);
        EXPECT_EQ(Shown(), filled) << "the paths are full now";
        EXPECT_EQ(ReadBytes(run.folder.Of(TEXT("veldranevm.config"))), text);
        user::Click(SAVE_AS);
        user::ChooseFile(TEXT("autre.config"));
        ExpectHead(saved, home + "autre.config", Edits::None);
        EXPECT_EQ(ReadBytes(run.folder.Of(TEXT("autre.config"))), text);
        user::Click(RESET);
        ExpectHead(reset, none, Edits::None);
        EXPECT_EQ(Shown(), DEFAULTS);
        user::Click(LOAD);
        user::ChooseFile(TEXT("autre.config"));
        ExpectHead(loaded, home + "autre.config", Edits::None);
        EXPECT_EQ(Shown(), filled);
        // The question about changes.
        user::Fill(RAM, TEXT("64"));
        user::Click(LOAD);
        user::AnswerBox(IDNO);
        user::CancelFile();
        ExpectHead(loaded, home + "autre.config", Edits::Unsaved);
        user::Click(RESET);
        user::AnswerBox(IDCANCEL);
        ExpectHead(loaded, home + "autre.config", Edits::Unsaved);
        user::Click(RESET);
        user::AnswerBox(IDYES);
        ExpectHead(reset, none, Edits::None);
        EXPECT_NE(ReadBytes(run.folder.Of(TEXT("autre.config"))).find("\nram_mib=64\n"), std::string::npos);
        user::Click(BROWSE_KERNEL);
        user::ChooseFile(TEXT("noyau.elf"));
        ExpectHead(reset, none, Edits::Unsaved);
        EXPECT_EQ(Narrow(user::ControlText(KERNEL)), home + "noyau.elf");
    });
}

TEST(Configuration, KeepsAListOfModules) {
    LauncherRun run;
    for (const WCHAR* name : {TEXT("a.bin"), TEXT("b.bin"), TEXT("c.bin")})
        WriteBytes(run.folder.Of(name), "");
    run.Run([&] {
        // Waits for the modules with their arguments, and for the buttons that can be used.
        const auto expect = [&](const std::string& modules, const std::string& buttons) {
            EXPECT_TRUE(user::WaitUntil([&] {
                std::string seen, enabled;
                for (const ModuleEntry& module : run.launcher.config.modules)
                    seen += Narrow(module.path.substr(run.folder.path.size() + 1)) + " " +
                            Narrow(module.command) + "|";
                for (const auto& [id, name] :
                     {std::pair(REMOVE, "remove "), std::pair(UP, "up "), std::pair(DOWN, "down ")})
                    enabled += user::IsEnabled(id) ? name : "";
                return seen == modules && enabled == buttons &&
                       user::IsEnabled(MODULE_ARGUMENTS) == enabled.starts_with("remove");
            })) << modules;
        };
        user::ChooseTab(1);
        expect("", "");
        for (const WCHAR* name : {TEXT("a.bin"), TEXT("b.bin"), TEXT("c.bin")}) {
            user::Click(ADD);
            user::ChooseFile(name);
            EXPECT_TRUE(user::WaitUntil([&] { return user::ControlText(MODULE_ARGUMENTS) == name; }));
        }
        expect("a.bin a.bin|b.bin b.bin|c.bin c.bin|", "remove up ");
        EXPECT_EQ(Narrow(user::Title()), "Veldrane VM — Configuration *");
        user::Fill(MODULE_ARGUMENTS, TEXT("z"));
        user::Click(UP);
        expect("a.bin a.bin|c.bin z|b.bin b.bin|", "remove up down ");
        EXPECT_EQ(Narrow(user::ControlText(MODULE_ARGUMENTS)), "z") << "the moved module stays selected";
        user::Click(UP);
        expect("c.bin z|a.bin a.bin|b.bin b.bin|", "remove down ");
        user::Click(DOWN);
        expect("a.bin a.bin|c.bin z|b.bin b.bin|", "remove up down ");
        user::Click(REMOVE);
        expect("a.bin a.bin|b.bin b.bin|", "remove up ");
        EXPECT_EQ(Narrow(user::ControlText(MODULE_ARGUMENTS)), "b.bin") << "the following one is selected";
        user::ChooseRow(0);
        expect("a.bin a.bin|b.bin b.bin|", "remove down ");
        EXPECT_EQ(Narrow(user::ControlText(MODULE_ARGUMENTS)), "a.bin");
        user::ChooseRow(1);
        user::Click(REMOVE);
        expect("a.bin a.bin|", "");
        EXPECT_EQ(Narrow(user::ControlText(MODULE_ARGUMENTS)), "");
    });
}

}  // namespace
