// Random actions on the program and on a model of it: after each action, both must have the same state.
// VELDRANE_SEED sets the seed; VELDRANE_LONG=1 runs many more actions.
#include <gtest/gtest.h>

#include <cstdlib>
#include <initializer_list>
#include <optional>
#include <random>

#include "controls.h"
#include "demo/user/user.h"
#include "launcher_run.h"
#include "long/host/launcher_model.h"
#include "platform/host/hooks/test_hooks.h"

namespace {

using namespace control;
using model::Record;
using Box = model::Launcher::Box;

constexpr std::size_t SESSION_ACTIONS = 250;
constexpr unsigned STEP_MS = 10;

struct Action {
    enum { Edit, Click, Zoom, SelectRow, Answer, ChooseFile } kind;
    UINT id = 0;            // the control, or the button of a box
    int row = 0;            // of the module list, -1 for none
    std::string text = {};  // the new text of a field; the name of a file
};

std::string Text(const Action& action) {
    const char* const kinds[] = {"Edit", "Click", "Zoom", "SelectRow", "Answer", "ChooseFile"};
    return std::string(kinds[action.kind]) + " " + std::to_string(action.id) + " " +
           std::to_string(action.row) + " [" + action.text + "]\n";
}

// --- the user ---

struct RandomUser {
    std::mt19937 random;

    bool Once(unsigned in) {
        return random() % in == 0;
    }
    template <typename Item>
    Item OneOf(std::initializer_list<Item> list) {
        return *(list.begin() + random() % list.size());
    }

    Action Edit() {
        if (Once(2))
            return {Action::Edit, OneOf({RAM, TIME_LIMIT, WIDTH, HEIGHT}), 0,
                    Once(4) ? OneOf({"", "0", "15", "2049", "12a", " 5", "8193", "3600001", "4294967312"})
                            : OneOf({"16", "0128", "2048", "1024"})};
        if (Once(2))
            return {Action::Edit, OneOf({ARGUMENTS, MODULE_ARGUMENTS}), 0,
                    OneOf({"", " x ", "é=\"a\" #", "a\tb"})};
        return {Action::Edit, OneOf({KERNEL, PICTURE, DISK_0, DISK_1, DISK_2, DISK_3}), 0,
                OneOf({"", "a.bin", "b c.bin", "D:\\x.img"})};
    }

    Action AnswerBox(Box box) {
        if (box == Box::Error)
            return {Action::Answer, IDOK};
        if (box == Box::Question)
            return {Action::Answer, OneOf<UINT>({IDYES, IDNO, IDCANCEL})};
        if (Once(4))
            return {Action::Answer, IDCANCEL};
        return {Action::ChooseFile, 0, 0, OneOf({"a.bin", "b c.bin", "bon.config", "deux\\b.config"})};
    }

    Action Next(Box box) {
        if (box != Box::None)
            return AnswerBox(box);
        if (Once(3))
            return Edit();
        if (Once(8))
            return {Action::Zoom, ZOOM, 0, OneOf({"1", "2", "3", "4"})};
        if (Once(8))
            return {Action::SelectRow, MODULES, static_cast<int>(random() % 5) - 1};
        if (Once(3))
            return {Action::Click, OneOf({ADD, ADD, REMOVE, UP, DOWN})};
        if (Once(3))
            return {Action::Click, OneOf({BROWSE_KERNEL, BROWSE_PICTURE, BROWSE_DISK_0, BROWSE_DISK_1,
                                          BROWSE_DISK_2, BROWSE_DISK_3})};
        return {Action::Click,
                OneOf({LOAD, SAVE, SAVE_AS, RESET, WITHOUT_HEADER, OWN_SIZE, WITHOUT_WINDOWS})};
    }
};

// --- a session: actions on a program in a new folder, up to the first difference ---

struct Session {
    std::vector<Action> actions;
    std::string difference;  // between the program and the model; empty for none
};

using NextAction = std::function<std::optional<Action>(Box)>;

std::string Difference(const Snapshot& expected, Snapshot seen) {
    std::string text;
    for (const auto& [name, value] : expected)
        if (seen[name] != value)
            text += "  " + name + ": expected [" + value + "], seen [" + seen[name] + "]\n";
    return text;
}

class Player {
public:
    explicit Player(NextAction next) : next_(std::move(next)), model_(Narrow(run_.folder.path), Files()) {
        MakeFolder(run_.folder.Of(TEXT("deux")));
        WriteBytes(run_.folder.Of(TEXT("a.bin")), "=");
        WriteBytes(run_.folder.Of(TEXT("b c.bin")), "=");
        for (const auto& [path, record] : model_.files)
            WriteBytes(Wide(path), FileText(record));
    }

    Session Play() {
        host::ResetLayer();
        host::UseTestClock();
        user::RunWithUserCallback(
            run_.launcher, [&] { return Step(); }, host::AdvanceTestClock);
        return session_;
    }

private:
    std::map<std::string, Record> Files() const {
        const std::string home = Narrow(run_.folder.path);
        Record first({{"kernel", home + "\\a.bin"}, {"zoom", "4"}, {"explicit_video", "1"}});
        first.modules = {{home + "\\a.bin", " un "}, {home + "\\b c.bin", ""}, {"D:\\absent.bin", "=#é"}};
        const Record second({{"kernel", home + "\\deux\\noyau.elf"},
                             {"command", "x"},
                             {"ide_primary_slave", home + "\\disque.img"},
                             {"headless", "1"},
                             {"ram_mib", "512"},
                             {"dump", "C:\\absent\\a.ppm"},
                             {"timeout_ms", "60000"},
                             {"force_no_header", "1"}});
        return {{home + "\\bon.config", first}, {home + "\\deux\\b.config", second}};
    }

