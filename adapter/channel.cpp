// Sockets of the loopback address.
#include "adapter/channel.h"

#include <native_socket.h>

#include <array>
#include <stdexcept>
#include <utility>

namespace {

constexpr std::size_t PIECE_BYTES = 65536;

NativeSocket Native(std::uintptr_t number) {
    return static_cast<NativeSocket>(number);
}

}  // namespace

Channel::Channel() : socket_(static_cast<std::uintptr_t>(OpenSocket())) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (Native(socket_) == NO_SOCKET ||
        bind(Native(socket_), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
        listen(Native(socket_), 1) != 0) {
        if (Native(socket_) != NO_SOCKET)
            CloseSocket(Native(socket_));
        throw std::runtime_error("Aucun port pour parler avec l'émulateur.");
    }
}

Channel::~Channel() {
    CloseSocket(Native(socket_));
}

std::uint16_t Channel::Port() const {
    sockaddr_in address{};
    socklen_t size = sizeof address;
    getsockname(Native(socket_), reinterpret_cast<sockaddr*>(&address), &size);
    return ntohs(address.sin_port);
}

bool Channel::IsConnected() const {
    return state_ == State::Connected;
}

bool Channel::HasEnded() const {
    return state_ == State::Ended;
}

void Channel::Send(std::string_view bytes) {
    while (state_ == State::Connected && !bytes.empty()) {
        const auto sent =
            send(Native(socket_), bytes.data(), static_cast<ByteCount>(bytes.size()), SEND_FLAGS);
        if (sent <= 0)
            state_ = State::Ended;
        else
            bytes.remove_prefix(static_cast<std::size_t>(sent));
    }
}

std::string Channel::TakeReceived() {
    return std::exchange(received_, {});
}

// Accepts the connection or receives bytes, after the platform has reported that either is possible.
void Channel::Receive() {
    if (state_ == State::Listening) {
        const NativeSocket connection = accept(Native(socket_), nullptr, nullptr);
        if (connection == NO_SOCKET)
            return;
        CloseSocket(Native(std::exchange(socket_, static_cast<std::uintptr_t>(connection))));
        state_ = State::Connected;
        return;
    }
    std::array<char, PIECE_BYTES> piece{};
    const auto count = recv(Native(socket_), piece.data(), static_cast<ByteCount>(piece.size()), 0);
    if (count <= 0)
        state_ = State::Ended;
    else
        received_.append(piece.data(), static_cast<std::size_t>(count));
}

void AwaitChannels(std::span<Channel* const> channels, unsigned limit_ms) {
    fd_set readable;
    FD_ZERO(&readable);
    int highest = 0;
    for (const Channel* const channel : channels) {
        if (channel->HasEnded())
            continue;
        FD_SET(Native(channel->socket_), &readable);
        highest = std::max(highest, static_cast<int>(channel->socket_));
    }
    timeval limit{};
    limit.tv_sec = static_cast<decltype(limit.tv_sec)>(limit_ms / 1000);
    limit.tv_usec = static_cast<decltype(limit.tv_usec)>(limit_ms % 1000 * 1000);
    if (select(highest + 1, &readable, nullptr, nullptr, &limit) <= 0)
        return;
    for (Channel* const channel : channels)
        if (!channel->HasEnded() && FD_ISSET(Native(channel->socket_), &readable))
            channel->Receive();
}
