// Random actions on the program and on a model of it: after each action, both must have the same state.
// VELDRANE_SEED sets the seed; VELDRANE_LONG=1 runs many more actions.
#include "random_user.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
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
using NextAction = std::function<std::optional<Action>(const user::Snapshot&)>;

const char* const DEFAULT_FILES[] = {"plein.config", "", "bon.config"};
constexpr std::size_t SESSION_ACTIONS = 250;

// --- the user's files ---

const std::string QUICK = "demo.duree=0 demo.lignes=0";
const std::vector<std::string> ARGUMENTS = {QUICK, QUICK + " demo.code=7", QUICK + " demo.attend=fin",
                                            QUICK + " demo.attend=fin demo.texte=é",
                                            QUICK + " demo.attend=fin demo.code=3221225477"};
const std::vector<std::string> FILES = {"noyau.elf", "faux.elf", "disque.img",
                                        "court.img", "a.bin",    "b c.bin"};
const std::vector<std::string> CONFIGS = {"bon.config",        "deux\\b.config", "faux.config",
                                          "veldranevm.config", "dossier",        "tessarun.exe"};

File BigFile(const std::string& home) {
    File file{"version=1\nmodule_count=128\nkernel=noyau.elf\ncommand=" + ARGUMENTS[1] + "\n"};
    file.record.values["kernel"] = home + "\\noyau.elf";
    file.record.values["command"] = ARGUMENTS[1];
    for (int at = 0; at < 128; ++at) {
        file.record.modules.emplace_back(home + "\\a.bin", "");
        file.bytes += "module." + std::to_string(at) + ".path=a.bin\n";
    }
    return file;
}

std::map<std::string, File> FilesIn(const std::string& home, const std::string& default_file) {
    const char* const not_utf8 = "Le fichier doit être encodé en UTF-8.";
    const char* const bad_line = "Ligne de configuration invalide.";
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
        {"noyau.elf", {kernel, not_utf8}},
        {"deux\\noyau.elf", {kernel, not_utf8}},
        {"faux.elf", {"faux", bad_line}},
        {"disque.img", {std::string(512, '\0'), bad_line}},
        {"court.img", {std::string(100, 'x'), bad_line}},
        {"a.bin", {"=", bad_line}},
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
        {"tessarun.exe", {"", not_utf8}},
    };
    File& first = files["veldranevm.config"] = files[default_file.empty() ? "bon.config" : default_file];
    first.exists = !default_file.empty();
    std::map<std::string, File> by_path;
    for (const auto& [name, file] : files)
        by_path[home + "\\" + name] = file;
    return by_path;
}

// --- a session: actions on a program in a new folder, up to the first difference ---

