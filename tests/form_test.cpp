// The form as the user sees it.
#include "form/form.h"

#include <gtest/gtest.h>

#include "form/control_table.h"
#include "form/form_exchange.h"
#include "launcher_run.h"

namespace {

RECT PlaceInClient(HWND window) {
    RECT place{};
    GetWindowRect(window, &place);
    POINT corner{place.left, place.top};
    ScreenToClient(GetParent(window), &corner);
    return {corner.x, corner.y, place.right - place.left, place.bottom - place.top};
}

void ExpectPlace(UINT id, int x, int y, int width, int height) {
    const HWND control = user::Control(id);
    RECT place{};
    user::Do([&] { place = PlaceInClient(control); });
    EXPECT_EQ(place.left, x) << id;
    EXPECT_EQ(place.top, y) << id;
    EXPECT_EQ(place.right, width) << id;
    EXPECT_EQ(place.bottom, height) << id;
}

int ColumnWidth(int column) {
    const HWND list = user::Control(IDC_MODULE_LIST);
    int width = 0;
    user::Do([&] {
        width = static_cast<int>(SendMessageW(list, LVM_GETCOLUMNWIDTH, static_cast<WPARAM>(column), 0));
    });
    return width;
}

TEST(Form, HasItsControlsInTheOrderOfTheTable) {
    LauncherRun run;
    run.Run([&] {
        const auto& items = run.launcher.layout_items;
        ASSERT_EQ(items.size(), 56U);
        EXPECT_EQ(run.launcher.disk_page_controls.size(), 14U);
        EXPECT_EQ(run.launcher.module_page_controls.size(), 7U);
        std::size_t numbered = 0;
        HWND child = nullptr;
        user::Do([&] { child = GetWindow(run.launcher.main_window, GW_CHILD); });
        for (std::size_t index = 0; index < items.size(); ++index) {
            const ControlRow& row = CONTROL_TABLE[index];
            user::Do([&] {
                SCOPED_TRACE(index + 1);
                const bool is_edit = WideView(row.class_name) == TEXT("EDIT");
                EXPECT_EQ((GetWindowLongPtrW(child, GWL_EXSTYLE) & WS_EX_CLIENTEDGE) != 0, is_edit);
                if (is_edit)
                    EXPECT_EQ(SendMessageW(child, EM_GETLIMITTEXT, 0, 0), 32760);
                EXPECT_EQ(SendMessageW(child, WM_GETFONT, 0, 0),
                          reinterpret_cast<LRESULT>(GetStockObject(DEFAULT_GUI_FONT)));
                EXPECT_EQ(items[index].window, child);
                EXPECT_EQ(static_cast<UINT>(GetDlgCtrlID(child)), row.id);
                const auto style = static_cast<DWORD>(GetWindowLongPtrW(child, GWL_STYLE));
                const DWORD own_bits = row.style & 0xFFFF;  // a combo box hands its scroll bar on to its list
                EXPECT_EQ(style & own_bits, own_bits);
                EXPECT_EQ((style & WS_TABSTOP) != 0, (row.style & WS_TABSTOP) != 0);
                const RECT place = PlaceInClient(child);
                EXPECT_EQ(place.left, row.x);
                EXPECT_EQ(place.top, row.y);
                EXPECT_EQ(place.right, row.width);
                if (row.id != IDC_ZOOM)  // its height counts the dropped-down list
                    EXPECT_EQ(place.bottom, row.height);
                child = GetWindow(child, GW_HWNDNEXT);
            });
            numbered += row.id != 0 ? 1 : 0;
        }
        EXPECT_EQ(numbered, 37U);
        EXPECT_EQ(child, nullptr);
        EXPECT_EQ(ColumnWidth(0), 436);
        EXPECT_EQ(ColumnWidth(1), 267);
    });
}

TEST(Form, FollowsTheWindowAndStopsAtItsFirstSize) {
    LauncherRun run;
    run.Run([&] {
        user::ResizeClient(1200, 800);
        ExpectPlace(IDC_KERNEL_PATH, 138, 98, 926, 25);
        ExpectPlace(IDC_KERNEL_BROWSE, 1074, 98, 102, 25);
        ExpectPlace(IDC_PAGE_TABS, 12, 374, 1176, 364);
        ExpectPlace(IDC_MODULE_LIST, 26, 408, 1008, 256);
        ExpectPlace(IDC_LAUNCH, 12, 753, 152, 32);
        EXPECT_EQ(ColumnWidth(0), 604);
        EXPECT_EQ(ColumnWidth(1), 379);
        user::ResizeClient(300, 200);
        ExpectPlace(IDC_KERNEL_PATH, 138, 98, 646, 25);
        ExpectPlace(IDC_LAUNCH, 12, 629, 152, 32);
        user::Do([&] { ShowWindow(run.launcher.main_window, SW_MINIMIZE); });
        user::Do([&] { ShowWindow(run.launcher.main_window, SW_RESTORE); });
        ExpectPlace(IDC_PAGE_TABS, 12, 374, 896, 240);
    });
}

TEST(Form, NamesItsTabsAndZooms) {
    LauncherRun run;
    run.Run([&] {
        user::Do([&] {
            WCHAR text[32]{};
            const char* const zooms[] = {"100 %", "200 %", "300 %", "400 %"};
            for (WPARAM index = 0; index < 4; ++index) {
                SendMessageW(GetDlgItem(run.launcher.main_window, IDC_ZOOM), CB_GETLBTEXT, index,
                             reinterpret_cast<LPARAM>(text));
                EXPECT_EQ(Narrow(text), zooms[index]);
            }
            const char* const tabs[] = {"Disques IDE", "Modules Multiboot"};
            for (WPARAM index = 0; index < 2; ++index) {
                TCITEMW item{};
                item.mask = TCIF_TEXT;
                item.pszText = text;
                item.cchTextMax = 32;
                SendMessageW(run.launcher.tab_control, TCM_GETITEMW, index, reinterpret_cast<LPARAM>(&item));
                EXPECT_EQ(Narrow(text), tabs[index]);
            }
        });
    });
}

TEST(Form, ShowsOnePageAtATime) {
    LauncherRun run;
    run.Run([&] {
        EXPECT_TRUE(user::IsVisible(IDC_IDE_PRIMARY_MASTER));
        EXPECT_FALSE(user::IsVisible(IDC_MODULE_LIST));
        user::ChooseTab(1);
        EXPECT_TRUE(user::WaitUntil([] { return user::IsVisible(IDC_MODULE_LIST); }));
        EXPECT_FALSE(user::IsVisible(IDC_IDE_PRIMARY_MASTER));
        EXPECT_FALSE(run.launcher.dirty);
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
        user::Click(IDC_EXPLICIT_VIDEO);
        EXPECT_TRUE(
            user::WaitUntil([] { return user::IsEnabled(IDC_WIDTH) && user::IsEnabled(IDC_HEIGHT); }));
        user::Click(IDC_HEADLESS);
        EXPECT_TRUE(user::WaitUntil([] { return !user::IsEnabled(IDC_ZOOM); }));
        EXPECT_TRUE(user::IsEnabled(IDC_WIDTH));
        user::Click(IDC_EXPLICIT_VIDEO);
        EXPECT_TRUE(user::WaitUntil([] { return !user::IsEnabled(IDC_WIDTH); }));
        EXPECT_EQ(Narrow(user::ControlText(IDC_WIDTH)), "800");
        user::Fill(IDC_RAM_MIB, TEXT("1x2"));
        EXPECT_EQ(Narrow(user::ControlText(IDC_RAM_MIB)), "12")
            << "letters cannot be typed into a number field";
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
        {204, TEXT("4294967312"), "Valeur hors limites : RAM (16..2048 Mio)", true},
        {205, TEXT("3600001"), "Valeur hors limites : délai (0..3600000 ms)", true},
        {208, TEXT("9000"), "Valeur hors limites : largeur (1..8192)", false},
        {208, TEXT("99999999999999999999"), "Valeur hors limites : largeur (1..8192)", false},
        {209, TEXT("0"), "Valeur hors limites : hauteur (1..8192)", false},
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
            SetField(run.launcher, IDC_RAM_MIB, TEXT("9"));
            SetField(run.launcher, IDC_WIDTH, TEXT("9000"));
            EXPECT_EQ(ReadFailure(run.launcher), "Valeur hors limites : RAM (16..2048 Mio)")
                << "the first one only";
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
