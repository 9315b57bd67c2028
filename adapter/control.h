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
    Reset,         // a reset or a triple fault; the emulator reports them in the same way
    Halted,        // the processor is halted with interrupts off
    WindowClosed,  // the user closed the window
    TimeLimit,
    EmulatorGone,  // the emulator ended by itself or did not answer at its start
};

// The engine's exit code. `exit_byte` is the byte that the kernel wrote to the exit port.
std::uint32_t ExitCodeOf(MachineEnd end, unsigned char exit_byte);

// The line about the end for the log, in French, without a line feed.
std::string EndText(MachineEnd end, unsigned char exit_byte, std::uint32_t limit_ms);

// One line from the emulator as a map of member names to values. It contains the members of nested objects
// too. A value that is not a string is stored as an empty string.
using ControlLine = std::map<std::string, std::string>;
ControlLine ReadControlLine(std::string_view line);

struct ControlCommand {
    std::string_view name;
    std::string_view argument_name;  // empty: no argument
    std::string_view argument;
};
// The emulator's answer contains the same `id`; answers to earlier commands can come first.
std::string WriteControlLine(const ControlCommand& command, std::string_view id);

// The end of the machine that an event reports; none when the line is not an event about the machine's end.
std::optional<MachineEnd> EndOfEvent(const ControlLine& line);

// The instruction address in a listing of the registers; none unless the processor is halted with interrupts
// off.
std::optional<std::string> HaltedAt(std::string_view registers);
