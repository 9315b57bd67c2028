// The socket of the control channel; reads and writes its lines.
#include "adapter/control.h"

#include <native_socket.h>

#include <cstdlib>
#include <stdexcept>
#include <utility>

#include "platform/win32.h"

namespace {

constexpr unsigned long INTERRUPT_FLAG = 0x200;

SOCKET Native(std::uintptr_t number) {
    return static_cast<SOCKET>(number);
}

std::string FieldBehind(std::string_view text, std::string_view name) {
    const std::size_t at = text.find(name);
    const std::size_t start = at + name.size();
    return at == std::string_view::npos ? "" : std::string(text.substr(start, text.find(' ', start) - start));
}

}  // namespace

Channel::Channel() : Channel(static_cast<std::uintptr_t>(OpenSocket())) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (bind(Native(socket_), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
        listen(Native(socket_), 1) != 0)
        throw std::runtime_error("Aucun port pour parler avec l'émulateur.");
}

Channel::~Channel() {
    closesocket(Native(socket_));
}

std::uint16_t Channel::Port() const {
    sockaddr_in address{};
    socklen_t size = sizeof address;
    getsockname(Native(socket_), reinterpret_cast<sockaddr*>(&address), &size);
    return ntohs(address.sin_port);
}

void Channel::Send(std::string_view bytes) {
    while (state_ == ChannelState::Connected && !bytes.empty()) {
        const auto sent =
            send(Native(socket_), bytes.data(), static_cast<socklen_t>(bytes.size()), MSG_NOSIGNAL);
        if (sent <= 0)
            state_ = ChannelState::Ended;
        else
            bytes.remove_prefix(static_cast<std::size_t>(sent));
    }
}

std::string Channel::Receive(unsigned limit_ms) {
    if (state_ == ChannelState::Ended) {
        Sleep(limit_ms);
        return {};
    }
    fd_set readable;
    FD_ZERO(&readable);
    FD_SET(Native(socket_), &readable);
    timeval limit{0, static_cast<decltype(timeval::tv_usec)>(limit_ms * 1000)};
    if (select(static_cast<int>(socket_) + 1, &readable, nullptr, nullptr, &limit) <= 0)
        return {};
    if (state_ == ChannelState::Listening) {
        const SOCKET connection = accept(Native(socket_), nullptr, nullptr);
        if (connection == INVALID_SOCKET)
            return {};
        closesocket(Native(std::exchange(socket_, static_cast<std::uintptr_t>(connection))));
        state_ = ChannelState::Connected;
        return {};
    }
    std::string bytes(65536, '\0');
    const auto count = recv(Native(socket_), bytes.data(), static_cast<socklen_t>(bytes.size()), 0);
    bytes.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
    if (bytes.empty())
        state_ = ChannelState::Ended;
    return bytes;
}

ControlLine ReadControlLine(std::string_view line) {
    ControlLine found;
    std::string name;
    std::string text;
    bool is_text = false;
    for (std::size_t at = 0; at < line.size(); ++at) {
        if (line[at] == '"') {
            is_text = !is_text;
            if (is_text)
                text.clear();
            else if (line.substr(at + 1).starts_with(':'))
                found[name = text];
            else
                found[name] = text;
        } else if (is_text && line[at] == '\\' && at + 1 < line.size()) {
            ++at;
            text += line[at] >= 'a' ? ' ' : line[at];
        } else if (is_text) {
            text += line[at];
        }
    }
    return found;
}

std::string WriteControlLine(std::string_view name, std::string_view arguments) {
    const std::string quoted = "\"" + std::string(name) + "\"";
    return "{\"execute\": " + quoted + ", \"id\": " + quoted + ", \"arguments\": {" + std::string(arguments) +
           "}}\n";
}

std::optional<MachineEnd> EndOfEvent(const ControlLine& line) {
    const auto event = line.find("event");
    const auto reason = line.find("reason");
    if (event == line.end() || event->second != "SHUTDOWN" || reason == line.end())
        return std::nullopt;
    if (reason->second == "guest-shutdown")
        return MachineEnd{0, "Machine éteinte par le noyau."};
    if (reason->second == "guest-reset" || reason->second == "host-qmp-system-reset")
        return MachineEnd{RESET_EXIT_CODE, "Machine réinitialisée par le noyau, ou triple faute."};
    // The engine sends "quit" only after it knows the end. Until then, only the window causes these reasons:
    // its frame and its menu.
    if (reason->second == "host-ui" || reason->second == "host-qmp-quit")
        return MachineEnd{0, "Fenêtre fermée : machine arrêtée.", false};
    return MachineEnd{EMULATOR_GONE_EXIT_CODE, "", false};
}

std::optional<std::string> HaltedAt(std::string_view registers) {
    const std::string flags = FieldBehind(registers, "FL=");  // EFL or RFL
    if (FieldBehind(registers, "HLT=") != "1" || flags.empty() ||
        (std::strtoul(flags.c_str(), nullptr, 16) & INTERRUPT_FLAG) != 0)
        return std::nullopt;
    return FieldBehind(registers, "IP=");  // EIP or RIP
}

std::optional<unsigned char> FirstByte(std::string_view base64) {
    constexpr std::string_view DIGITS = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    if (base64.size() < 2)
        return std::nullopt;
    return static_cast<unsigned char>(DIGITS.find(base64[0]) << 2 | DIGITS.find(base64[1]) >> 4);
}
