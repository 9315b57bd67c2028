// A save that is interrupted by a loss of power or a kill, at each of its calls, leaves the complete old file
// or the complete new one.
#include <gtest/gtest.h>

#include "cases.h"
#include "config/config_file.h"
#include "config/config_text.h"
#include "platform/host/hooks/test_hooks.h"
#include "scratch.h"

namespace {

VmConfig LargeConfig() {
    VmConfig config;
    config.command.assign(400000, WCHAR{'c'});
    return config;
}

struct SavedFile {
    ScratchFolder folder;
    WideText path = folder.Of(TEXT("a.config"));
    VmConfig configs[2] = {{}, LargeConfig()};
    std::string texts[2] = {ComposeConfigText(configs[0]), ComposeConfigText(configs[1])};

    bool IsComplete() const {
        const std::string bytes = ReadBytes(path);
        return bytes == texts[0] || bytes == texts[1];
    }
    // A killed process may leave the temporary file.
    void RemoveTemporaryFiles() const {
        for (const WideText& name : ListFolder(folder.path))
            if (name != TEXT("a.config"))
                Remove(folder.Of(name));
    }
};

TEST(SaveFaults, AKillOrALossOfPowerAfterAnyCallLeavesTheOldOrTheNewFile) {
    const SavedFile file;
    for (const int from : {0, 1}) {
        std::string message = "interrupted";
        for (unsigned calls = 0; !message.empty(); ++calls) {
            SCOPED_TRACE(testing::Message() << calls << " calls");
            ASSERT_LT(calls, 100U);
            WriteBytes(file.path, file.texts[from]);
            host::MakeDiskForgetful();
            for (unsigned failed = 1; failed <= 20; ++failed)
                host::FailNthCall(calls + failed, ERROR_IO_DEVICE);
            message = MessageOf([&] { WriteConfigFile(file.path, file.configs[1 - from]); });
            host::ClearFaults();
            EXPECT_TRUE(file.IsComplete()) << "after a kill";
            host::LosePower();
            EXPECT_TRUE(file.IsComplete());
            file.RemoveTemporaryFiles();
        }
        EXPECT_EQ(ReadBytes(file.path), file.texts[1 - from]) << "a completed save is on the disk";
    }
}

}  // namespace
