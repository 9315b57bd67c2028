// Every command with every one of the program's allocations failing once, and with all of them failing for a
// while. A program of its own: the layer lies in a shared library with an operator new of its own, so that
// the one here is the program's alone.
#include <gtest/gtest.h>

#include <algorithm>
#include <tuple>
#include <utility>

#include "form/form_ids.h"
#include "host/command_scene.h"
#include "host/memory/shortage.h"
#include "launch/log_window.h"
#include "platform/host/hooks/test_hooks.h"

namespace {

constexpr const char* NO_LAUNCHER = "Veldrane VM\nCréation du lanceur impossible.";
constexpr const char* NO_LOG_WINDOW = "Veldrane VM\nCréation du journal impossible.";

bool EndShortage() {
    return std::exchange(shortage, {}).came;
}

constexpr const char* REFUSED = "Veldrane VM\nValeur hors limites : RAM (16..2048 Mio)";

void ExpectMemoryBoxes(const std::vector<std::string>& boxes) {
    for (const std::string& box : boxes)
        EXPECT_TRUE(box.starts_with("Veldrane VM\nMémoire insuffisante") || box == NO_LAUNCHER ||
                    box == NO_LOG_WINDOW || box == REFUSED)
            << box;
}

// One allocation fails, or from one on all of them.
class MemoryFaults : public testing::TestWithParam<std::tuple<bool, SceneCommand>> {};

TEST_P(MemoryFaults, AreToldAndLeaveEverythingAsBeforeOrAsAfter) {
    const auto& [lasts, command] = GetParam();
    Scene scene;
    scene.shortage = &shortage.is_on;
    scene.Play([&, lasts = lasts, &command = command] {
        const auto strike = [&](unsigned nth) { shortage = {true, lasts, nth, false}; };
        SweepCommand(scene, command, strike, EndShortage, [&](unsigned, const std::string&) {
            ExpectMemoryBoxes(scene.boxes);
            return Verdict{scene.boxes.empty() || command.told_when_done, true};
        });
    });
}

INSTANTIATE_TEST_SUITE_P(Scene, MemoryFaults,
                         testing::Combine(testing::Bool(), testing::ValuesIn(SceneCommands())),
                         [](const auto& tested) {
                             return std::string(std::get<1>(tested.param).name) +
                                    (std::get<0>(tested.param) ? "ToTheEnd" : "");
                         });

TEST(MemoryFaults, OfTheStartAreToldAndEndTheProgramOrLeaveItWithTheDefaults) {
    for (const bool lasts : {false, true}) {
        bool came = true;
        for (unsigned nth = 1; came; ++nth) {
            SCOPED_TRACE(nth);
            Scene scene;
            scene.run.WriteConfig(TEXT("veldranevm.config"), "ram_mib=256\n");
            scene.shortage = &shortage.is_on;
            bool is_shown = false;
            const int exit_code = scene.Play(
                [&] {
                    is_shown = true;
                    EXPECT_EQ(scene.Look().at("field 204"), scene.boxes.empty() ? "256" : "128");
                },
                [&] {
                    shortage = {true, lasts, nth, false};
                });
            came = EndShortage();
            EXPECT_EQ(exit_code, is_shown ? 0 : 1);
            EXPECT_TRUE(came || scene.boxes.empty());
            EXPECT_TRUE(is_shown || !scene.boxes.empty());
            ExpectMemoryBoxes(scene.boxes);
            EXPECT_EQ(host::OpenHandles(), 0U);
        }
    }
}

TEST(MemoryFaults, ThatLastPileUpNoBoxesOverALogAndItsEnd) {
    Scene scene;
    scene.shortage = &shortage.is_on;
    scene.Play([&] {
        const auto& commands = SceneCommands();
        scene.Set(*std::find_if(commands.begin(), commands.end(), [](const SceneCommand& command) {
            return std::string(command.name) == "PollFailure";
        }));
        ShowLogWindow(scene.run.launcher);
        SetWindowTextW(GetDlgItem(scene.run.launcher.log_window, 1), TEXT(""));
        scene.boxes.clear();
        shortage = {true, true, 0, false};
        for (int tick = 0; tick < 5; ++tick)
            SendMessageW(scene.run.launcher.main_window, WM_TIMER, 1, 0);
        EndShortage();
        EXPECT_LE(scene.boxes.size(), 1U);
        EXPECT_TRUE(IsWindowEnabled(GetDlgItem(scene.run.launcher.main_window, IDC_LAUNCH)));
        scene.Tick();
        EXPECT_NE(scene.Look().at("log text").find("Machine arrêtée, code 7."), std::string::npos);
        EXPECT_EQ(scene.Look().at("status"), "Échec (code 7). Consultez le journal.");
    });
}

}  // namespace