std::string Difference(user::Snapshot expected, user::Snapshot seen) {
    std::string text;
    if (expected.count("focus") == 0)
        seen.erase("focus");  // the model does not know it
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
    std::optional<Action> pending;
    Action last{Kind::Wait};
    user::Snapshot seen_before_action;
    bool starts_engine = false;
    HWND log = nullptr;
    UINT last_field = 0;
    std::uint64_t last_click_ms = 0;
    Clock::time_point last_action_time = Clock::now();

    Session(const NextAction& source, const std::string& default_file)
        : model(Narrow(run.folder.path), FilesIn(Narrow(run.folder.path), default_file)), next(source) {
        MakeFolder(run.folder.Of(TEXT("deux")));
        for (const auto& [path, file] : model.files)
            if (file.exists)
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
            WaitForStartedEngine();
        else if (starts_engine && MayStillChange())
            return 10;
        if (!IS_TIME_SIMULATED) {
            SendMessageW(launcher.main_window, WM_TIMER, 1, 0);
            model.Tick();
        }
        if (launcher.log_window != nullptr)  // it must not cover the main window
            SetWindowPos(launcher.log_window, nullptr, 1390, 990, 0, 0,
                         SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
        user::Snapshot seen = user::TakeSnapshot(launcher);
        if (std::filesystem::is_regular_file(
                NativePath(launcher.config_path.empty() ? run.folder.path : launcher.config_path)))
            seen["file"] = ReadBytes(launcher.config_path);
        log = log == nullptr ? launcher.log_window : log;
        seen["log"] += log == launcher.log_window ? "" : ", another one";
        failure = Difference(model.Expected(), seen);
        if (!failure.empty() && MayStillChange()) {
            // A click on a window that has just been shown can get lost on the platform.
            if (seen == seen_before_action && Clock::now() - last_action_time > std::chrono::seconds(1)) {
                seen_before_action.clear();
                user::Act(launcher, last);
            }
            return 10;
        }
        starts_engine = false;
        const unsigned delay_ms = failure.empty() ? ActNext(seen) : 0;
        if (delay_ms == 0 && launcher.engine_process != nullptr)
            EndEngine(Narrow(launcher.run_directory));
        last_action_time = Clock::now();
        return delay_ms;
    }

    // In real time, the effect of an action takes time.
    bool MayStillChange() const {
        return !IS_TIME_SIMULATED && Clock::now() - last_action_time < std::chrono::seconds(3);
    }

    // Performs the next action. Returns the milliseconds until the next step; 0 at the end of the session.
    unsigned ActNext(const user::Snapshot& seen) {
        for (;;) {
            if (!pending && done.size() < SESSION_ACTIONS)
                pending = next(seen);
            if (!pending)
                return 0;
            if (const unsigned delay_ms = DelayBefore(*pending))
                return PassModelTime(delay_ms);
            Action action = *pending;
            pending.reset();
            const Action portable = action;
            if (action.text.starts_with('~'))
                action.text.replace(0, 1, model.home);
            const bool was_running = model.engine.runs;
            if (!model.Apply(action))
                continue;
            done.push_back(portable);
            starts_engine = model.engine.runs && !was_running;
            if (ClickedField(action) != 0) {
                last_field = ClickedField(action);
                last_click_ms = model.now_ms;
            }
            ChangeFilesOrEngine(action);
            user::Act(run.launcher, action);
            seen_before_action = seen;
            last = action;
            return PassModelTime(action.kind == Kind::Wait ? static_cast<unsigned>(action.number) : 10);
        }
    }

    unsigned PassModelTime(unsigned ms) {
        model.PassTime(IS_TIME_SIMULATED ? ms : 0);
        return IS_TIME_SIMULATED ? ms : 10;
    }

    // Milliseconds to wait so that no tick comes just after the start of an engine, and so that two clicks on
    // a field are not a double click.
    unsigned DelayBefore(const Action& action) const {
        if (!IS_TIME_SIMULATED)
            return 0;
        if (model.Launches(action) && model.TickComesWithin(10))
            return 10;
        return ClickedField(action) != 0 && ClickedField(action) == last_field &&
                       model.now_ms - last_click_ms < 510
                   ? 510
                   : 0;
    }

    static UINT ClickedField(const Action& action) {
        const bool has_field =
            action.kind == Kind::Type || action.kind == Kind::Choose || action.kind == Kind::Page;
        return has_field ? action.id + static_cast<UINT>(action.kind) : 0;
    }

    // --- files and engines ---

    bool EngineHasEnded() const {
        const HANDLE engine = run.launcher.engine_process;
        return engine == nullptr || WaitForSingleObject(engine, 0) == WAIT_OBJECT_0;
    }

    // Until the engine has ended, or writes nothing more before EndEngine.
    void WaitForStartedEngine() const {
        WaitFor([&] {
            const bool is_running = run.Log().find("Machine démarrée.\n") != std::string::npos;
            return EngineHasEnded() || (is_running && !model.engine.has_ended);
        });
    }

    void EndEngine(const std::string& folder) const {
        const WideText end_mark = Wide(folder + "\\fin");
        WriteBytes(end_mark, "");
        WaitFor([&] { return EngineHasEnded(); });
        Remove(end_mark);
    }

    void ToggleFile(const std::string& name) const {
        const bool is_folder = name == "dossier";
        const std::string path = model.home + "\\" + (is_folder ? "veldranevm.config" : name);
        const auto native = NativePath(Wide(path));
        const auto set_aside = NativePath(Wide(model.home + "\\parti"));
        if (is_folder && model.default_is_folder)
            MakeFolder(Wide(path));
        else if (name == "tessarun.exe")
            model.IsFile(path) ? std::filesystem::rename(set_aside, native)
                               : std::filesystem::rename(native, set_aside);
        else if (model.IsFile(path))
            WriteBytes(Wide(path), model.files.at(path).bytes);
        else
            Remove(Wide(path));
    }

    void ChangeFilesOrEngine(const Action& action) const {
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

struct SessionResult {
    std::vector<Action> actions;
    std::string failure;
    std::string default_file;  // the file that veldranevm.config is a copy of; empty for none
};

SessionResult Play(const NextAction& next, const std::string& default_file) {
    BeginSession();
    Session session(next, default_file);
    const int exit_code = user::RunWithUserCallback(
        session.run.launcher, [&] { return session.Step(); }, PassTime);
    if (session.failure.empty() && exit_code != 0)
        session.failure = "exit code: " + std::to_string(exit_code);
    return {session.done, session.failure, default_file};
}

SessionResult Replay(const std::vector<Action>& actions, const std::string& default_file) {
    std::size_t at = 0;
    const auto next = [&](const user::Snapshot&) {
        return at < actions.size() ? std::optional(actions[at++]) : std::nullopt;
    };
    return Play(next, default_file);
}

SessionResult Shortened(const SessionResult& failed) {
    const auto limit = Clock::now() + std::chrono::seconds(60);
    const auto first_difference = [](const std::string& text) { return text.substr(0, text.find(':')); };
    const auto fails_alike = [&](const std::vector<Action>& actions) {
        return Clock::now() < limit && first_difference(Replay(actions, failed.default_file).failure) ==
                                           first_difference(failed.failure);
    };
    return Replay(user::ShortestSession(failed.actions, fails_alike), failed.default_file);
}

std::string Report(const SessionResult& result) {
    const SessionResult shortest = Shortened(result);
    std::string text = "action " + std::to_string(result.actions.size()) + ":\n" + result.failure +
                       "shortest session" +
                       (result.default_file.empty() ? "" : " on " + result.default_file) + ":\n";
    for (const Action& action : shortest.actions)
        text += "  " + Text(action) + "\n";
    return text + shortest.failure;
}

TEST(RandomUser, SeesTheStateOfTheModelAfterEachAction) {
    const char* const seed_text = std::getenv("VELDRANE_SEED");
    const std::size_t wanted = std::getenv("VELDRANE_LONG") != nullptr ? ACTIONS_OF_LONG_TEST : ACTIONS;
    const auto start = Clock::now();
    std::size_t done = 0;
    for (unsigned seed = seed_text == nullptr ? 1 : static_cast<unsigned>(std::atoi(seed_text));
         done < wanted; ++seed) {
        std::printf("VELDRANE_SEED=%u\n", seed);
        std::fflush(stdout);
        user::RandomUser user{std::mt19937(seed), FILES, CONFIGS, ARGUMENTS};
        const SessionResult result =
            Play([&](const user::Snapshot& seen) { return std::optional(user.Next(seen)); },
                 DEFAULT_FILES[seed % std::size(DEFAULT_FILES)]);
        done += result.actions.size() + 1;
        if (!result.failure.empty())
            FAIL() << "VELDRANE_SEED=" << seed << ", " << Report(result);
    }
    const std::chrono::duration<double> seconds = Clock::now() - start;
    std::printf("%zu actions, %.0f a second\n", done, static_cast<double>(done) / seconds.count());
}

}  // namespace