    unsigned Step() {
        if (const HWND box = user::Box();
            box != nullptr && GetDlgItem(box, IDNO) != nullptr && GetDlgItem(box, IDCANCEL) == nullptr) {
            PostMessageW(box, WM_COMMAND, IDYES, 0);  // the file exists and is replaced
            return STEP_MS;
        }
        Snapshot seen = TakeSnapshot(run_.launcher);
        for (const auto& [path, record] : model_.files)
            seen["file " + path] = ReadBytes(Wide(path));
        session_.difference = Difference(model_.Expected(), seen);
        const std::optional<Action> action = session_.difference.empty() ? next_(model_.box) : std::nullopt;
        if (!action)
            return 0;
        if (CanDo(*action)) {
            session_.actions.push_back(*action);
            Do(*action);
        }
        return STEP_MS;
    }

    bool CanDo(const Action& action) const {
        const bool answers = action.kind == Action::Answer;
        switch (model_.box) {
            case Box::Error:
                return answers && action.id == IDOK;
            case Box::Question:
                return answers && action.id != IDOK;
            case Box::File:
                return action.kind == Action::ChooseFile || (answers && action.id == IDCANCEL);
            case Box::None:
                break;
        }
        if (action.kind == Action::SelectRow)
            return action.row < static_cast<int>(model_.config.modules.size());
        return !answers && action.kind != Action::ChooseFile && model_.IsEnabled(action.id);
    }

    // Changes the model and sends the program the messages that the user's input would cause.
    void Do(const Action& action) {
        const HWND window = run_.launcher.main_window;
        const int id = static_cast<int>(action.id);
        const auto notify = [&](WORD code) {
            PostMessageW(window, WM_COMMAND, MAKEWPARAM(id, code),
                         reinterpret_cast<LPARAM>(GetDlgItem(window, id)));
        };
        switch (action.kind) {
            case Action::Edit:
                model_.Edit(action.id, action.text);
                SetDlgItemTextW(window, id, Wide(action.text).c_str());
                return;
            case Action::Click:
                if (action.id == WITHOUT_HEADER || action.id == OWN_SIZE || action.id == WITHOUT_WINDOWS)
                    CheckDlgButton(window, id, model_.form[action.id] == "0" ? BST_CHECKED : BST_UNCHECKED);
                model_.Click(action.id);
                return notify(BN_CLICKED);
            case Action::Zoom:
                model_.Edit(ZOOM, action.text);
                SendMessageW(GetDlgItem(window, id), CB_SETCURSEL, static_cast<WPARAM>(action.text[0] - '1'),
                             0);
                return notify(CBN_SELCHANGE);
            case Action::SelectRow: {
                LVITEMW item{};
                item.state = action.row < 0 ? 0 : LVIS_SELECTED | LVIS_FOCUSED;
                item.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
                const int changed = action.row < 0 ? model_.selected : action.row;
                if (changed >= 0)
                    SendMessageW(run_.launcher.module_list, LVM_SETITEMSTATE, static_cast<WPARAM>(changed),
                                 reinterpret_cast<LPARAM>(&item));
                return model_.SelectRow(action.row);
            }
            case Action::Answer:
                if (model_.box == Box::Question)
                    model_.AnswerQuestion(id);
                else
                    model_.CloseErrorOrCancelFile();
                PostMessageW(user::Box(), WM_COMMAND, action.id, 0);
                return;
            case Action::ChooseFile:
                model_.ChooseFile(model_.home + "\\" + action.text);
                SetWindowTextW(user::FileNameField(), run_.folder.Of(Wide(action.text)).c_str());
                PostMessageW(user::Box(), WM_COMMAND, IDOK, 0);
                return;
        }
    }

    LauncherRun run_;
    NextAction next_;
    model::Launcher model_;
    Session session_;
};

Session Replay(const std::vector<Action>& actions) {
    auto next = actions.begin();
    return Player([&](auto) { return next == actions.end() ? std::nullopt : std::optional(*next++); }).Play();
}

// Leaves out one action after another, each one only if the session still ends with a difference.
Session Shortest(Session session) {
    for (std::size_t at = session.actions.size(); at-- > 0;) {
        std::vector<Action> rest = session.actions;
        if (at >= rest.size())
            continue;
        rest.erase(rest.begin() + static_cast<std::ptrdiff_t>(at));
        if (Session shorter = Replay(rest); !shorter.difference.empty())
            session = std::move(shorter);
    }
    return session;
}

TEST(RandomSessions, ShowTheStateOfTheModelAfterEachAction) {
    const char* const seed_text = std::getenv("VELDRANE_SEED");
    const std::size_t wanted = std::getenv("VELDRANE_LONG") != nullptr ? 200000 : 2500;
    std::size_t done = 0;
    for (unsigned seed = seed_text == nullptr ? 1 : static_cast<unsigned>(std::atoi(seed_text));
         done < wanted; ++seed) {
        RandomUser user{std::mt19937(seed)};
        std::size_t left = SESSION_ACTIONS;
        const Session session = Player([&](auto box) {
                                    return left-- > 0 ? std::optional(user.Next(box)) : std::nullopt;
                                }).Play();
        done += SESSION_ACTIONS;
        if (session.difference.empty()) {
            EXPECT_GT(session.actions.size(), SESSION_ACTIONS / 2) << "most actions can be done";
            continue;
        }
        const Session shortest = Shortest(session);
        std::string text;
        for (const Action& action : shortest.actions)
            text += Text(action);
        FAIL() << "VELDRANE_SEED=" << seed << "\n" << text << shortest.difference;
    }
}

}  // namespace
