// The emulator's control channel, a line of JSON each way, and what its words mean for the machine. Plain
// text.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>

// How a machine ends.
enum class MachineEnd {
    ExitCode,      // the kernel wrote a byte to the exit port
    PoweredOff,    // through the power management
    Reset,         // or a triple fault, which is the same to the emulator
    Halted,        // for good: halted with interrupts off
    WindowClosed,  // by the user
    TimeLimit,
    EmulatorGone,  // by itself
};

// The engine's exit code; `written` is the byte on the exit port.
std::uint32_t ExitCodeOf(MachineEnd end, unsigned char written);

// The line for the log.
std::string EndText(MachineEnd end, unsigned char written, std::uint32_t limit_ms);

// One line that the emulator wrote: the text behind each name, whatever object it stands in; empty where that
// is no text.
using ControlLine = std::map<std::string, std::string>;
ControlLine ReadControlLine(std::string_view line);

// A command; the answer has its `id`, and may come behind that to an earlier one.
struct ControlCommand {
    std::string_view name;
    std::string_view argument_name;  // empty: no argument
    std::string_view argument;
};
std::string WriteControlLine(const ControlCommand& command, std::string_view id);

// The end that an event of the emulator tells; none for all other lines.
std::optional<MachineEnd> EndOfEvent(const ControlLine& line);

// Where the processor stands, by the emulator's listing of its registers, when it is halted with interrupts
// off; none otherwise.
std::optional<std::string> HaltedAt(std::string_view registers);
