// A user who does anything at any moment, from a seed, with a model of the launcher beside him: after each
// action the program must look as the model does. VELDRANE_SEED chooses the seed, VELDRANE_LONG=1 a hundred
// times as many actions.
#include "restless_user.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <optional>
#include <thread>

#include "launcher_model.h"
#include "launcher_run.h"

namespace {

using model::File;
using model::Record;
using user::Action;
using user::Kind;
using Clock = std::chrono::steady_clock;
using NextAction = std::function<std::optional<Action>(const user::Looks&)>;

const char* const STARTS[] = {"plein.config", "", "bon.config"};
constexpr std::size_t SESSION = 250;  // actions, then a new program

// --- the user's files ---

const std::string QUICK = "demo.duree=0 demo.lignes=0";
const std::vector<std::string> WORDS = {QUICK, QUICK + " demo.code=7", QUICK + " demo.attend=fin",
                                        QUICK + " demo.attend=fin demo.texte=é",
                                        QUICK + " demo.attend=fin demo.code=3221225477"};
const std::vector<std::string> FILES = {"noyau.elf", "faux.elf", "disque.img",
                                        "court.img", "a.bin",    "b c.bin"};
const std::vector<std::string> CONFIGS = {"bon.config",        "deux\\b.config", "faux.config",
                                          "veldranevm.config", "dossier",        "tessarun.exe"};

File BigFile(const std::string& home) {
    File file{"version=1\nmodule_count=128\nkernel=noyau.elf\ncommand=" + WORDS[1] + "\n"};
    file.record.values["kernel"] = home + "\\noyau.elf";
    file.record.values["command"] = WORDS[1];
    for (int at = 0; at < 128; ++at) {
        file.record.modules.emplace_back(home + "\\a.bin", "");
        file.bytes += "module." + std::to_string(at) + ".path=a.bin\n";
    }
    return file;
}

std::map<std::string, File> FilesIn(const std::string& home, const std::string& start) {
    const char* const no_text = "Le fichier doit être encodé en UTF-8.";
    const char* const no_line = "Ligne de configuration invalide.";
    const std::string kernel = ReadBytes(Wide(home + "\\noyau.elf"));
    Record good({{"kernel", home + "\\noyau.elf"}, {"zoom", "4"}, {"explicit_video", "1"}});
    good.modules = {
        {home + "\\a.bin", " un "}, {home + "\\b c.bin", ""}, {home + "\\deux\\..\\absent.bin", "=#é"}};
    const Record second({{"kernel", home + "\\deux\\noyau.elf"},
                         {"command", QUICK},
                         {"ide_primary_slave", home + "\\disque.img"},
                         {"headless", "1"},
                         {"ram_mib", "512"},
                         {"dump", "C:/x/../absent/a.ppm"},
                         {"timeout_ms", "60000"},
                         {"force_no_header", "1"}});
    std::map<std::string, File> files = {
        {"noyau.elf", {kernel, no_text}},
        {"deux\\noyau.elf", {kernel, no_text}},
        {"faux.elf", {"faux", no_line}},
        {"disque.img", {std::string(512, '\0'), no_line}},
        {"court.img", {std::string(100, 'x'), no_line}},
        {"a.bin", {"=", no_line}},
        {"b c.bin", {"", "Version de configuration non prise en charge (attendu : 1)."}},
        {"bon.config",
         {"\xEF\xBB\xBF# commentaire\r\nversion=1\r\nkernel=noyau.elf\r\nzoom=4\n explicit_video =01\n"
          "module_count=3\nmodule.1.path=b c.bin\nmodule.0.path=.\\x/../a.bin\nmodule.0.command= un \n"
          "module.2.path=" +
              home + "\\deux\\..\\absent.bin\nmodule.2.command==#é",
          "", good}},
        {"deux\\b.config",
         {"version=1\nkernel=noyau.elf\ncommand=" + QUICK +
              "\nide_primary_slave=..\\disque.img\nheadless=1\nram_mib=0512\ndump=C:/x/../absent/a.ppm\n"
              "timeout_ms=60000\nforce_no_header=1\n",
          "", second}},
        {"faux.config", {"version=1\nmystère=1\n", "Clé de configuration inconnue : mystère"}},
        {"plein.config", BigFile(home)},
        {"tessarun.exe", {"", no_text}},
    };
    File& first = files["veldranevm.config"] = files[start.empty() ? "bon.config" : start];
    first.is_there = !start.empty();
    std::map<std::string, File> in_full;
    for (const auto& [name, file] : files)
        in_full[home + "\\" + name] = file;
    return in_full;
}

// --- a session: actions on a program in a fresh folder, up to the first difference ---

std::string Difference(user::Looks expected, user::Looks seen) {
    std::string text;
    if (expected.count("focus") == 0)
        seen.erase("focus");  // it may be anywhere
    for (const auto& [name, value] : seen)
        expected.try_emplace(name);
    for (const auto& [name, value] : expected)
        if (seen[name] != value)
            text += "  " + name + ": expected [" + value + "], seen [" + seen[name] + "]\n";
    return text;
}

void WaitFor(const std::function<bool()>& condition) {
    const auto limit = Clock::now() + std::chrono::seconds(20);
    while (!condition() && Clock::now() < limit)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

struct Session {
    LauncherRun run;
    model::Launcher model;
    const NextAction& next;
    std::vector<Action> done;
    std::string failure;
    std::optional<Action> waiting;  // for its moment
    Action last{Kind::Wait};
    user::Looks before;  // what was seen when the last action began
    bool starts_engine = false;
    HWND log = nullptr;
    UINT last_field = 0;
    std::uint64_t last_click_ms = 0;
    Clock::time_point since = Clock::now();

    Session(const NextAction& source, const std::string& start)
        : model(Narrow(run.folder.path), FilesIn(Narrow(run.folder.path), start)), next(source) {
        MakeFolder(run.folder.Of(TEXT("deux")));
        for (const auto& [path, file] : model.files)
            if (file.is_there)
                WriteBytes(Wide(path), file.bytes);
    }

    unsigned Step() {
        Launcher& launcher = run.launcher;
        if (done.empty() && !launcher.engine_path.starts_with(run.folder.path)) {
            const WideText engine = run.folder.Of(TEXT("tessarun.exe"));
            std::filesystem::remove(NativePath(engine));
            std::filesystem::copy_file(NativePath(launcher.engine_path), NativePath(engine));
            launcher.engine_path = engine;
        }
        if (starts_engine && launcher.engine_process != nullptr)
            LetEngineSettle();
        else if (starts_engine && MayComeLater())
            return 10;
        if (!TimeIsOurs()) {
            SendMessageW(launcher.main_window, WM_TIMER, 1, 0);
            model.Tick();
        }
        if (launcher.log_window != nullptr)  // out of the way
            SetWindowPos(launcher.log_window, nullptr, 1390, 990, 0, 0,
                         SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
        user::Looks seen = user::LookAt(launcher);
        if (std::filesystem::is_regular_file(
                NativePath(launcher.config_path.empty() ? run.folder.path : launcher.config_path)))
            seen["file"] = ReadBytes(launcher.config_path);
        log = log == nullptr ? launcher.log_window : log;
        seen["log"] += log == launcher.log_window ? "" : ", another one";
        failure = Difference(model.Looks(), seen);
        if (!failure.empty() && MayComeLater()) {
            // A click on a window that has just come up can get lost there.
            if (seen == before && Clock::now() - since > std::chrono::seconds(1)) {
                before.clear();
                user::Act(launcher, last);
            }
            return 10;
        }
        starts_engine = false;
        const unsigned delay_ms = failure.empty() ? ActNext(seen) : 0;
        if (delay_ms == 0 && launcher.engine_process != nullptr)
            EndEngine(Narrow(launcher.run_directory));
        since = Clock::now();
        return delay_ms;
    }

    // In real time what an action does takes its time.
    bool MayComeLater() const {
        return !TimeIsOurs() && Clock::now() - since < std::chrono::seconds(3);
    }

    // Milliseconds up to the next step; 0 when there is nothing left to do.
    unsigned ActNext(const user::Looks& seen) {
        for (;;) {
            if (!waiting && done.size() < SESSION)
                waiting = next(seen);
            if (!waiting)
                return 0;
            if (const unsigned delay_ms = DelayBefore(*waiting))
                return PassTimeOf(delay_ms);
            Action action = *waiting;
            waiting.reset();
            const Action told = action;
            if (action.text.starts_with('~'))
                action.text.replace(0, 1, model.home);
            const bool was_running = model.engine.runs;
            if (!model.Apply(action))
                continue;
            done.push_back(told);
            starts_engine = model.engine.runs && !was_running;
            if (FieldOf(action) != 0) {
                last_field = FieldOf(action);
                last_click_ms = model.now_ms;
            }
            ActInTheWorld(action);
            user::Act(run.launcher, action);
            before = seen;
            last = action;
            return PassTimeOf(action.kind == Kind::Wait ? static_cast<unsigned>(action.number) : 10);
        }
    }

    unsigned PassTimeOf(unsigned ms) {
        model.PassTime(TimeIsOurs() ? ms : 0);
        return TimeIsOurs() ? ms : 10;
    }

    // No tick comes between a start and the moment when its engine has settled, and no click makes a double
    // one.
    unsigned DelayBefore(const Action& action) const {
        if (!TimeIsOurs())
            return 0;
        if (model.Launches(action) && model.TickComesWithin(10))
            return 10;
        return FieldOf(action) != 0 && FieldOf(action) == last_field && model.now_ms - last_click_ms < 510
                   ? 510
                   : 0;
    }

    static UINT FieldOf(const Action& action) {
        const bool has_field =
            action.kind == Kind::Type || action.kind == Kind::Choose || action.kind == Kind::Page;
        return has_field ? action.id + static_cast<UINT>(action.kind) : 0;
    }

    // --- what happens outside the program ---

    bool EngineHasEnded() const {
        const HANDLE engine = run.launcher.engine_process;
        return engine == nullptr || WaitForSingleObject(engine, 0) == WAIT_OBJECT_0;
    }

    // Up to where it ends, or writes no more before its sign.
    void LetEngineSettle() const {
        WaitFor([&] {
            const bool plays = run.Log().find("Machine démarrée.\n") != std::string::npos;
            return EngineHasEnded() || (plays && !model.engine.has_ended);
        });
    }

    void EndEngine(const std::string& folder) const {
        const WideText sign = Wide(folder + "\\fin");
        WriteBytes(sign, "");
        WaitFor([&] { return EngineHasEnded(); });
        Remove(sign);
    }

    void ToggleFile(const std::string& name) const {
        const bool is_folder = name == "dossier";
        const std::string path = model.home + "\\" + (is_folder ? "veldranevm.config" : name);
        const auto native = NativePath(Wide(path));
        const auto parked = NativePath(Wide(model.home + "\\parti"));
        if (is_folder && model.default_is_folder)
            MakeFolder(Wide(path));
        else if (name == "tessarun.exe")
            model.IsFile(path) ? std::filesystem::rename(parked, native)
                               : std::filesystem::rename(native, parked);
        else if (model.IsFile(path))
            WriteBytes(Wide(path), model.files.at(path).bytes);
        else
            Remove(Wide(path));
    }

    void ActInTheWorld(const Action& action) const {
        std::string bytes = action.text;
        std::replace(bytes.begin(), bytes.end(), '@', '\0');
        if (action.kind == Kind::EndEngine)
            EndEngine(model.engine.folder);
        else if (action.kind == Kind::Toggle)
            ToggleFile(action.text);
        else if (action.kind == Kind::Grow)
            std::ofstream(NativePath(Wide(model.log_path)), std::ios::binary | std::ios::app) << bytes;
    }
};

struct Played {
    std::vector<Action> actions;
    std::string failure;
    std::string start;  // the file that its default file is a copy of; empty for none
};

Played Play(const NextAction& next, const std::string& start) {
    BeginSession();
    Session session(next, start);
    const int exit_code = user::RunWithin(
        session.run.launcher, [&] { return session.Step(); }, PassTime);
    if (session.failure.empty() && exit_code != 0)
        session.failure = "exit code: " + std::to_string(exit_code);
    return {session.done, session.failure, start};
}

Played Replay(const std::vector<Action>& actions, const std::string& start) {
    std::size_t at = 0;
    const auto next = [&](const user::Looks&) {
        return at < actions.size() ? std::optional(actions[at++]) : std::nullopt;
    };
    return Play(next, start);
}

Played Shrunk(const Played& failed) {
    const auto limit = Clock::now() + std::chrono::seconds(60);
    const auto first_name = [](const std::string& text) { return text.substr(0, text.find(':')); };
    const auto fails_so = [&](const std::vector<Action>& actions) {
        return Clock::now() < limit &&
               first_name(Replay(actions, failed.start).failure) == first_name(failed.failure);
    };
    return Replay(user::Shortest(failed.actions, fails_so), failed.start);
}

std::string Report(const Played& played) {
    const Played shortest = Shrunk(played);
    std::string text = "action " + std::to_string(played.actions.size()) + ":\n" + played.failure +
                       "shortest script" + (played.start.empty() ? "" : " on " + played.start) + ":\n";
    for (const Action& action : shortest.actions)
        text += "  " + Text(action) + "\n";
    return text + shortest.failure;
}

TEST(StoryOfARestlessUser, SeesAtEachMomentWhatTheModelSays) {
    const char* const chosen = std::getenv("VELDRANE_SEED");
    const std::size_t wanted = ActionsOf(std::getenv("VELDRANE_LONG") != nullptr);
    const auto start = Clock::now();
    std::size_t done = 0;
    for (unsigned seed = chosen == nullptr ? 1 : static_cast<unsigned>(std::atoi(chosen)); done < wanted;
         ++seed) {
        std::printf("VELDRANE_SEED=%u\n", seed);
        std::fflush(stdout);
        user::RestlessUser user{std::mt19937(seed), FILES, CONFIGS, WORDS};
        const Played played = Play([&](const user::Looks& seen) { return std::optional(user.Next(seen)); },
                                   STARTS[seed % std::size(STARTS)]);
        done += played.actions.size() + 1;
        if (!played.failure.empty())
            FAIL() << "VELDRANE_SEED=" << seed << ", " << Report(played);
    }
    const std::chrono::duration<double> seconds = Clock::now() - start;
    std::printf("%zu actions, %.0f a second\n", done, static_cast<double>(done) / seconds.count());
}

}  // namespace
