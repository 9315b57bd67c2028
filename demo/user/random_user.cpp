// Chooses random actions, performs actions, and takes snapshots.
#include "demo/user/random_user.h"

#include <algorithm>
#include <initializer_list>
#include <iterator>
#include <string_view>
#include <utility>

#include "base/text_convert.h"
#include "demo/user/user.h"
#include "form/form_exchange.h"
#include "form/form_ids.h"

namespace user {

namespace {

const char* const KIND_NAMES[] = {"Type",     "Paste",  "Click",  "Zoom",      "Page",   "Row",
                                  "Key",      "Answer", "Choose", "EndEngine", "Toggle", "Grow",
                                  "CloseLog", "Resize", "Show",   "Wait",      "Close"};
constexpr UINT FIELDS[] = {201, 203, 212, 204, 205, 208, 209, 307, 401, 402, 403, 404};
constexpr UINT CHECK_BOXES[] = {206, 207, 211};
constexpr UINT ENABLED_IN_SOME_STATES[] = {208, 209, 210, 304, 305, 306, 307, 105, 106};
constexpr WPARAM CELL_CHARACTERS = 512;
constexpr WPARAM FIRST_ROWS = 8;

HWND ControlOf(const Launcher& launcher, UINT id) {
    return GetDlgItem(launcher.main_window, static_cast<int>(id));
}

std::string TextIn(HWND window) {
    return Utf8ForDisplay(GetControlText(window));
}

void SelectRow(const Launcher& launcher, int row) {
    LVITEMW item{};
    item.state = row < 0 ? 0 : LVIS_SELECTED | LVIS_FOCUSED;
    item.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
    const int changed = row < 0 ? launcher.selected_module : row;
    if (changed >= 0)
        SendMessageW(launcher.module_list, LVM_SETITEMSTATE, static_cast<WPARAM>(changed),
                     reinterpret_cast<LPARAM>(&item));
}

std::string CellText(HWND list, WPARAM row, int column) {
    WCHAR text[CELL_CHARACTERS]{};
    LVITEMW item{};
    item.iSubItem = column;
    item.pszText = text;
    item.cchTextMax = CELL_CHARACTERS;
    SendMessageW(list, LVM_GETITEMTEXTW, row, reinterpret_cast<LPARAM>(&item));
    return Utf8ForDisplay(text);
}

bool HasRow(HWND list, WPARAM row) {
    RECT place{};
    place.left = LVIR_BOUNDS;
    return SendMessageW(list, LVM_GETITEMRECT, row, reinterpret_cast<LPARAM>(&place)) != FALSE;
}

std::string BoxName(HWND owner) {
    const HWND box = Box();
    if (box == nullptr)
        return {};
    if (GetWindow(box, GW_OWNER) != owner)
        return "a question of the file box";
    if (FileNameField() != nullptr)
        return "a file box";
    return BoxText();
}

std::string FocusText(const Launcher& launcher) {
    if (launcher.log_window != nullptr && GetActiveWindow() == launcher.log_window)
        return "in the log";
    const HWND focus = GetFocus();
    const int length = focus == nullptr ? 0 : GetWindowTextLengthW(focus);
    const bool has_text =
        focus != nullptr && (SendMessageW(focus, WM_GETDLGCODE, 0, 0) & DLGC_HASSETSEL) != 0;
    const bool is_whole =
        has_text && length > 0 && SendMessageW(focus, EM_GETSEL, 0, 0) == MAKELPARAM(0, length);
    return std::to_string(GetDlgCtrlID(focus)) + (is_whole ? ", all selected" : "");
}

void AddForm(const Launcher& launcher, Snapshot& snapshot) {
    const auto field = [&](UINT id) -> std::string& { return snapshot["field " + std::to_string(id)]; };
    for (const UINT id : FIELDS)
        field(id) = TextIn(ControlOf(launcher, id));
    for (const UINT id : CHECK_BOXES)
        field(id) = IsDlgButtonChecked(launcher.main_window, static_cast<int>(id)) == BST_CHECKED ? "1" : "0";
    field(IDC_ZOOM) = std::to_string(SendMessageW(ControlOf(launcher, IDC_ZOOM), CB_GETCURSEL, 0, 0) + 1);
    for (const UINT id : ENABLED_IN_SOME_STATES)
        snapshot["enabled " + std::to_string(id)] =
            IsWindowEnabled(ControlOf(launcher, id)) != FALSE ? "yes" : "no";
    const HWND list = launcher.module_list;
    // A long list is represented by its first rows and its last one.
    for (WPARAM row = 0; HasRow(list, row); ++row)
        if (row < FIRST_ROWS || !HasRow(list, row + 1))
            snapshot["rows"] += CellText(list, row, 0) + " : " + CellText(list, row, 1) + "\n";
    snapshot["selected row"] = std::to_string(
        SendMessageW(list, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), MAKELPARAM(LVNI_SELECTED, 0)));
}

void AddRecord(const VmConfig& config, Snapshot& snapshot) {
    const auto add = [&](const char* key, WideView text) { snapshot[key] = Utf8ForDisplay(text); };
    const auto add_number = [&](const char* key, std::uint32_t number) {
        snapshot[key] = NumberText(number);
    };
    add("kernel", config.kernel);
    add("command", config.command);
    add("dump", config.dump);
    add_number("ram_mib", config.ram_mib);
    add_number("width", config.width);
    add_number("height", config.height);
    add_number("zoom", config.zoom);
    add_number("timeout_ms", config.timeout_ms);
    add_number("explicit_video", config.explicit_video ? 1 : 0);
    add_number("headless", config.headless ? 1 : 0);
    add_number("force_no_header", config.force_no_header ? 1 : 0);
    add("ide_primary_master", config.ide[0]);
    add("ide_primary_slave", config.ide[1]);
    add("ide_secondary_master", config.ide[2]);
    add("ide_secondary_slave", config.ide[3]);
    for (const ModuleEntry& module : config.modules)
        snapshot["modules"] += Utf8ForDisplay(module.path) + " : " + Utf8ForDisplay(module.command) + "\n";
}

void AddLog(const Launcher& launcher, Snapshot& snapshot) {
    snapshot["log_path"] = Utf8ForDisplay(launcher.log_path);
    if (launcher.log_window == nullptr)
        return;
    snapshot["log"] = IsWindowVisible(launcher.log_window) != FALSE ? "visible" : "hidden";
    snapshot["log text"] = TextIn(GetDlgItem(launcher.log_window, 1));
}

}  // namespace

