// Failed allocations.
#include <gtest/gtest.h>

#include <cstdlib>
#include <new>
#include <stdexcept>
#include <string>
#include <utility>

#include "form/form_ids.h"
#include "launch/log_window.h"
#include "launcher_run.h"
#include "platform/host/hooks/test_hooks.h"
#include "shell/show_error.h"

namespace {

thread_local bool fails_next_allocation = false;

}  // namespace

// Not inlined, so that the compiler does not see that they belong to malloc and free.
[[gnu::noinline]] void* operator new(std::size_t size) {
    const bool fails = std::exchange(fails_next_allocation, false);
    void* const memory = fails ? nullptr : std::malloc(size);
    if (memory == nullptr)
        throw std::bad_alloc();
    return memory;
}

[[gnu::noinline]] void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return std::malloc(size);
}

[[gnu::noinline]] void operator delete(void* memory) noexcept {
    std::free(memory);
}

[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace {

TEST(MemoryFaults, AreReportedInPlaceOfAMessageThatCannotBeConverted) {
    LauncherRun run;
    run.Run([&] {
        user::OnProgramThread([&] {
            const std::runtime_error error("une assez longue explication");
            host::FailCall("MessageBoxW", 1, ERROR_NOT_ENOUGH_MEMORY);
            fails_next_allocation = true;
            ShowError(run.launcher, error);
        });
        EXPECT_EQ(Narrow(user::Status()), "Mémoire insuffisante : l'opération n'a pas abouti.");
    });
}

TEST(MemoryFaults, LeaveTheOldTextOfTheLogUntilTheNextTick) {
    LauncherRun run;
    run.Run([&] {
        user::OnProgramThread([&] {
            Launcher& launcher = run.launcher;
            launcher.log_path = run.folder.Of(TEXT("veldranevm.log"));
            WriteBytes(launcher.log_path, "ancien");
            ShowLogWindow(launcher);
            WriteBytes(launcher.log_path, std::string(1000, 'n'));
            const HWND text = GetDlgItem(launcher.log_window, 1);
            fails_next_allocation = true;
            RefreshLogWindow(launcher);
            EXPECT_FALSE(fails_next_allocation);
            EXPECT_EQ(Narrow(user::TextOf(text)), "ancien");
            RefreshLogWindow(launcher);
            EXPECT_EQ(Narrow(user::TextOf(text)), std::string(1000, 'n'));
        });
    });
}

}  // namespace
