// Resets the layer and the current directory before each test, so that all tests can also run in one process.
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
const bool is_added = (testing::UnitTest::GetInstance()->listeners().Append(new Reset), true);

}  // namespace
