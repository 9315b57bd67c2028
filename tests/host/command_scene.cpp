// The scene, its commands and the sweep.
#include "host/command_scene.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

#include "form/form_exchange.h"
#include "form/form_ids.h"
#include "form/title.h"
#include "launch/engine_run.h"
#include "launch/log_window.h"
#include "platform/host/hooks/call_hooks.h"
#include "platform/host/hooks/test_hooks.h"
#include "shell/config_commands.h"

namespace {

const char* const FIRST =
    "version=1\nkernel=noyau.elf\ncommand=demo.duree=0\nide_primary_master=d.img\n"
    "ide_secondary_slave=d.img\nmodule_count=3\nmodule.0.path=d.img\nmodule.1.path=noyau.elf\n"
    "module.1.command=un assez long argument\nmodule.2.path=d.img\nmodule.2.command=2\n";
const char* const SECOND =
    "version=1\nkernel=autre noyau.elf\nram_mib=256\nheadless=1\nide_primary_slave=d.img\nmodule_count=2\n"
    "module.0.path=noyau.elf\nmodule.1.path=d.img\nmodule.1.command=un autre argument\n";

void AnswerBox(Scene& scene, HWND box) {
    int answer = IDOK;
    if (GetDlgItem(box, IDYES) != nullptr)
        answer = GetDlgItem(box, IDCANCEL) != nullptr ? IDNO : IDYES;
    else if (const HWND name = GetDlgItem(box, 0x47C))
        SetWindowTextW(name, scene.choice.c_str());
    else
        scene.boxes.push_back(user::BoxText());
    PostMessageW(box, WM_COMMAND, static_cast<WPARAM>(answer), 0);
}

unsigned Step(Scene& scene) {
    const bool is_short = scene.shortage != nullptr && std::exchange(*scene.shortage, false);
    unsigned delay_ms = 10;
    if (const HWND box = user::Box()) {
        const host::SuspendHooks suspended;
        AnswerBox(scene, box);
    } else if (scene.when_shown && IsWindowVisible(user::MainWindow()) != FALSE) {
        KillTimer(user::MainWindow(), 1);
        std::exchange(scene.when_shown, {})();
        delay_ms = 0;
    }
    if (scene.shortage != nullptr)
        *scene.shortage = is_short;
    return delay_ms;
}

// The log of an engine that is still writing is never twice the same.
void LookAtFiles(const ScratchFolder& folder, Sight& sight) {
    for (const WideText& name : ListFolder(folder.path)) {
        const std::string bytes = ReadBytes(folder.Of(name));
        sight["file " + Narrow(name)] =
            name.ends_with(TEXT(".log")) && bytes != "ancien" ? "another log" : bytes;
    }
}

void CloseEngine(Launcher& launcher) {
    if (launcher.engine_process == nullptr)
        return;
    WaitForSingleObject(launcher.engine_process, INFINITE);
    CloseHandle(launcher.engine_process);
    launcher.engine_process = nullptr;
}

void PrepareFiles(const ScratchFolder& folder) {
    for (const WideText& name : ListFolder(folder.path))
        if (name != TEXT("noyau.elf"))
            Remove(folder.Of(name));
    WriteBytes(folder.Of(TEXT("a.config")), FIRST);
    WriteBytes(folder.Of(TEXT("b.config")), SECOND);
    WriteBytes(folder.Of(TEXT("d.img")), std::string(512, 'd'));
    WriteBytes(folder.Of(TEXT("veldranevm.log")), "ancien");
}

std::function<void(Scene&)> Pressed(UINT id) {
    return [id](Scene& scene) { scene.Press(id); };
}

std::function<void(Scene&)> Chosen(const WCHAR* name) {
    return [name](Scene& scene) { scene.choice = scene.run.folder.Of(name); };
}

void Nothing(Scene&) {}

void Tick(Scene& scene) {
    scene.Tick();
}

void TakeLog(Scene& scene) {
    scene.run.launcher.log_path = scene.run.folder.Of(TEXT("veldranevm.log"));
}

void OpenLog(Scene& scene) {
    TakeLog(scene);
    ShowLogWindow(scene.run.launcher);
    WriteBytes(scene.run.launcher.log_path, "un journal qui a été allongé\n");
}

void EndRun(Scene& scene, const WCHAR* command) {
    SetDlgItemTextW(scene.run.launcher.main_window, IDC_KERNEL_COMMAND, command);
    LaunchEngine(scene.run.launcher, false);
    WaitForSingleObject(scene.run.launcher.engine_process, INFINITE);
}

// After a failed run whose log could not be shown, the user asks for it.
void TickOrShowLog(Scene& scene) {
    if (scene.run.launcher.engine_process != nullptr)
        scene.Tick();
    else
        scene.Press(IDC_SHOW_LOG);
}

void ExpectSame(const Sight& seen, const Sight& wanted, const std::vector<std::string>& loose) {
    Sight names = seen;
    names.insert(wanted.begin(), wanted.end());
    for (const auto& [name, text] : names) {
        if (std::find(loose.begin(), loose.end(), name) != loose.end())
            continue;
        const auto at = [&name = name](const Sight& sight) {
            return sight.contains(name) ? sight.at(name) : "(none)";
        };
        EXPECT_EQ(at(seen), at(wanted)) << name;
    }
}

}  // namespace

