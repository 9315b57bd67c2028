// Every command with every one of the program's allocations failing once, and with all of them failing for a
// while. A program of its own: the layer lies in a shared library with an operator new of its own, so that
// the one here is the program's alone.
#include <gtest/gtest.h>

#include "form/form_ids.h"
#include "host/command_scene.h"
#include "host/memory/shortage.h"
#include "launch/engine_run.h"
#include "platform/host/hooks.h"
#include "platform/host/system/inspect.h"
#include "shell/run_launcher.h"

namespace {

constexpr const char* OUT_OF_MEMORY = "Mémoire insuffisante";
constexpr const char* NO_LOG_WINDOW = "Création du journal impossible.";

bool EndShortage() {
    return std::exchange(shortage, {}).came;
}

class CommandFaults : public testing::TestWithParam<SceneCommand> {};

TEST_P(CommandFaults, OfMemoryAreToldAndLeaveEverythingAsBeforeOrAsAfter) {
    Scene scene;
    scene.shortage = &shortage.is_on;
    scene.Play([&] {
        const auto strike = [](unsigned nth) { shortage = {true, false, nth, false}; };
        SweepCommand(scene, GetParam(), strike, EndShortage, [&](unsigned, const std::string& status) {
            const bool is_told = !scene.boxes.empty();
            if (is_told) {
                EXPECT_EQ(scene.boxes, std::vector{"Veldrane VM\n" + status});
                EXPECT_TRUE(status.starts_with(OUT_OF_MEMORY) || status == NO_LOG_WINDOW) << status;
            }
            return Verdict{!is_told || GetParam().told_when_done, true};
        });
    });
}

INSTANTIATE_TEST_SUITE_P(Scene, CommandFaults, testing::ValuesIn(SceneCommands()),
                         [](const auto& tested) { return tested.param.name; });

}  // namespace