std::string Text(const Action& action) {
    return std::string("{Kind::") + KIND_NAMES[static_cast<int>(action.kind)] + ", " +
           std::to_string(action.id) + ", " + std::to_string(action.number) + ", R\"(" + action.text +
           ")\"},";
}

std::vector<Action> ShortestSession(std::vector<Action> session,
                                    const std::function<bool(const std::vector<Action>&)>& fails) {
    bool is_shorter = true;
    for (std::size_t chunk = session.size(); chunk > 1 || is_shorter;) {
        chunk = std::max<std::size_t>(chunk / 2, 1);
        is_shorter = false;
        for (std::size_t at = 0; at < session.size();) {
            std::vector<Action> rest = session;
            const auto from = rest.begin() + static_cast<std::ptrdiff_t>(at);
            rest.erase(from, from + static_cast<std::ptrdiff_t>(std::min(chunk, rest.size() - at)));
            if (fails(rest)) {
                session = std::move(rest);
                is_shorter = true;
            } else {
                at += chunk;
            }
        }
    }
    return session;
}

void Act(const Launcher& launcher, const Action& action) {
    const HWND window = launcher.main_window;
    const HWND control = ControlOf(launcher, action.kind == Kind::Zoom ? IDC_ZOOM : action.id);
    switch (action.kind) {
        case Kind::Type:
            if (GetFocus() != control)
                ClickWindow(control);
            Press(VK_END);
            return Type(WideFromUtf8(action.text));
        case Kind::Paste:
            SetWindowTextW(control, WideFromUtf8(action.text).c_str());
            return;
        case Kind::Click:
            return ClickWindow(control);
        case Kind::Zoom:
        case Kind::Key:
            SetFocus(control);
            return Press(static_cast<WORD>(action.number));
        case Kind::Page:
            SetFocus(launcher.tab_control);  // a click on a tab does not set the focus
            return ChooseTab(action.number);
        case Kind::Row:
            return SelectRow(launcher, action.number);
        case Kind::Answer:
            return FileNameField() != nullptr ? CancelFile() : user::AnswerBox(action.number);
        case Kind::Choose:
            return ChooseFile(WideFromUtf8(action.text));
        case Kind::CloseLog:
            SendMessageW(launcher.log_window, WM_CLOSE, 0, 0);
            return;
        case Kind::Resize:
            return ResizeClient(920 + action.number, 676 + action.number / 2);
        case Kind::Show:
            ShowWindow(window, action.number);
            return;
        case Kind::Close:
            return CloseMainWindow();
        default:
            return;
    }
}

Snapshot TakeSnapshot(const Launcher& launcher) {
    Snapshot snapshot;
    snapshot["title"] = TextIn(launcher.main_window);
    snapshot["line"] = TextIn(launcher.path_label);
    snapshot["status"] = TextIn(launcher.status_label);
    snapshot["box"] = BoxName(launcher.main_window);
    snapshot["dirty"] = launcher.dirty ? "yes" : "no";
    snapshot["config_path"] = Utf8ForDisplay(launcher.config_path);
    snapshot["run_directory"] = Utf8ForDisplay(launcher.run_directory);
    snapshot["selected_module"] = std::to_string(launcher.selected_module);
    snapshot["engine"] = launcher.engine_process != nullptr ? "runs" : "";
    snapshot["focus"] = FocusText(launcher);
    AddForm(launcher, snapshot);
    AddRecord(launcher.config, snapshot);
    AddLog(launcher, snapshot);
    return snapshot;
}

