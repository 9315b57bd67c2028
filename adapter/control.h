// The lines of JSON on the emulator's control channel, and their meaning for the machine.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>

inline constexpr std::uint32_t RESET_EXIT_CODE = 3;
inline constexpr std::uint32_t EMULATOR_GONE_EXIT_CODE = 4;

// How a machine ends.
enum class MachineEnd {
    ExitCode,      // the kernel wrote a byte to the exit port
    PoweredOff,    // the kernel switched it off by power management
    Reset,         // a reset or a triple fault; the emulator reports both alike
    Halted,        // the processor is halted with interrupts off
    WindowClosed,  // the user closed the window
    TimeLimit,
    EmulatorGone,  // the emulator ended by itself or does not answer
};

// The engine's exit code; `exit_byte` is the byte on the exit port.
std::uint32_t ExitCodeOf(MachineEnd end, unsigned char exit_byte);

// The line for the log, in French, without a line feed.
std::string EndText(MachineEnd end, unsigned char exit_byte, std::uint32_t limit_ms);

// One line from the emulator: the names of all its objects, nested ones included, each with its value. A
// value that is not a text is empty here.
using ControlLine = std::map<std::string, std::string>;
ControlLine ReadControlLine(std::string_view line);

struct ControlCommand {
    std::string_view name;
    std::string_view argument_name;  // empty: no argument
    std::string_view argument;
};
// The emulator's answer contains the same `id`; answers to earlier commands can come first.
std::string WriteControlLine(const ControlCommand& command, std::string_view id);

// The end that the line reports when it is an event about the machine's end; none for all other lines.
std::optional<MachineEnd> EndOfEvent(const ControlLine& line);

// The instruction address in a listing of the registers; none unless it shows a processor halted for good.
std::optional<std::string> HaltedAt(std::string_view registers);
