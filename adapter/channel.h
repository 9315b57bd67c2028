// A channel to the emulator: a port of this machine's own address that takes one connection and is closed to
// all others then. Bytes both ways.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

class Channel {
public:
    // Listens. Throws where the platform has no port.
    Channel();
    ~Channel();
    Channel(const Channel&) = delete;
    Channel& operator=(const Channel&) = delete;

    std::uint16_t Port() const;
    bool IsConnected() const;
    // True once the other side has closed its end, or the connection has broken.
    bool HasEnded() const;
    // Sends it all; the end shows in HasEnded where the connection breaks.
    void Send(std::string_view bytes);
    // What has come since the last call.
    std::string Take();

private:
    friend void AwaitChannels(std::span<Channel* const> channels, unsigned limit_ms);

    enum class State { Listening, Connected, Ended };
    void Serve();

    State state_ = State::Listening;
    std::uintptr_t socket_;
    std::string received_;
};

// Takes connections and bytes in as they come, until there are some or the time is over. Bytes beyond what
// one look takes wait for the next call.
void AwaitChannels(std::span<Channel* const> channels, unsigned limit_ms);
