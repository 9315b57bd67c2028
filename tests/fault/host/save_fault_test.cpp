// A save that is interrupted by a loss of power or a kill, at each of its calls, leaves the complete old file
// or the complete new one.
#include <gtest/gtest.h>

#include "cases.h"
#include "config/config_file.h"
#include "config/config_text.h"
#include "platform/host/hooks/test_hooks.h"
#include "scratch.h"

TEST(SaveFaults, AKillOrALossOfPowerAfterAnyCallLeavesTheOldOrTheNewFile) {
    VmConfig large;
    large.command.assign(400000, WCHAR{'c'});
    const VmConfig configs[] = {{}, large};
    const std::string texts[] = {ComposeConfigText({}), ComposeConfigText(large)};
    for (const int from : {0, 1}) {
        std::string message = "interrupted";
        for (unsigned calls = 0; !message.empty(); ++calls) {
            SCOPED_TRACE(testing::Message() << calls << " calls");
            ASSERT_LT(calls, 100U);
            const ScratchFolder folder;
            const WideText path = folder.Of(TEXT("a.config"));
            WriteBytes(path, texts[from]);
            host::MakeDiskForgetful();
            for (unsigned failed = 1; failed <= 20; ++failed)
                host::FailNthCall(calls + failed, ERROR_IO_DEVICE);
            message = MessageOf([&] { WriteConfigFile(path, configs[1 - from]); });
            host::ClearFaults();
            EXPECT_TRUE(ReadBytes(path) == texts[0] || ReadBytes(path) == texts[1]) << "after a kill";
            host::LosePower();
            EXPECT_TRUE(ReadBytes(path) == texts[0] || ReadBytes(path) == texts[1]);
            EXPECT_EQ(ReadBytes(path) == texts[1 - from], message.empty())
                << "a completed save is on the disk, and no other";
        }
    }
}
