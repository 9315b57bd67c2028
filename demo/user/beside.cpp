// The user of a program in this process: beside it, on a thread of his own whose actions run on the program's
// thread, or within it, called by it.
#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <stdexcept>
#include <thread>
#include <utility>

#include "base/text_convert.h"
#include "demo/user/user.h"
#include "shell/dispatch.h"
#include "shell/run_launcher.h"

namespace user {

namespace {

constexpr UINT ACTION_PERIOD_MS = 10;  // the shortest of the platform

// One action at a time goes from the user's thread to the program's, on the ticks of a timer that no modal
// box stops.
struct Meeting {
    std::mutex mutex;
    std::condition_variable changed;
    std::thread::id program_thread;
    const std::function<void()>* action = nullptr;  // waiting for the program's thread
    bool done = false;
    std::exception_ptr failure;
    bool story_over = false;
    bool program_over = false;
};

Meeting meeting;

struct ProgramOver : std::runtime_error {
    ProgramOver() : std::runtime_error("the program has ended while the user was still acting") {}
};

// What the story has left open goes the way of a user who is in a hurry.
void CloseWhatIsLeft() {
    if (const HWND box = FindWindowW(TEXT("#32770"), nullptr)) {
        for (const int button : {IDNO, IDCANCEL, IDOK}) {
            if (GetDlgItem(box, button) != nullptr) {
                PostMessageW(box, WM_COMMAND, static_cast<WPARAM>(button), 0);
                return;
            }
        }
        return;
    }
    if (const HWND window = FindWindowW(MAIN_WINDOW_CLASS, nullptr))
        PostMessageW(window, WM_CLOSE, 0, 0);
}

void CALLBACK OnActionTick(HWND, UINT, UINT_PTR, DWORD) {
    std::unique_lock lock(meeting.mutex);
    if (meeting.story_over)
        return CloseWhatIsLeft();
    if (meeting.action == nullptr)
        return;
    const auto* action = std::exchange(meeting.action, nullptr);
    lock.unlock();
    std::exception_ptr failure;
    try {
        (*action)();
    } catch (...) {
        failure = std::current_exception();
    }
    lock.lock();
    meeting.failure = failure;
    meeting.done = true;
    meeting.changed.notify_all();
}

// A person acts only on what can be seen: the window or, when the start fails, a box.
bool SomethingShows() {
    return IsWindowVisible(FindWindowW(MAIN_WINDOW_CLASS, nullptr)) != FALSE ||
           IsWindowVisible(FindWindowW(TEXT("#32770"), nullptr)) != FALSE;
}

void RunStory(const std::function<void()>& story, std::exception_ptr& failure) {
    try {
        WaitUntil(SomethingShows, 60000);
        story();
    } catch (...) {
        failure = std::current_exception();
    }
    const std::lock_guard lock(meeting.mutex);
    meeting.story_over = true;
}

}  // namespace

namespace {

// What a person would tell of the screen.
std::string OnScreen() {
    std::string told = Utf8ForDisplay(Title()) + " | " + Utf8ForDisplay(Status());
    if (Box() != nullptr)
        told += " | " + BoxText();
    return told;
}

}  // namespace

int RunWithUser(Launcher& launcher, const std::function<void()>& story) {
    std::exception_ptr failure;
    meeting.program_thread = std::this_thread::get_id();
    meeting.story_over = false;
    meeting.program_over = false;
    const UINT_PTR timer = SetTimer(nullptr, 0, ACTION_PERIOD_MS, OnActionTick);
    std::thread other(RunStory, std::cref(story), std::ref(failure));
    const int exit_code = RunLauncher(launcher, GetModuleHandleW(nullptr), SW_SHOWNORMAL);
    {
        const std::lock_guard lock(meeting.mutex);
        meeting.program_over = true;
        meeting.changed.notify_all();
    }
    other.join();
    KillTimer(nullptr, timer);
    if (IsWindow(launcher.main_window) != FALSE)
        DestroyWindow(launcher.main_window);  // a failed start leaves it to the end of the process
    if (failure)
        std::rethrow_exception(failure);
    return exit_code;
}

namespace {

// A user who is called by the program, whenever there is nothing else that it could do.
struct UserWithin {
    const std::function<unsigned()>* step = nullptr;
    const std::function<void(unsigned)>* pass_time = nullptr;
    bool is_done = false;
    unsigned period_ms = ACTION_PERIOD_MS;
    std::exception_ptr failure;
};

UserWithin within;

unsigned NextDelay() {
    try {
        if (!within.is_done)
            return (*within.step)();
        CloseWhatIsLeft();
    } catch (...) {
        within.failure = std::current_exception();
    }
    return 0;
}

void CALLBACK OnNothingElseToDo(HWND, UINT, UINT_PTR timer, DWORD) {
    const unsigned delay_ms = NextDelay();
    within.is_done = delay_ms == 0;
    const unsigned next_ms = std::max(delay_ms, ACTION_PERIOD_MS);
    if (next_ms != std::exchange(within.period_ms, next_ms))
        SetTimer(nullptr, timer, next_ms, OnNothingElseToDo);
    (*within.pass_time)(next_ms);
}

}  // namespace

int RunWithin(Launcher& launcher, const std::function<unsigned()>& step,
              const std::function<void(unsigned)>& pass_time) {
    meeting.program_thread = std::this_thread::get_id();
    within = {&step, &pass_time, false, ACTION_PERIOD_MS, nullptr};
    const UINT_PTR timer = SetTimer(nullptr, 0, ACTION_PERIOD_MS, OnNothingElseToDo);
    pass_time(ACTION_PERIOD_MS);
    const int exit_code = RunLauncher(launcher, GetModuleHandleW(nullptr), SW_SHOWNORMAL);
    KillTimer(nullptr, timer);
    if (within.failure)
        std::rethrow_exception(within.failure);
    return exit_code;
}

void Do(const std::function<void()>& action) {
    if (std::this_thread::get_id() == meeting.program_thread)
        return action();
    std::unique_lock lock(meeting.mutex);
    meeting.action = &action;
    meeting.done = false;
    meeting.changed.wait(lock, [] { return meeting.done || meeting.program_over; });
    meeting.action = nullptr;
    if (!meeting.done)
        throw ProgramOver();
    if (meeting.failure)
        std::rethrow_exception(meeting.failure);
}

bool WaitUntil(const std::function<bool()>& condition, unsigned limit_ms) {
    if (std::this_thread::get_id() == meeting.program_thread)
        return condition();
    const auto limit = std::chrono::steady_clock::now() + std::chrono::milliseconds(limit_ms);
    try {
        for (;;) {
            bool holds = false;
            Do([&] { holds = condition(); });
            if (holds)
                return true;
            if (std::chrono::steady_clock::now() > limit)
                throw std::runtime_error("waited in vain; on the screen: " + OnScreen());
        }
    } catch (const ProgramOver&) {
        return false;
    }
}

void Pause(unsigned ms) {
    std::this_thread::sleep_for(std::chrono::milliseconds(ms));
}

bool WaitForEnd(unsigned limit_ms) {
    std::unique_lock lock(meeting.mutex);
    return meeting.changed.wait_for(lock, std::chrono::milliseconds(limit_ms),
                                    [] { return meeting.program_over; });
}

}  // namespace user
