// A two-way channel to the emulator: a TCP port of the loopback address that accepts a single connection.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

class Channel {
public:
    // Listens on a free port. Throws when that fails.
    Channel();
    ~Channel();
    Channel(const Channel&) = delete;
    Channel& operator=(const Channel&) = delete;

    std::uint16_t Port() const;
    bool IsConnected() const;
    // Whether the connection existed and was closed by the emulator or lost.
    bool HasEnded() const;
    // Sends all bytes and blocks until the emulator has accepted them. When the connection is lost, the rest
    // of the bytes is dropped and HasEnded is true. Without a connection, does nothing.
    void Send(std::string_view bytes);
    // Returns the bytes received since the last call.
    std::string TakeReceived();

private:
    friend void AwaitChannels(std::span<Channel* const> channels, unsigned limit_ms);

    enum class State { Listening, Connected, Ended };
    void Receive();

    State state_ = State::Listening;
    std::uintptr_t socket_;
    std::string received_;
};

// Waits at most `limit_ms` for a connection or for bytes on the channels. Then each channel accepts its
// connection or receives its bytes, at most 64 KiB in one call.
void AwaitChannels(std::span<Channel* const> channels, unsigned limit_ms);
