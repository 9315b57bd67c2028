// The form: its texts, its styles, and its layout at several sizes.
#include "form/form.h"

#include <gtest/gtest.h>

#include <functional>
#include <initializer_list>
#include <map>
#include <set>

#include "controls.h"
#include "form/form_exchange.h"
#include "launcher_run.h"

namespace {

using namespace control;

// The controls in the order of the Tab key.
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

// The texts of the controls in their order; edit fields in brackets, with their first text.
const std::string ABOVE_THE_PAGES =
    "Charger...|Enregistrer|Enregistrer sous...|Réinitialiser|Nouvelle configuration — non enregistrée|"
    "Machine|Noyau ELF|[]|Parcourir...|Arguments|[]|RAM (Mio)|[128]|Délai (ms, 0 = illimité)|[0]|"
    "Autoriser un ELF sans en-tête Multiboot|"
    "RAM : 16 à 2048 Mio. Le délai s'applique à la durée totale de la VM.|"
    "Affichage|Résolution personnalisée|Largeur|[800]|Hauteur|[600]|Zoom|200 %|Sans fenêtres|"
    "Export PPM|[]|Parcourir...|"
    "Sans résolution personnalisée : respecter la demande du noyau. Export PPM facultatif.|(onglets)|";
const std::string DISK_PAGE =
    "Primaire · master|[]|Parcourir...|Primaire · slave|[]|Parcourir...|"
    "Secondaire · master|[]|Parcourir...|Secondaire · slave|[]|Parcourir...|"
    "Laisser vide pour aucun disque. Les écritures du guest modifient directement les images.|"
    "Images brutes existantes, secteurs de 512 octets, ATA PIO, capacité maximale 128 Gio par disque.|";
const std::string MODULE_PAGE =
    "(liste)|Ajouter...|Retirer|Monter|Descendre|"
    "Arguments du module sélectionné (modification immédiate)|[]|";
const std::string BELOW_THE_PAGES =
    "Lancer la VM|Vérifier|Voir le journal|Choisissez un noyau ELF, puis lancez la VM.|";

std::string VisibleTexts(const Launcher& launcher) {
    std::string texts;
    for (const HWND control : Controls(launcher)) {
        if (IsWindowVisible(control) == FALSE)
            continue;
        const std::string kind = ClassOf(control);
        const std::string text = Narrow(GetControlText(control));
        if (kind == "SysTabControl32" || kind == "SysListView32")
            texts += kind == "SysListView32" ? "(liste)|" : "(onglets)|";
        else
            texts += kind == "Edit" ? "[" + text + "]|" : text + "|";
    }
    return texts;
}

TEST(Form, ShowsTheTextsOfTheSelectedPage) {
    LauncherRun run;
    run.Run([&] {
        user::OnProgramThread([&] {
            EXPECT_EQ(VisibleTexts(run.launcher), ABOVE_THE_PAGES + DISK_PAGE + BELOW_THE_PAGES);
            WCHAR text[64]{};
            TCITEMW tab{};
            tab.mask = TCIF_TEXT;
            tab.pszText = text;
            tab.cchTextMax = 64;
            LVCOLUMNW column{};
            column.mask = LVCF_TEXT;
            column.pszText = text;
            column.cchTextMax = 64;
            std::string lists;
            const auto append = [&](HWND list, UINT message, WPARAM count, void* item) {
                for (WPARAM index = 0; index < count; ++index) {
                    SendMessageW(list, message, index, reinterpret_cast<LPARAM>(item));
                    lists += Narrow(text) + "|";
                }
            };
            append(user::Control(ZOOM), CB_GETLBTEXT, 4, text);
            append(run.launcher.tab_control, TCM_GETITEMW, 2, &tab);
            append(run.launcher.module_list, LVM_GETCOLUMNW, 2, &column);
            EXPECT_EQ(lists, "100 %|200 %|300 %|400 %|Disques IDE|Modules Multiboot|Fichier|Arguments|");
        });
        user::ChooseTab(1);
        user::OnProgramThread(
            [&] { EXPECT_EQ(VisibleTexts(run.launcher), ABOVE_THE_PAGES + MODULE_PAGE + BELOW_THE_PAGES); });
    });
}

TEST(Form, SetsTheStylesThatChangeTheBehaviourOfControls) {
    LauncherRun run;
    run.Run([&] {
        user::OnProgramThread([&] {
            std::map<std::string, std::set<int>> styled;
            for (const HWND control : Controls(run.launcher)) {
                const std::string kind = ClassOf(control);
                const DWORD style = StyleOf(control);
                const int id = GetDlgCtrlID(control);
                EXPECT_EQ(SendMessageW(control, WM_GETFONT, 0, 0),
                          reinterpret_cast<LRESULT>(GetStockObject(DEFAULT_GUI_FONT)));
                constexpr LONG_PTR OTHER_FRAME = 1;  // of a dialog box
                EXPECT_EQ(GetWindowLongPtrW(control, GWL_EXSTYLE) & (WS_EX_CLIENTEDGE | OTHER_FRAME),
                          kind == "Edit" ? WS_EX_CLIENTEDGE : 0)
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

// --- places ---

RECT PlaceOf(const Launcher& launcher, UINT id) {
    return PlaceInClient(GetDlgItem(launcher.main_window, static_cast<int>(id)));
}

// The place of a label or group box, which has no number.
RECT PlaceOf(const Launcher& launcher, WideView start_of_text) {
    for (const HWND control : Controls(launcher))
        if (GetDlgCtrlID(control) == 0 && GetControlText(control).starts_with(start_of_text))
            return PlaceInClient(control);
    ADD_FAILURE() << "no label " << Narrow(start_of_text);
    return {};
}

template <typename Name>
std::vector<RECT> Places(const Launcher& launcher, std::initializer_list<Name> names) {
    std::vector<RECT> places;
    for (const Name& name : names)
        places.push_back(PlaceOf(launcher, name));
    return places;
}

void ExpectColumn(const std::vector<RECT>& places) {
    for (const RECT& place : places)
        EXPECT_TRUE(place.left == places[0].left && place.right == places[0].right) << Text(place);
}

void ExpectColumn(const std::vector<RECT>& places, LONG pitch) {
    ExpectColumn(places);
    for (std::size_t at = 1; at < places.size(); ++at) {
        EXPECT_EQ(places[at].top - places[at - 1].top, pitch);
        EXPECT_EQ(places[at].bottom - places[at - 1].bottom, pitch);
    }
}

void ExpectRow(const std::vector<RECT>& places, LONG gap) {
    for (std::size_t at = 1; at < places.size(); ++at) {
        EXPECT_TRUE(places[at].top == places[0].top && places[at].bottom == places[0].bottom)
            << Text(places[at]);
        EXPECT_EQ(places[at].left - places[at - 1].right, gap) << Text(places[at]);
    }
}

// What is so at every size of the window.
void ExpectAligned(const Launcher& launcher) {
    const auto at = [&](UINT id) { return PlaceOf(launcher, id); };
    const auto label = [&](WideView text) { return PlaceOf(launcher, text); };
    ExpectRow(Places(launcher, {LOAD, SAVE, SAVE_AS, RESET}), 8);
    ExpectRow(Places(launcher, {LAUNCH, VERIFY, SHOW_LOG}), 10);
    ExpectColumn({at(CONFIG_LINE), label(TEXT("Machine")), label(TEXT("Affichage")), at(TABS)});
    EXPECT_EQ(at(STATUS).right, at(TABS).right);
    // Each field of a path has its button beside it, twelve pixels inside the frame.
    for (const auto& [field, button] : {std::pair(KERNEL, BROWSE_KERNEL), std::pair(PICTURE, BROWSE_PICTURE),
                                        std::pair(DISK_0, BROWSE_DISK_0), std::pair(DISK_1, BROWSE_DISK_1),
                                        std::pair(DISK_2, BROWSE_DISK_2), std::pair(DISK_3, BROWSE_DISK_3)}) {
        ExpectRow({at(field), at(button)}, 10);
        EXPECT_EQ(at(button).right - at(button).left, 102);
        EXPECT_EQ(at(button).right, at(TABS).right - 12) << field;
    }
    for (const UINT id : {ARGUMENTS, MODULE_ARGUMENTS})
        EXPECT_EQ(at(id).right, at(TABS).right - 12) << id;
    ExpectColumn({at(KERNEL), at(PICTURE)});
    ExpectColumn(Places(launcher, {DISK_0, DISK_1, DISK_2, DISK_3}), 33);
    ExpectColumn(Places(launcher, {ADD, REMOVE, UP, DOWN}), 33);
    EXPECT_EQ(at(ADD).left - at(MODULES).right, 16);
    const struct {
        const WCHAR* text;
        LONG left;
        UINT field;
        LONG gap, below;  // from the label to the left edge and from the top of its field
    } labels[] = {{TEXT("Noyau ELF"), 24, KERNEL, 6, 5},
                  {TEXT("Arguments"), 24, ARGUMENTS, 6, 5},
                  {TEXT("RAM (Mio)"), 24, RAM, 6, 6},
                  {TEXT("Délai"), 240, TIME_LIMIT, 4, 6},
                  {TEXT("Largeur"), 240, WIDTH, 6, 6},
                  {TEXT("Hauteur"), 380, HEIGHT, 6, 6},
                  {TEXT("Zoom"), 526, ZOOM, 2, 6},
                  {TEXT("Export PPM"), 24, PICTURE, 6, 5},
                  {TEXT("Primaire · m"), 26, DISK_0, 6, 3},
                  {TEXT("Primaire · s"), 26, DISK_1, 6, 3},
                  {TEXT("Secondaire · m"), 26, DISK_2, 6, 3},
                  {TEXT("Secondaire · s"), 26, DISK_3, 6, 3}};
    for (const auto& row : labels) {
        const RECT field = at(row.field);
        const RECT wanted{row.left, field.top + row.below, field.left - row.gap, field.top + row.below + 20};
        EXPECT_EQ(Text(label(row.text)), Text(wanted));
    }
}

struct Literal {
    UINT id;
    const char* place;
};

void ExpectPlaces(const Launcher& launcher, std::initializer_list<Literal> literals) {
    for (const Literal& literal : literals)
        EXPECT_EQ(Text(PlaceOf(launcher, literal.id)), literal.place) << literal.id;
}

// Those that never move; of rows and columns whose rest is aligned with them, one.
void ExpectFixedPlaces(const Launcher& launcher) {
    ExpectPlaces(launcher, {{LOAD, "12,12 to 124,40"},
                            {SAVE_AS, "252,12 to 408,40"},
                            {RESET, "416,12 to 528,40"},
                            {RAM, "138,166 to 220,191"},
                            {TIME_LIMIT, "400,166 to 504,191"},
                            {WITHOUT_HEADER, "528,166 to 892,192"},
                            {OWN_SIZE, "24,259 to 228,284"},
                            {WIDTH, "300,259 to 370,284"},
                            {HEIGHT, "440,259 to 510,284"},
                            {WITHOUT_WINDOWS, "694,259 to 896,284"}});
    EXPECT_EQ(Text(PlaceOf(launcher, TEXT("RAM : "))), "138,200 to 888,220");
    EXPECT_EQ(Text(PlaceOf(launcher, TEXT("Sans résolution"))), "24,331 to 889,351");
    const RECT zoom = PlaceOf(launcher, ZOOM);
    EXPECT_EQ(zoom.right - zoom.left, 100);
}

void ExpectLowLabels(const Launcher& launcher, const char* first, const char* second, const char* third) {
    EXPECT_EQ(Text(PlaceOf(launcher, TEXT("Laisser vide"))), first);
    EXPECT_EQ(Text(PlaceOf(launcher, TEXT("Images brutes"))), second);
    EXPECT_EQ(Text(PlaceOf(launcher, TEXT("Arguments du module"))), third);
}

TEST(Form, KeepsItsControlsAlignedAtEachSize) {
    LauncherRun run;
    run.Run([&] {
        const Launcher& launcher = run.launcher;
        const auto expect_at = [&](int width, int height, const std::function<void()>& expect_places) {
            SCOPED_TRACE(testing::Message() << width << " by " << height);
            user::ResizeClient(width, height);
            user::OnProgramThread([&] {
                ExpectFixedPlaces(launcher);
                ExpectAligned(launcher);
                expect_places();
            });
        };
        expect_at(1200, 676, [&] {
            ExpectPlaces(launcher, {{CONFIG_LINE, "12,47 to 1188,67"},
                                    {KERNEL, "138,98 to 1064,123"},
                                    {ARGUMENTS, "138,131 to 1176,156"},
                                    {PICTURE, "138,293 to 1064,318"},
                                    {TABS, "12,374 to 1188,614"},
                                    {DISK_0, "164,413 to 1064,438"},
                                    {MODULES, "26,408 to 1034,540"},
                                    {ADD, "1050,408 to 1176,434"},
                                    {LAUNCH, "12,629 to 164,661"},
                                    {STATUS, "442,635 to 1188,673"}});
            EXPECT_EQ(ColumnWidth(launcher, 0), 604);
            EXPECT_EQ(ColumnWidth(launcher, 1), 379);
        });
        expect_at(920, 800, [&] {
            ExpectPlaces(launcher, {{TABS, "12,374 to 908,738"},
                                    {MODULES, "26,408 to 754,664"},
                                    {MODULE_ARGUMENTS, "26,702 to 896,727"},
                                    {LAUNCH, "12,753 to 164,785"},
                                    {STATUS, "442,759 to 908,797"}});
            ExpectLowLabels(launcher, "26,680 to 891,700", "26,705 to 891,725", "26,679 to 836,699");
        });
        expect_at(300, 200, [&] {  // not smaller than at the start
            ExpectPlaces(launcher, {{KERNEL, "138,98 to 784,123"},
                                    {TABS, "12,374 to 908,614"},
                                    {MODULES, "26,408 to 754,540"},
                                    {MODULE_ARGUMENTS, "26,578 to 896,603"},
                                    {LAUNCH, "12,629 to 164,661"},
                                    {SHOW_LOG, "290,629 to 424,661"},
                                    {STATUS, "442,635 to 908,673"}});
            EXPECT_EQ(Text(PlaceOf(launcher, TEXT("Machine"))), "12,74 to 908,224");
            EXPECT_EQ(Text(PlaceOf(launcher, TEXT("Affichage"))), "12,233 to 908,362");
            ExpectLowLabels(launcher, "26,556 to 891,576", "26,581 to 891,601", "26,555 to 836,575");
            EXPECT_EQ(ColumnWidth(launcher, 0), 436);
            EXPECT_EQ(ColumnWidth(launcher, 1), 267);
            ShowWindow(launcher.main_window, SW_MINIMIZE);
        });
        user::OnProgramThread([&] { ShowWindow(launcher.main_window, SW_RESTORE); });
        user::OnProgramThread([&] { ExpectPlaces(launcher, {{TABS, "12,374 to 908,614"}}); });
        EXPECT_FALSE(launcher.dirty) << "changes of page and size are not edits";
    });
}

}  // namespace
