// The fixture, its commands and the sweep.
#include "fault/host/command_fixture.h"

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

void AnswerBox(CommandFixture& fixture, HWND box) {
    int answer = IDOK;
    if (GetDlgItem(box, IDYES) != nullptr)
        answer = GetDlgItem(box, IDCANCEL) != nullptr ? IDNO : IDYES;
    else if (const HWND name = GetDlgItem(box, 0x47C))
        SetWindowTextW(name, fixture.chosen_file.c_str());
    else
        fixture.error_boxes.push_back(user::BoxText());
    PostMessageW(box, WM_COMMAND, static_cast<WPARAM>(answer), 0);
}

unsigned Step(CommandFixture& fixture) {
    const bool is_short = fixture.shortage != nullptr && std::exchange(*fixture.shortage, false);
    unsigned delay_ms = 10;
    if (const HWND box = user::Box()) {
        const host::SuspendHooks suspended;
        AnswerBox(fixture, box);
    } else if (fixture.when_shown && IsWindowVisible(user::MainWindow()) != FALSE) {
        KillTimer(user::MainWindow(), 1);
        std::exchange(fixture.when_shown, {})();
        delay_ms = 0;
    }
    if (fixture.shortage != nullptr)
        *fixture.shortage = is_short;
    return delay_ms;
}

