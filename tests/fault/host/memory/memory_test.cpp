// Runs every command with each allocation of the program failing once, and with all of them failing from each
// one on. In this test program the layer is a shared library with its own operator new, so that only the
// program's allocations fail.
#include <gtest/gtest.h>

#include <algorithm>
#include <tuple>
#include <utility>

#include "fault/host/command_fixture.h"
#include "fault/host/memory/shortage.h"
#include "form/form_ids.h"
#include "launch/log_window.h"

namespace {

constexpr const char* NO_LAUNCHER = "Veldrane VM\nCréation du lanceur impossible.";
constexpr const char* NO_LOG_WINDOW = "Veldrane VM\nCréation du journal impossible.";

constexpr const char* REFUSED = "Veldrane VM\nValeur hors limites : RAM (16..2048 Mio)";

// Returns whether an allocation has failed.
bool EndShortage() {
    return std::exchange(shortage, {}).has_failed;
}

void ExpectMemoryBoxes(const std::vector<std::string>& boxes) {
    for (const std::string& box : boxes)
        EXPECT_TRUE(box.starts_with("Veldrane VM\nMémoire insuffisante") || box == NO_LAUNCHER ||
                    box == NO_LOG_WINDOW || box == REFUSED)
            << box;
}

class MemoryFaults : public testing::TestWithParam<std::tuple<bool, TestedCommand>> {};

TEST_P(MemoryFaults, AreReportedAndLeaveTheStateFromBeforeOrAfterTheCommand) {
    const auto& [lasts, command] = GetParam();
    CommandFixture fixture;
    fixture.shortage = &shortage.is_on;
    fixture.RunProgram([&, lasts = lasts, &command = command] {
        const auto inject_fault = [&](unsigned nth) { shortage = {true, lasts, nth, false}; };
        SweepCommand(fixture, command, inject_fault, EndShortage, [&](unsigned, const std::string&) {
            ExpectMemoryBoxes(fixture.error_boxes);
            return RequiredState{fixture.error_boxes.empty() || command.completes_on_error, true};
        });
    });
}

INSTANTIATE_TEST_SUITE_P(Commands, MemoryFaults,
                         testing::Combine(testing::Bool(), testing::ValuesIn(TestedCommands())),
                         [](const auto& tested) {
                             return std::string(std::get<1>(tested.param).name) +
                                    (std::get<0>(tested.param) ? "AndAllLater" : "");
                         });

TEST(MemoryFaults, OfAStartAreReportedAndEndTheProgramOrLeaveTheDefaults) {
    for (const bool lasts : {false, true}) {
        bool has_failed = true;
        for (unsigned nth = 1; has_failed; ++nth) {
            SCOPED_TRACE(nth);
            CommandFixture fixture;
            fixture.run.WriteConfig(TEXT("veldranevm.config"), "ram_mib=256\n");
            fixture.shortage = &shortage.is_on;
            bool is_shown = false;
            const int exit_code = fixture.RunProgram(
                [&] {
                    is_shown = true;
                    EXPECT_EQ(fixture.TakeSnapshot().at("field 204"),
                              fixture.error_boxes.empty() ? "256" : "128");
                },
                [&] {
                    shortage = {true, lasts, nth, false};
                });
            has_failed = EndShortage();
            EXPECT_EQ(exit_code, is_shown ? 0 : 1);
            EXPECT_TRUE(has_failed || fixture.error_boxes.empty());
            EXPECT_TRUE(is_shown || !fixture.error_boxes.empty());
            ExpectMemoryBoxes(fixture.error_boxes);
        }
    }
}

TEST(MemoryFaults, ThatLastShowAtMostOneBoxWhileARunEnds) {
    CommandFixture fixture;
    fixture.shortage = &shortage.is_on;
    fixture.RunProgram([&] {
        const auto& commands = TestedCommands();
        fixture.SetUp(*std::find_if(commands.begin(), commands.end(), [](const TestedCommand& command) {
            return std::string(command.name) == "PollFailure";
        }));
        ShowLogWindow(fixture.run.launcher);
        SetWindowTextW(GetDlgItem(fixture.run.launcher.log_window, 1), TEXT(""));
        fixture.error_boxes.clear();
        shortage = {true, true, 0, false};
        for (int tick = 0; tick < 5; ++tick)
            SendMessageW(fixture.run.launcher.main_window, WM_TIMER, 1, 0);
        EndShortage();
        EXPECT_LE(fixture.error_boxes.size(), 1U);
        EXPECT_TRUE(IsWindowEnabled(GetDlgItem(fixture.run.launcher.main_window, IDC_LAUNCH)));
        fixture.Tick();
        EXPECT_NE(fixture.TakeSnapshot().at("log text").find("Machine arrêtée, code 7."), std::string::npos);
        EXPECT_EQ(fixture.TakeSnapshot().at("status"), "Échec (code 7). Consultez le journal.");
    });
}

}  // namespace
