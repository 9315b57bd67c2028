// A two-way channel to the emulator: a TCP port of the loopback address that accepts a single connection.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

class Channel {
public:
    // Listens on a free port. Throws when there is none.
    Channel();
    ~Channel();
    Channel(const Channel&) = delete;
    Channel& operator=(const Channel&) = delete;

    std::uint16_t Port() const;
    bool IsConnected() const;
    // True once the emulator has closed the connection, or the connection is lost.
    bool HasEnded() const;
    // Sends all bytes, and waits while the emulator does not take them. HasEnded is true afterwards when the
    // connection is lost.
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

// Waits for connections or bytes on the channels for at most `limit_ms`, and receives them, at most 64 KiB a
// channel and call.
void AwaitChannels(std::span<Channel* const> channels, unsigned limit_ms);
