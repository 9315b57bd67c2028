// The form: its texts, its styles, and its layout at several sizes.
#include "form/form.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>

#include "form/form_exchange.h"
#include "form/form_ids.h"
#include "launcher_run.h"

namespace {

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

// The texts of all controls; edit fields in brackets, with their first text.
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
        user::OnProgramThread([&] {
            EXPECT_EQ(TextsOf(run.launcher), FORM_TEXTS);
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
            append(user::Control(IDC_ZOOM), CB_GETLBTEXT, 4, text);
            append(run.launcher.tab_control, TCM_GETITEMW, 2, &tab);
            append(run.launcher.module_list, LVM_GETCOLUMNW, 2, &column);
            EXPECT_EQ(lists, "100 %|200 %|300 %|400 %|Disques IDE|Modules Multiboot|Fichier|Arguments|");
        });
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

// Group boxes and the tab control surround other controls.
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
            << GetDlgCtrlID(control) << " is outside the window: " << Text(place);
        if (IsFrame(control))
            continue;
        for (const auto& [other, taken] : seen)
            EXPECT_TRUE(place.right <= taken.left || place.left >= taken.right || place.bottom <= taken.top ||
                        place.top >= taken.bottom)
                << GetDlgCtrlID(control) << " at " << Text(place) << " covers " << GetDlgCtrlID(other);
        seen.emplace_back(control, place);
    }
}

TEST(Form, KeepsControlsAtTheirEdgesAndApartFromEachOtherAtEachSize) {
    const std::set<int> move_right{202, 213, 303, 304, 305, 306, 411, 412, 413, 414};
    const std::set<int> grow_wider{501, 201, 203, 212, 301, 302, 307, 401, 402, 403, 404, 502};
    const std::set<int> grow_higher{301, 302};
    LauncherRun run;
    run.Run([&] {
        std::vector<HWND> controls;
        std::vector<RECT> first;
        user::OnProgramThread([&] {
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
                user::OnProgramThread([&] { ExpectNoOverlap(controls, {0, 0, size.cx, size.cy}); });
            }
            user::OnProgramThread([&] {
                for (std::size_t at = 0; at < controls.size(); ++at) {
                    const int id = GetDlgCtrlID(controls[at]);
                    const bool is_group = id == 0 && ClassOf(controls[at]) == "Button";
                    RECT wanted = first[at];
                    const bool at_bottom = wanted.top >= 552;
                    wanted.left += move_right.count(id) != 0 ? dx : 0;
                    wanted.right += move_right.count(id) + grow_wider.count(id) != 0 || is_group ? dx : 0;
                    wanted.top += at_bottom ? dy : 0;
                    wanted.bottom += at_bottom || grow_higher.count(id) != 0 ? dy : 0;
                    EXPECT_EQ(Text(PlaceInClient(controls[at])), Text(wanted)) << id << " at " << size.cx;
                }
            });
        }
        user::ResizeClient(1200, 800);
        user::OnProgramThread([&] {
            EXPECT_EQ(ColumnWidth(run.launcher, 0), 604);
            EXPECT_EQ(ColumnWidth(run.launcher, 1), 379);
            EXPECT_EQ(Text(PlaceInClient(GetDlgItem(run.launcher.main_window, IDC_KERNEL_PATH))),
                      "138,98 to 1064,123");
        });
        user::ResizeClient(300, 200);
        user::OnProgramThread([&] {
            EXPECT_EQ(Text(PlaceInClient(run.launcher.module_list)), "26,408 to 754,540")
                << "not smaller than at the start";
            ShowWindow(run.launcher.main_window, SW_MINIMIZE);
        });
        user::OnProgramThread([&] { ShowWindow(run.launcher.main_window, SW_RESTORE); });
        user::OnProgramThread(
            [&] { EXPECT_EQ(Text(PlaceInClient(run.launcher.tab_control)), "12,374 to 908,614"); });
        EXPECT_FALSE(run.launcher.dirty) << "changes of page and size are not edits";
    });
}

}  // namespace
