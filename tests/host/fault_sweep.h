// Making the platform calls of an operation fail, one after the other.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "cases.h"
#include "platform/host/hooks.h"
#include "platform/host/system/inspect.h"

// The calls of an operation in the order in which it must make them, each with what the operation says when
// it fails; nothing where its failure is of no consequence.
using Steps = std::vector<std::pair<std::string, std::string>>;

// Runs the operation once for each call, which then fails, and once more with no fault; looks at what is left
// each time. `check` is told whether the operation failed. No handle may be left open.
template <typename Operation, typename Check>
void Sweep(const Steps& steps, const Operation& operation, const Check& check) {
    for (unsigned nth = 1; nth <= steps.size() + 1; ++nth) {
        const auto [call, start] = nth <= steps.size() ? steps[nth - 1] : Steps::value_type("none", "");
        SCOPED_TRACE(std::to_string(nth) + " " + call);
        host::StartTrace();
        host::FailNthCall(nth, ERROR_ACCESS_DENIED);
        const std::string message = MessageOf(operation);
        EXPECT_EQ(host::ClearFaults(), call == "none" ? 0U : 1U);
        EXPECT_EQ(message.empty(), start.empty()) << message;
        EXPECT_TRUE(message.starts_with(start)) << message;
        if (call == "none") {
            std::vector<std::string> calls;
            for (const auto& step : steps)
                calls.push_back(step.first);
            EXPECT_EQ(host::Trace(), calls);
        }
        check(!message.empty());
        EXPECT_EQ(host::OpenHandles(), 0U);
    }
}