// The contents of a new log depend on how far the engine has run.
void AddFiles(const ScratchFolder& folder, Snapshot& snapshot) {
    for (const WideText& name : ListFolder(folder.path)) {
        const std::string bytes = ReadBytes(folder.Of(name));
        snapshot["file " + Narrow(name)] =
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

std::function<void(CommandFixture&)> PressButton(UINT id) {
    return [id](CommandFixture& fixture) { fixture.Press(id); };
}

std::function<void(CommandFixture&)> ChooseFile(const WCHAR* name) {
    return [name](CommandFixture& fixture) { fixture.chosen_file = fixture.run.folder.Of(name); };
}

std::function<void(CommandFixture&)> SetField(int id, const WCHAR* text) {
    return [=](CommandFixture& fixture) { SetDlgItemTextW(fixture.run.launcher.main_window, id, text); };
}

void Nothing(CommandFixture&) {}

void Tick(CommandFixture& fixture) {
    fixture.Tick();
}

void SetLogPath(CommandFixture& fixture) {
    fixture.run.launcher.log_path = fixture.run.folder.Of(TEXT("veldranevm.log"));
}

void OpenLog(CommandFixture& fixture) {
    SetLogPath(fixture);
    ShowLogWindow(fixture.run.launcher);
    WriteBytes(fixture.run.launcher.log_path, "un journal qui a été allongé\n");
}

std::function<void(CommandFixture&)> RunEngine(const WCHAR* command) {
    return [command](CommandFixture& fixture) {
        SetField(IDC_KERNEL_COMMAND, command)(fixture);
        LaunchEngine(fixture.run.launcher, false);
        WaitForSingleObject(fixture.run.launcher.engine_process, INFINITE);
    };
}

// When the log could not be shown after a failed run, the user asks for it.
void TickOrShowLog(CommandFixture& fixture) {
    if (fixture.run.launcher.engine_process != nullptr)
        fixture.Tick();
    else
        fixture.Press(IDC_SHOW_LOG);
}

void ExpectSame(const Snapshot& seen, const Snapshot& expected, const std::vector<std::string>& ignored) {
    Snapshot names = seen;
    names.insert(expected.begin(), expected.end());
    for (const auto& [name, text] : names) {
        if (std::find(ignored.begin(), ignored.end(), name) != ignored.end())
            continue;
        const auto value = [&name = name](const Snapshot& snapshot) {
            return snapshot.contains(name) ? snapshot.at(name) : "(none)";
        };
        EXPECT_EQ(value(seen), value(expected)) << name;
    }
}

}  // namespace

const std::vector<TestedCommand>& TestedCommands() {
    static const std::vector<TestedCommand> commands = {
        {"Load",
         ChooseFile(TEXT("b.config")),
         PressButton(IDC_LOAD),
         {"kernel", "command", "ram_mib", "headless", "ide_primary_master", "ide_primary_slave",
          "ide_secondary_slave", "modules"}},
        {"Save", Nothing, PressButton(IDC_SAVE), {"file a.config"}},
        {"SaveNew",
         [](CommandFixture& fixture) {
             fixture.run.launcher.config_path.clear();
             RefreshTitle(fixture.run.launcher);
         },
         PressButton(IDC_SAVE),
         {"file veldranevm.config"}},
        {"SaveRefused", SetField(IDC_RAM_MIB, TEXT("9")), PressButton(IDC_SAVE), {}},
        {"SaveAs", ChooseFile(TEXT("c.config")), PressButton(IDC_SAVE_AS), {"file c.config"}},
        {"Reset",
         [](CommandFixture& fixture) { SelectModuleRow(fixture.run.launcher, 0); },
         PressButton(IDC_RESET),
         {}},
        {"Launch", Nothing, PressButton(IDC_LAUNCH), {"log_path", "file veldranevm.log"}},
        {"Verify", Nothing, PressButton(IDC_VERIFY), {"log_path", "file veldranevm.log"}},
        {"PollSuccess", RunEngine(TEXT("demo.duree=0")), Tick, {}, true},
        {"PollFailure",
         RunEngine(TEXT("demo.duree=0 demo.code=7")),
         TickOrShowLog,
         {"log", "log text", "status"},
         true},
        {"RefreshLog", OpenLog, Tick, {"log", "log text"}, true},
        {"ShowLog", SetLogPath, PressButton(IDC_SHOW_LOG), {"log", "log text"}, true},
        {"ShowLogAgain", OpenLog, PressButton(IDC_SHOW_LOG), {"log", "log text"}, true},
        {"Browse", ChooseFile(TEXT("d.img")), PressButton(IDC_KERNEL_BROWSE), {}},
        {"EditArguments", Nothing, SetField(IDC_MODULE_ARGS, TEXT("neuf")), {"field 307"}},
        {"AddModule", ChooseFile(TEXT("d.img")), PressButton(IDC_MODULE_ADD), {}},
        {"RemoveModule", Nothing, PressButton(IDC_MODULE_REMOVE), {}},
        {"MoveModuleUp", Nothing, PressButton(IDC_MODULE_UP), {}},
        {"MoveModuleDown", Nothing, PressButton(IDC_MODULE_DOWN), {}},
    };
    return commands;
}

void PrintTo(const TestedCommand& command, std::ostream* out) {
    *out << command.name;
}

int CommandFixture::RunProgram(const std::function<void()>& test, const std::function<void()>& inject_fault) {
    constexpr std::uint64_t MS_PER_READING = 5;
    host::ResetLayer();
    host::UseTestClock(MS_PER_READING);
    when_shown = [&] {
        test();
        run.launcher.dirty = false;
    };
    error_boxes.clear();
    bool has_started = false;
    const auto pass_time = [&](unsigned ms) {
        host::AdvanceTestClock(ms);
        if (!std::exchange(has_started, true) && inject_fault)
            inject_fault();
    };
    const int exit_code = user::RunWithUserCallback(
        run.launcher, [this] { return Step(*this); }, pass_time);
    EXPECT_EQ(host::OpenHandles(), 0U) << "the handle of a running engine is closed too";
    return exit_code;
}

void CommandFixture::SetUp(const TestedCommand& command) {
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

void CommandFixture::Run(const TestedCommand& command) {
    error_boxes.clear();
    command.run(*this);
}

void CommandFixture::Press(UINT id) const {
    EXPECT_EQ(SendMessageW(run.launcher.main_window, WM_COMMAND, MAKEWPARAM(id, BN_CLICKED), 0), 0);
}

void CommandFixture::Tick() const {
    EXPECT_EQ(SendMessageW(run.launcher.main_window, WM_TIMER, 1, 0), 0);
}

Snapshot CommandFixture::TakeSnapshot() const {
    Snapshot snapshot = ::TakeSnapshot(run.launcher);
    snapshot["run is dry"] = std::to_string(run.launcher.run_is_dry);
    snapshot["filling"] = std::to_string(run.launcher.filling);
    AddFiles(run.folder, snapshot);
    return snapshot;
}

void SweepCommand(CommandFixture& fixture, const TestedCommand& command,
                  const std::function<void(unsigned)>& inject_fault, const std::function<bool()>& clear_fault,
                  const std::function<RequiredState(unsigned, const std::string&)>& require) {
    SCOPED_TRACE(command.name);
    fixture.SetUp(command);
    const Snapshot before = fixture.TakeSnapshot();
    fixture.Run(command);
    const Snapshot after = fixture.TakeSnapshot();
    const std::vector<std::string> usual_boxes = fixture.error_boxes;
    for (unsigned nth = 1; !testing::Test::HasFailure(); ++nth) {
        SCOPED_TRACE(nth);
        fixture.SetUp(command);
        ExpectSame(fixture.TakeSnapshot(), before, {});
        inject_fault(nth);
        fixture.Run(command);
        const bool has_failed = clear_fault();
        const Snapshot seen = fixture.TakeSnapshot();
        if (!has_failed) {
            EXPECT_EQ(fixture.error_boxes, usual_boxes);
            return ExpectSame(seen, after, {});
        }
        const RequiredState required = require(nth, seen.at("status"));
        std::vector<std::string> ignored;
        if (required.may_be_partial)
            ignored = command.partial;
        if (required.may_lose_selection) {
            ignored = {"status"};
            if (seen.at("selected_module") == "-1") {
                EXPECT_EQ(seen.at("field 307"), "");
                ignored.insert(ignored.end(), {"selected_module", "selected row", "field 307", "enabled 304",
                                               "enabled 305", "enabled 306", "enabled 307"});
            }
        } else if (!fixture.error_boxes.empty()) {
            EXPECT_EQ(fixture.error_boxes, std::vector{"Veldrane VM\n" + seen.at("status")});
            ignored.emplace_back("status");
        }
        ExpectSame(seen, required.is_done ? after : before, ignored);
        EXPECT_EQ(host::OpenHandles(), fixture.run.launcher.engine_process == nullptr ? 0U : 1U);
        EXPECT_EQ(host::OpenAttributeLists(), 0U);
        if (required.cannot_repeat || (required.is_done && !required.may_be_partial))
            fixture.SetUp(command);
        fixture.Run(command);
        EXPECT_EQ(fixture.error_boxes, usual_boxes);
        ExpectSame(fixture.TakeSnapshot(), after, {"status"});
    }
}
