// The form as the user sees it: its texts, its places at every size, its fields and what they read as.
#include "form/form.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>

#include "form/form_exchange.h"
#include "form/form_ids.h"
#include "launcher_run.h"
#include "shell/config_commands.h"

namespace {

// The controls in their order on the Tab key.
std::vector<HWND> Controls(const Launcher& launcher) {
    std::vector<HWND> controls;
    for (HWND child = GetWindow(launcher.main_window, GW_CHILD); child != nullptr;
         child = GetWindow(child, GW_HWNDNEXT))
        controls.push_back(child);
    return controls;
}

DWORD StyleOf(HWND control) {
    return static_cast<DWORD>(GetWindowLongPtrW(control, GWL_STYLE));
}

std::string ClassOf(HWND control) {
    WCHAR name[32]{};
    GetClassNameW(control, name, 32);
    return Narrow(name);
}

RECT PlaceInClient(HWND window) {
    RECT place{};
    GetWindowRect(window, &place);
    MapWindowPoints(nullptr, GetParent(window), reinterpret_cast<POINT*>(&place), 2);
    return place;
}

std::string Text(const RECT& place) {
    return std::to_string(place.left) + "," + std::to_string(place.top) + " to " +
           std::to_string(place.right) + "," + std::to_string(place.bottom);
}

int ColumnWidth(const Launcher& launcher, WPARAM column) {
    return static_cast<int>(SendMessageW(launcher.module_list, LVM_GETCOLUMNWIDTH, column, 0));
}

// What stands on the form, control by control; edit fields in brackets, with what they hold at first.
const char* const FORM_TEXTS =
    "Charger...|Enregistrer|Enregistrer sous...|Réinitialiser|Nouvelle configuration — non enregistrée|"
    "Machine|Noyau ELF|[]|Parcourir...|Arguments|[]|RAM (Mio)|[128]|Délai (ms, 0 = illimité)|[0]|"
    "Autoriser un ELF sans en-tête Multiboot|"
    "RAM : 16 à 2048 Mio. Le délai s'applique à la durée totale de la VM.|"
    "Affichage|Résolution personnalisée|Largeur|[800]|Hauteur|[600]|Zoom|200 %|Sans fenêtres|"
    "Export PPM|[]|Parcourir...|"
    "Sans résolution personnalisée : respecter la demande du noyau. Export PPM facultatif.|"
    "(onglets)|Primaire · master|[]|Parcourir...|Primaire · slave|[]|Parcourir...|"
    "Secondaire · master|[]|Parcourir...|Secondaire · slave|[]|Parcourir...|"
    "Laisser vide pour aucun disque. Les écritures du guest modifient directement les images.|"
    "Images brutes existantes, secteurs de 512 octets, ATA PIO, capacité maximale 128 Gio par disque.|"
    "(liste)|Ajouter...|Retirer|Monter|Descendre|"
    "Arguments du module sélectionné (modification immédiate)|[]|"
    "Lancer la VM|Vérifier|Voir le journal|Choisissez un noyau ELF, puis lancez la VM.|";

std::string TextsOf(const Launcher& launcher) {
    std::string texts;
    for (const HWND control : Controls(launcher)) {
        const std::string kind = ClassOf(control);
        const std::string text = Narrow(GetControlText(control));
        if (kind == "SysTabControl32" || kind == "SysListView32")
            texts += kind == "SysListView32" ? "(liste)|" : "(onglets)|";
        else
            texts += kind == "Edit" ? "[" + text + "]|" : text + "|";
    }
    return texts;
}

TEST(Form, ShowsItsTextsInTheOrderOfTheTabKey) {
    LauncherRun run;
    run.Run([&] {
        user::Do([&] {
            EXPECT_EQ(TextsOf(run.launcher), FORM_TEXTS);
            WCHAR text[64]{};
            std::string lists;
            for (WPARAM index = 0; index < 4; ++index) {
                SendMessageW(GetDlgItem(run.launcher.main_window, IDC_ZOOM), CB_GETLBTEXT, index,
                             reinterpret_cast<LPARAM>(text));
                lists += Narrow(text) + "|";
            }
            TCITEMW tab{};
            tab.mask = TCIF_TEXT;
            tab.pszText = text;
            tab.cchTextMax = 64;
            for (WPARAM index = 0; index < 2; ++index) {
                SendMessageW(run.launcher.tab_control, TCM_GETITEMW, index, reinterpret_cast<LPARAM>(&tab));
                lists += Narrow(text) + "|";
            }
            LVCOLUMNW column{};
            column.mask = LVCF_TEXT;
            column.pszText = text;
            column.cchTextMax = 64;
            for (WPARAM index = 0; index < 2; ++index) {
                SendMessageW(run.launcher.module_list, LVM_GETCOLUMNW, index,
                             reinterpret_cast<LPARAM>(&column));
                lists += Narrow(text) + "|";
            }
            EXPECT_EQ(lists, "100 %|200 %|300 %|400 %|Disques IDE|Modules Multiboot|Fichier|Arguments|");
        });
    });
}

TEST(Form, GivesItsControlsTheStylesThatTheUserFeels) {
    LauncherRun run;
    run.Run([&] {
        user::Do([&] {
            std::map<std::string, std::set<int>> styled;
            for (const HWND control : Controls(run.launcher)) {
                const std::string kind = ClassOf(control);
                const DWORD style = StyleOf(control);
                const int id = GetDlgCtrlID(control);
                EXPECT_EQ(SendMessageW(control, WM_GETFONT, 0, 0),
                          reinterpret_cast<LRESULT>(GetStockObject(DEFAULT_GUI_FONT)));
                EXPECT_EQ((GetWindowLongPtrW(control, GWL_EXSTYLE) & WS_EX_CLIENTEDGE) != 0, kind == "Edit")
                    << id;
                if (kind == "Edit") {
                    EXPECT_EQ(SendMessageW(control, EM_GETLIMITTEXT, 0, 0), 32760) << id;
                    styled[(style & ES_NUMBER) != 0 ? "numbers" : "texts"].insert(id);
                    EXPECT_EQ((style & ES_AUTOHSCROLL) != 0, (style & ES_NUMBER) == 0) << id;
                } else if (kind == "Button") {
                    if ((style & BS_TYPEMASK) != BS_PUSHBUTTON && (style & BS_TYPEMASK) != BS_GROUPBOX)
                        styled[(style & BS_TYPEMASK) == BS_AUTOCHECKBOX ? "checks" : "default"].insert(id);
                }
            }
            EXPECT_EQ(styled["numbers"], (std::set{204, 205, 208, 209}));
            EXPECT_EQ(styled["texts"], (std::set{201, 203, 212, 307, 401, 402, 403, 404}));
            EXPECT_EQ(styled["checks"], (std::set{206, 207, 211}));
            EXPECT_EQ(styled["default"], (std::set{105}));
            constexpr DWORD LIST = LVS_REPORT | LVS_SINGLESEL | LVS_SHOWSELALWAYS;
            EXPECT_EQ(StyleOf(run.launcher.module_list) & LIST, LIST);
            EXPECT_EQ(SendMessageW(run.launcher.module_list, LVM_GETEXTENDEDLISTVIEWSTYLE, 0, 0),
                      LVS_EX_FULLROWSELECT | LVS_EX_DOUBLEBUFFER);
            EXPECT_NE(StyleOf(run.launcher.main_window) & WS_CLIPCHILDREN, 0U);
        });
    });
}

// Group boxes and the tab strip frame other controls.
bool IsFrame(HWND control) {
    return (StyleOf(control) & BS_TYPEMASK) == BS_GROUPBOX || GetDlgCtrlID(control) == IDC_PAGE_TABS;
}

void ExpectNoOverlap(const std::vector<HWND>& controls, const RECT& client) {
    std::vector<std::pair<HWND, RECT>> seen;
    for (const HWND control : controls) {
        if (IsWindowVisible(control) == FALSE)
            continue;
        const RECT place = PlaceInClient(control);
        EXPECT_TRUE(place.left >= 0 && place.top >= 0 && place.right <= client.right &&
                    place.bottom <= client.bottom)
            << GetDlgCtrlID(control) << " leaves the window: " << Text(place);
        if (IsFrame(control))
            continue;
        for (const auto& [other, taken] : seen)
            EXPECT_TRUE(place.right <= taken.left || place.left >= taken.right || place.bottom <= taken.top ||
                        place.top >= taken.bottom)
                << GetDlgCtrlID(control) << " at " << Text(place) << " lies over " << GetDlgCtrlID(other);
        seen.emplace_back(control, place);
    }
}

TEST(Form, KeepsEveryControlAtItsEdgesAndClearOfTheOthersAtEverySize) {
    const std::set<int> follow_right{202, 213, 303, 304, 305, 306, 411, 412, 413, 414};
    const std::set<int> stretch{501, 201, 203, 212, 301, 302, 307, 401, 402, 403, 404, 502};
    const std::set<int> grow{301, 302};
    LauncherRun run;
    run.Run([&] {
        std::vector<HWND> controls;
        std::vector<RECT> first;
        user::Do([&] {
            controls = Controls(run.launcher);
            for (const HWND control : controls)
                first.push_back(PlaceInClient(control));
        });
        const SIZE sizes[] = {{920, 676}, {1200, 800}, {921, 900}, {1380, 677}};
        for (const SIZE& size : sizes) {
            user::ResizeClient(size.cx, size.cy);
            const LONG dx = size.cx - 920;
            const LONG dy = size.cy - 676;
            for (const int page : {1, 0}) {
                SCOPED_TRACE(testing::Message() << size.cx << " by " << size.cy << ", page " << page);
                user::ChooseTab(page);
                user::WaitUntil([&] { return user::IsVisible(IDC_MODULE_LIST) == (page == 1); });
                EXPECT_EQ(user::IsVisible(IDC_IDE_SECONDARY_SLAVE), page == 0);
                user::Do([&] { ExpectNoOverlap(controls, {0, 0, size.cx, size.cy}); });
            }
            user::Do([&] {
                for (std::size_t at = 0; at < controls.size(); ++at) {
                    const int id = GetDlgCtrlID(controls[at]);
                    const bool is_group = id == 0 && ClassOf(controls[at]) == "Button";
                    RECT wanted = first[at];
                    const bool at_bottom = wanted.top >= 552;
                    wanted.left += follow_right.count(id) != 0 ? dx : 0;
                    wanted.right += follow_right.count(id) + stretch.count(id) != 0 || is_group ? dx : 0;
                    wanted.top += at_bottom ? dy : 0;
                    wanted.bottom += at_bottom || grow.count(id) != 0 ? dy : 0;
                    EXPECT_EQ(Text(PlaceInClient(controls[at])), Text(wanted)) << id << " at " << size.cx;
                }
            });
        }
        user::ResizeClient(1200, 800);
        user::Do([&] {
            EXPECT_EQ(ColumnWidth(run.launcher, 0), 604);
            EXPECT_EQ(ColumnWidth(run.launcher, 1), 379);
            EXPECT_EQ(Text(PlaceInClient(GetDlgItem(run.launcher.main_window, IDC_KERNEL_PATH))),
                      "138,98 to 1064,123");
        });
        user::ResizeClient(300, 200);
        user::Do([&] {
            EXPECT_EQ(Text(PlaceInClient(run.launcher.module_list)), "26,408 to 754,540")
                << "no smaller than at first";
            ShowWindow(run.launcher.main_window, SW_MINIMIZE);
        });
        user::Do([&] { ShowWindow(run.launcher.main_window, SW_RESTORE); });
        user::Do([&] { EXPECT_EQ(Text(PlaceInClient(run.launcher.tab_control)), "12,374 to 908,614"); });
        EXPECT_FALSE(run.launcher.dirty) << "pages and sizes are no edits";
    });
}

TEST(Form, MarksEditsAndFollowsItsCheckBoxes) {
    LauncherRun run;
    run.Run([&] {
        EXPECT_EQ(Narrow(user::ControlText(IDC_CONFIG_LINE)), "Nouvelle configuration — non enregistrée");
        EXPECT_FALSE(user::IsEnabled(IDC_WIDTH));
        user::Click(IDC_KERNEL_COMMAND);
        EXPECT_EQ(Narrow(user::Title()), "Veldrane VM — Configuration");
        user::Type(TEXT("é"));
        EXPECT_TRUE(user::WaitUntil([] { return Narrow(user::Title()) == "Veldrane VM — Configuration *"; }));
        EXPECT_EQ(Narrow(user::ControlText(IDC_CONFIG_LINE)),
                  "Nouvelle configuration — non enregistrée  (modifiée)");
        user::Click(IDC_EXPLICIT_VIDEO);
        EXPECT_TRUE(
            user::WaitUntil([] { return user::IsEnabled(IDC_WIDTH) && user::IsEnabled(IDC_HEIGHT); }));
        user::Click(IDC_HEADLESS);
        EXPECT_TRUE(user::WaitUntil([] { return !user::IsEnabled(IDC_ZOOM); }));
        EXPECT_TRUE(user::IsEnabled(IDC_WIDTH));
        user::Click(IDC_EXPLICIT_VIDEO);
        EXPECT_TRUE(user::WaitUntil([] { return !user::IsEnabled(IDC_WIDTH); }));
        EXPECT_EQ(Narrow(user::ControlText(IDC_WIDTH)), "800");
        user::Click(IDC_EXPLICIT_VIDEO);
        for (const UINT id : {IDC_RAM_MIB, IDC_TIMEOUT_MS, IDC_WIDTH, IDC_HEIGHT}) {
            user::Fill(id, TEXT(""));
            user::Type(TEXT("1x2"));
            EXPECT_TRUE(user::WaitUntil([&] { return user::ControlText(id) == TEXT("12"); }))
                << "letters cannot be typed into " << id;
        }
    });
}

void SetField(const Launcher& launcher, UINT id, const WideText& text) {
    SetDlgItemTextW(launcher.main_window, static_cast<int>(id), text.c_str());
}

std::string ReadFailure(Launcher& launcher) {
    try {
        ReadForm(launcher);
    } catch (const std::exception& error) {
        return error.what();
    }
    return "no failure";
}

TEST(Form, RefusesABadNumberWithItsMessageAndTheFocusWhereItHelps) {
    const struct {
        UINT id;
        WideText text;  // as pasted: only typing is held to digits
        const char* message;
        bool takes_focus;  // a disabled field cannot
    } cases[] = {
        {204, TEXT(""), "Nombre invalide : RAM (16..2048 Mio)", false},
        {204, TEXT("12a"), "Nombre invalide : RAM (16..2048 Mio)", false},
        {204, TEXT("-16"), "Nombre invalide : RAM (16..2048 Mio)", false},
        {204, TEXT("15"), "Valeur hors limites : RAM (16..2048 Mio)", true},
        {204, TEXT("2049"), "Valeur hors limites : RAM (16..2048 Mio)", true},
        {204, TEXT("4294967312"), "Valeur hors limites : RAM (16..2048 Mio)", true},
        {205, TEXT("3600001"), "Valeur hors limites : délai (0..3600000 ms)", true},
        {208, TEXT("8193"), "Valeur hors limites : largeur (1..8192)", false},
        {208, TEXT("0"), "Valeur hors limites : largeur (1..8192)", false},
        {208, TEXT("99999999999999999999"), "Valeur hors limites : largeur (1..8192)", false},
        {209, TEXT("0"), "Valeur hors limites : hauteur (1..8192)", false},
        {209, TEXT("8193"), "Valeur hors limites : hauteur (1..8192)", false},
        {209, TEXT(" 5"), "Nombre invalide : hauteur (1..8192)", false},
    };
    LauncherRun run;
    run.Run([&] {
        user::Do([&] {
            const HWND first_focus = GetDlgItem(run.launcher.main_window, IDC_LOAD);
            for (const auto& c : cases) {
                SCOPED_TRACE(testing::Message() << c.id << " = " << Narrow(c.text));
                SetFocus(first_focus);
                SetField(run.launcher, c.id, c.text);
                EXPECT_EQ(ReadFailure(run.launcher), c.message);
                const HWND field = GetDlgItem(run.launcher.main_window, static_cast<int>(c.id));
                EXPECT_EQ(GetFocus(), c.takes_focus ? field : first_focus);
                if (c.takes_focus)
                    EXPECT_EQ(SendMessageW(field, EM_GETSEL, 0, 0),
                              MAKELPARAM(0, static_cast<unsigned>(c.text.size())));
                EXPECT_EQ(user::ControlText(c.id), c.text) << "the field keeps its text";
                SetField(run.launcher, c.id, TEXT("20"));
            }
            // All four wrong: they are told one at a time, in this order.
            for (const UINT id : {IDC_HEIGHT, IDC_WIDTH, IDC_TIMEOUT_MS, IDC_RAM_MIB})
                SetField(run.launcher, id, TEXT("3600001"));
            for (const auto& [id, told] : {std::pair{IDC_RAM_MIB, "RAM (16..2048 Mio)"},
                                           {IDC_TIMEOUT_MS, "délai (0..3600000 ms)"},
                                           {IDC_WIDTH, "largeur (1..8192)"},
                                           {IDC_HEIGHT, "hauteur (1..8192)"}}) {
                EXPECT_EQ(ReadFailure(run.launcher), std::string("Valeur hors limites : ") + told);
                SetField(run.launcher, id, TEXT("20"));
            }
            EXPECT_EQ(ReadFailure(run.launcher), "no failure");
            SetField(run.launcher, IDC_RAM_MIB, TEXT("9"));
        });
        user::Click(IDC_VERIFY);
        EXPECT_EQ(TakeErrorBox(), "Veldrane VM\nValeur hors limites : RAM (16..2048 Mio)");
        EXPECT_EQ(Narrow(user::Status()), "Valeur hors limites : RAM (16..2048 Mio)");
        user::Do([] { EXPECT_EQ(GetDlgCtrlID(GetFocus()), IDC_RAM_MIB) << "also when the box is closed"; });
    });
}

VmConfig FullConfig(const WideText& folder) {
    VmConfig config;
    config.kernel = folder + TEXT("\\k é.elf");
    config.command = TEXT("  a=\"b\"  ");
    config.dump = folder + TEXT("\\d.ppm");
    config.ide = {folder + TEXT("\\0.img"), TEXT(""), TEXT("D:\\2.img"), folder + TEXT("\\3.img")};
    config.modules = {{folder + TEXT("\\m.bin"), TEXT("un deux")}, {folder + TEXT("\\n.bin"), TEXT("")}};
    config.ram_mib = 2048;
    config.width = 8192;
    config.height = 1;
    config.zoom = 4;
    config.timeout_ms = 3600000;
    config.explicit_video = true;
    config.force_no_header = true;
    return config;
}

TEST(Form, GivesBackWhatItWasFilledWith) {
    LauncherRun run;
    run.Run([&] {
        user::Do([&] {
            const VmConfig config = FullConfig(run.folder.path);
            run.launcher.config = config;
            FillForm(run.launcher);
            const VmConfig read = ReadForm(run.launcher);
            EXPECT_TRUE(read.kernel == config.kernel);
            EXPECT_TRUE(read.command == config.command) << "blanks at both ends stay";
            EXPECT_TRUE(read.dump == config.dump);
            EXPECT_TRUE(read.ide == config.ide);
            ASSERT_EQ(read.modules.size(), 2U);
            EXPECT_TRUE(read.modules[0].command == TEXT("un deux"));
            EXPECT_EQ(read.ram_mib, 2048U);
            EXPECT_EQ(read.width, 8192U);
            EXPECT_EQ(read.height, 1U);
            EXPECT_EQ(read.zoom, 4U);
            EXPECT_EQ(read.timeout_ms, 3600000U);
            EXPECT_TRUE(read.explicit_video && read.force_no_header && !read.headless);
            EXPECT_FALSE(run.launcher.dirty);
            EXPECT_FALSE(run.launcher.filling);
        });
    });
}

TEST(Form, IsAsAtFirstAfterAReset) {
    LauncherRun run;
    run.Run([&] {
        user::Do([&] {
            run.launcher.config = FullConfig(run.folder.path);
            run.launcher.log_path = TEXT("C:\\a.log");
            FillForm(run.launcher);
            ResetConfiguration(run.launcher);
            std::string texts = TextsOf(run.launcher);
            const std::string status = "Réglages par défaut. Choisissez un noyau ELF.";
            texts.replace(texts.find(status), status.size(), "Choisissez un noyau ELF, puis lancez la VM.");
            EXPECT_EQ(texts, FORM_TEXTS);
            for (const UINT id : {IDC_FORCE_NO_HEADER, IDC_EXPLICIT_VIDEO, IDC_HEADLESS})
                EXPECT_FALSE(user::IsChecked(id)) << id;
            EXPECT_TRUE(run.launcher.config.modules.empty());
            EXPECT_EQ(Narrow(run.launcher.log_path), "C:\\a.log") << "the log stays that of the last run";
        });
    });
}

TEST(Form, TakesTypedPathsFromTheFolderOfTheRun) {
    LauncherRun run;
    run.Run([&] {
        user::Do([&] {
            const struct {
                WideText typed, read;
            } cases[] = {
                {TEXT(""), TEXT("")},
                {TEXT("boot\\..\\k.elf"), run.folder.Of(TEXT("k.elf"))},
                {TEXT("./m/x.bin"), run.folder.Of(TEXT("m\\x.bin"))},
                {TEXT("C:/vm/../a.elf"), TEXT("C:\\a.elf")},
            };
            for (const auto& c : cases) {
                run.launcher.config.modules.assign(c.typed.empty() ? 0 : 1, {c.typed, TEXT("../x")});
                for (const UINT id :
                     {IDC_KERNEL_PATH, IDC_DUMP_PATH, IDC_IDE_PRIMARY_MASTER, IDC_IDE_PRIMARY_SLAVE,
                      IDC_IDE_SECONDARY_MASTER, IDC_IDE_SECONDARY_SLAVE})
                    SetField(run.launcher, id, c.typed);
                const VmConfig read = ReadForm(run.launcher);
                EXPECT_EQ(Narrow(read.kernel), Narrow(c.read));
                EXPECT_EQ(Narrow(read.dump), Narrow(c.read));
                for (const WideText& image : read.ide)
                    EXPECT_EQ(Narrow(image), Narrow(c.read));
                for (const ModuleEntry& module : read.modules) {
                    EXPECT_EQ(Narrow(module.path), Narrow(c.read));
                    EXPECT_EQ(Narrow(module.command), "../x") << "arguments are no path";
                }
            }
            SetField(run.launcher, IDC_RAM_MIB, TEXT("00128"));
            EXPECT_EQ(ReadForm(run.launcher).ram_mib, 128U);
            run.launcher.config.modules.assign(1, {TEXT(""), TEXT("x")});
            EXPECT_EQ(ReadFailure(run.launcher), "Le fichier d'un module est vide.");
        });
    });
}

}  // namespace