const std::vector<SceneCommand>& SceneCommands() {
    static const std::vector<SceneCommand> commands = {
        {"Load",
         Chosen(TEXT("b.config")),
         Pressed(IDC_LOAD),
         {"kernel", "command", "ram_mib", "headless", "ide_primary_master", "ide_primary_slave",
          "ide_secondary_slave", "modules"}},
        {"Save", Nothing, Pressed(IDC_SAVE), {"file a.config"}},
        {"SaveNew",
         [](Scene& scene) {
             scene.run.launcher.config_path.clear();
             RefreshTitle(scene.run.launcher);
         },
         Pressed(IDC_SAVE),
         {"file veldranevm.config"}},
        {"SaveRefused",
         [](Scene& scene) { SetDlgItemTextW(scene.run.launcher.main_window, IDC_RAM_MIB, TEXT("9")); },
         Pressed(IDC_SAVE),
         {}},
        {"SaveAs", Chosen(TEXT("c.config")), Pressed(IDC_SAVE_AS), {"file c.config"}},
        {"Reset", Nothing, Pressed(IDC_RESET), {}},
        {"Launch", Nothing, Pressed(IDC_LAUNCH), {"log_path", "file veldranevm.log"}},
        {"Verify", Nothing, Pressed(IDC_VERIFY), {"log_path", "file veldranevm.log"}},
        {"PollSuccess", [](Scene& scene) { EndRun(scene, TEXT("demo.duree=0")); }, Tick, {}, true},
        {"PollFailure",
         [](Scene& scene) { EndRun(scene, TEXT("demo.duree=0 demo.code=7")); },
         TickOrShowLog,
         {"log", "log text", "status"},
         true},
        {"RefreshLog", OpenLog, Tick, {"log", "log text"}, true},
        {"ShowLog", TakeLog, Pressed(IDC_SHOW_LOG), {"log", "log text"}, true},
        {"ShowLogAgain", OpenLog, Pressed(IDC_SHOW_LOG), {"log", "log text"}, true},
        {"Browse", Chosen(TEXT("d.img")), Pressed(IDC_KERNEL_BROWSE), {}},
        {"EditArguments",
         Nothing,
         [](Scene& scene) { SetDlgItemTextW(scene.run.launcher.main_window, IDC_MODULE_ARGS, TEXT("neuf")); },
         {"field 307"}},
        {"AddModule", Chosen(TEXT("d.img")), Pressed(IDC_MODULE_ADD), {}},
        {"RemoveModule", Nothing, Pressed(IDC_MODULE_REMOVE), {}},
        {"MoveModuleUp", Nothing, Pressed(IDC_MODULE_UP), {}},
        {"MoveModuleDown", Nothing, Pressed(IDC_MODULE_DOWN), {}},
    };
    return commands;
}

void PrintTo(const SceneCommand& command, std::ostream* out) {
    *out << command.name;
}

