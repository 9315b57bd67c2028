// The emulator's control channel: a TCP port of the loopback address that accepts a single connection, and
// the lines of JSON on it.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>

inline constexpr std::uint32_t RESET_EXIT_CODE = 3, EMULATOR_GONE_EXIT_CODE = 4;

enum class ChannelState { Listening, Connected, Ended };

class Channel {
public:
    // Listens on a free port. Throws when that fails.
    Channel();
    ~Channel();
    Channel(const Channel&) = delete;
    Channel& operator=(const Channel&) = delete;

    std::uint16_t Port() const;
    // Ended: the connection was closed by the emulator or lost.
    ChannelState State() const {
        return state_;
    }
    // Sends all bytes and blocks until the emulator has accepted them. When the connection is lost, the rest
    // of the bytes is dropped. Without a connection, does nothing.
    void Send(std::string_view bytes);
    // Waits at most `limit_ms`, below 1000, for the connection or for bytes. Returns the bytes, at most 64
    // KiB.
    std::string Receive(unsigned limit_ms);

private:
    explicit Channel(std::uintptr_t open_socket) : socket_(open_socket) {}

    ChannelState state_ = ChannelState::Listening;
    std::uintptr_t socket_;
};

// One line from the emulator as a map of member names to values. It contains the members of nested objects
// too. A value that is not a string is stored as an empty string. Escaped letters, such as those for a line
// feed, become blanks.
using ControlLine = std::map<std::string, std::string>;
ControlLine ReadControlLine(std::string_view line);

// The line of a command. The emulator's answer has the command's name as its `id`; answers to earlier
// commands can come first. `arguments` are the members of a JSON object. Nothing is escaped.
std::string WriteControlLine(std::string_view name, std::string_view arguments);

// How a machine ends.
struct MachineEnd {
    std::uint32_t exit_code;  // of the engine
    std::string text;         // for the log, in French; empty: the emulator ended, or does not answer
    bool has_screen = true;   // a picture of the screen can still be taken
};

// The end of the machine that an event reports; none when the line is not an event about the machine's end.
std::optional<MachineEnd> EndOfEvent(const ControlLine& line);

// The instruction address in a listing of the registers of 32-bit or 64-bit code; none unless the processor
// is halted with interrupts off.
std::optional<std::string> HaltedAt(std::string_view registers);

// The first byte of a base64 text; none when the text is empty.
std::optional<unsigned char> FirstByte(std::string_view base64);
