// The sockets of Windows, under the names that both builds share.
#pragma once

#include <winsock2.h>
#include <ws2tcpip.h>

using NativeSocket = SOCKET;
using ByteCount = int;
inline constexpr NativeSocket NO_SOCKET = INVALID_SOCKET;
inline constexpr int SEND_FLAGS = 0;

// A socket that a child process does not inherit.
inline NativeSocket OpenSocket() {
    static const int started = [] {
        WSADATA data{};
        return WSAStartup(MAKEWORD(2, 2), &data);
    }();
    return started == 0 ? WSASocketW(AF_INET, SOCK_STREAM, 0, nullptr, 0, WSA_FLAG_NO_HANDLE_INHERIT)
                        : INVALID_SOCKET;
}

inline void CloseSocket(NativeSocket number) {
    closesocket(number);
}