int Scene::Play(const std::function<void()>& test, const std::function<void()>& strike) {
    constexpr std::uint64_t MS_PER_READING = 5;
    host::ResetLayer();
    host::UseTestClock(MS_PER_READING);
    when_shown = [&] {
        test();
        run.launcher.dirty = false;
    };
    boxes.clear();
    bool has_begun = false;
    const auto pass_time = [&](unsigned ms) {
        host::AdvanceTestClock(ms);
        if (!std::exchange(has_begun, true) && strike)
            strike();
    };
    const int exit_code = user::RunWithin(
        run.launcher, [this] { return Step(*this); }, pass_time);
    if (IsWindow(run.launcher.main_window) != FALSE)
        DestroyWindow(run.launcher.main_window);
    EXPECT_EQ(host::OpenHandles(), 0U) << "also of an engine that still runs";
    return exit_code;
}

void Scene::Set(const SceneCommand& command) {
    Launcher& launcher = run.launcher;
    CloseEngine(launcher);
    if (launcher.log_window != nullptr)
        DestroyWindow(launcher.log_window);
    launcher.log_window = nullptr;
    launcher.log_path.clear();
    launcher.run_is_dry = false;
    PrepareFiles(run.folder);
    LoadConfiguration(launcher, run.folder.Of(TEXT("a.config")));
    SelectModuleRow(launcher, 1);
    SetDlgItemTextW(launcher.main_window, IDC_RAM_MIB, TEXT("64"));
    command.prepare(*this);
    SetWindowTextW(launcher.status_label, TEXT("-"));
}

void Scene::Act(const SceneCommand& command) {
    boxes.clear();
    command.act(*this);
}

void Scene::Press(UINT id) const {
    EXPECT_EQ(SendMessageW(run.launcher.main_window, WM_COMMAND, MAKEWPARAM(id, BN_CLICKED), 0), 0);
}

void Scene::Tick() const {
    EXPECT_EQ(SendMessageW(run.launcher.main_window, WM_TIMER, 1, 0), 0);
}

Sight Scene::Look() const {
    Sight sight = user::LookAt(run.launcher);
    sight.erase("focus");
    sight["engine"] += run.launcher.run_is_dry ? " dry" : "";
    sight["filling"] = std::to_string(run.launcher.filling);
    LookAtFiles(run.folder, sight);
    return sight;
}

void SweepCommand(Scene& scene, const SceneCommand& command, const std::function<void(unsigned)>& strike,
                  const std::function<bool()>& calm,
                  const std::function<Verdict(unsigned, const std::string&)>& judge) {
    SCOPED_TRACE(command.name);
    scene.Set(command);
    const Sight before = scene.Look();
    scene.Act(command);
    const Sight after = scene.Look();
    const std::vector<std::string> usual_boxes = scene.boxes;
    for (unsigned nth = 1; !testing::Test::HasFailure(); ++nth) {
        SCOPED_TRACE(nth);
        scene.Set(command);
        ExpectSame(scene.Look(), before, {});
        strike(nth);
        scene.Act(command);
        const bool has_failed = calm();
        const Sight left = scene.Look();
        if (!has_failed) {
            EXPECT_EQ(scene.boxes, usual_boxes);
            return ExpectSame(left, after, {});
        }
        const Verdict verdict = judge(nth, left.at("status"));
        std::vector<std::string> loose;
        if (verdict.is_excused)
            loose = command.loose;
        if (verdict.may_lose_selection) {
            loose = {"status"};
            if (left.at("selected_module") == "-1") {
                EXPECT_EQ(left.at("field 307"), "");
                loose.insert(loose.end(), {"selected_module", "selected row", "field 307", "enabled 304",
                                           "enabled 305", "enabled 306", "enabled 307"});
            }
        } else if (!scene.boxes.empty()) {
            EXPECT_EQ(scene.boxes, std::vector{"Veldrane VM\n" + left.at("status")});
            loose.emplace_back("status");
        }
        ExpectSame(left, verdict.is_done ? after : before, loose);
        EXPECT_EQ(host::OpenHandles(), scene.run.launcher.engine_process == nullptr ? 0U : 1U);
        EXPECT_EQ(host::OpenAttributeLists(), 0U);
        if (verdict.is_over || (verdict.is_done && !verdict.is_excused))
            scene.Set(command);
        scene.Act(command);
        EXPECT_EQ(scene.boxes, usual_boxes);
        ExpectSame(scene.Look(), after, {"status"});
    }
}