// --- random actions ---

template <typename List>
auto RandomUser::OneOf(const List& list) {
    return *(std::begin(list) + static_cast<std::ptrdiff_t>(random() % std::size(list)));
}

std::string RandomUser::Path() {
    const std::string name = Once(3) ? files.front() : OneOf(files);
    const std::string forms[] = {name,
                                 "~\\" + name,
                                 "~/./deux/../" + name,
                                 "deux\\..\\" + name,
                                 "..\\" + name,
                                 "\\absent\\" + name,
                                 "D:\\x\\" + name,
                                 "deux\\" + name,
                                 ""};
    return Once(2) ? forms[random() % 2] : OneOf(forms);
}

Action RandomUser::Edit() {
    constexpr UINT PATHS[] = {201, 201, 201, 212, 401, 402, 403, 404};
    constexpr UINT NUMBERS[] = {204, 205, 208, 209};
    const char* const good[] = {"16", "0128", "2048", "1024"};
    const char* const bad[] = {"",   "0",    "15",      "2049",       "12a",
                               " 5", "8193", "3600001", "4294967312", "99999999999999999999"};
    const char* const arguments[] = {"", " x ", "é=\"a\" #", "a\tb"};
    switch (random() % 10) {
        case 0:
            return {Kind::Type, OneOf(FIELDS), 0,
                    OneOf(std::initializer_list<const char*>{" a", " é", " 7"})};
        case 1:
        case 2:
            return {Kind::Paste, OneOf(NUMBERS), 0, Once(4) ? OneOf(bad) : OneOf(good)};
        case 3:
        case 4:
            return {Kind::Paste, IDC_KERNEL_COMMAND, 0, Once(5) ? OneOf(arguments) : OneOf(kernel_arguments)};
        case 5:
        case 6:
            return {Kind::Paste, IDC_MODULE_ARGS, 0, OneOf(arguments)};
        default:
            return {Kind::Paste, OneOf(PATHS), 0, Path()};
    }
}

Action RandomUser::AnswerBox(const std::string& box) {
    if (Once(5))
        return FileOrEngineAction();
    constexpr int BUTTONS[] = {IDOK, IDYES, IDNO, IDCANCEL};
    if (box != "a file box" || Once(3))
        return {Kind::Answer, 0, OneOf(BUTTONS)};
    const std::string name =
        Once(4)   ? OneOf(std::initializer_list<const char*>{"neuf", "neuf.x", "deux\\c", "absent\\d"})
        : Once(2) ? OneOf(configs)
                  : OneOf(files);
    return {Kind::Choose, 0, 0, (Once(2) ? "~\\" : "") + name};
}

// Chooses an action that is possible at any time, also while a box is open.
Action RandomUser::FileOrEngineAction() {
    switch (random() % 8) {
        case 0:
            return {Kind::Toggle, 0, 0, OneOf(Once(2) ? files : configs)};
        case 1:
            return {Kind::Grow, 0, 0,
                    OneOf(std::initializer_list<const char*>{"ligne\n", "\r\n\n", "é", "a\rb@"})};
        case 2:
        case 3:
            return {Kind::EndEngine};
        default:
            return {Kind::Wait, 0, Once(2) ? 10 : 250};
    }
}

Action RandomUser::Next(const Snapshot& seen) {
    constexpr UINT BUTTONS[] = {101, 101, 102, 102, 103, 103, 103, 104, 105, 105, 105,
                                106, 106, 107, 202, 213, 411, 412, 413, 414, 206, 207,
                                211, 303, 303, 303, 303, 304, 305, 305, 306, 306};
    if (!seen.at("box").empty())
        return AnswerBox(seen.at("box"));
    const auto choice = random() % 100;
    if (choice < 34)
        return Edit();
    if (choice < 66)
        return {Kind::Click, OneOf(BUTTONS)};
    if (choice < 70)
        return {Kind::Zoom, 0, Once(2) ? VK_UP : VK_DOWN};
    if (choice < 74)
        return {Kind::Page, 0, Once(3) ? 0 : 1};
    if (choice < 80)
        return {Kind::Row, 0, static_cast<int>(random() % 5) - 1};
    if (choice < 82)
        return {Kind::Key, IDC_MODULE_LIST, Once(2) ? VK_UP : VK_DOWN};
    if (choice < 84)
        return {Kind::Key, OneOf(FIELDS), OneOf(std::initializer_list<int>{VK_RETURN, VK_ESCAPE, VK_TAB})};
    if (choice < 85)
        return {Kind::Resize, 0, static_cast<int>(random() % 200)};
    if (choice < 87)
        return {Kind::Show, 0, Once(3) ? SW_MINIMIZE : SW_RESTORE};
    if (choice < 89)
        return {Kind::CloseLog};
    return choice < 90 ? Action{Kind::Close} : FileOrEngineAction();
}

}  // namespace user
