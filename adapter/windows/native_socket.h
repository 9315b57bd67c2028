// The sockets of Windows.
#pragma once

#include <winsock2.h>
#include <ws2tcpip.h>

inline constexpr int MSG_NOSIGNAL = 0;  // there are no signals

// A socket that a child process does not inherit.
inline SOCKET OpenSocket() {
    WSADATA data{};
    WSAStartup(MAKEWORD(2, 2), &data);
    return WSASocketW(AF_INET, SOCK_STREAM, 0, nullptr, 0, WSA_FLAG_NO_HANDLE_INHERIT);
}
