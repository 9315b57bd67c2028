// Each test starts from a layer as at the start of the program, in the same folder, whatever the one before
// has left: so all of them run in one process too.
#include <gtest/gtest.h>

#include <filesystem>

#include "platform/host/hooks/test_hooks.h"

namespace {

class Reset : public testing::EmptyTestEventListener {
    void OnTestStart(const testing::TestInfo&) override {
        std::filesystem::current_path(folder_);
        host::ResetLayer();
    }

    std::filesystem::path folder_ = std::filesystem::current_path();
};

// GoogleTest owns its listeners.
const bool IS_ADDED = (testing::UnitTest::GetInstance()->listeners().Append(new Reset), true);

}  // namespace
