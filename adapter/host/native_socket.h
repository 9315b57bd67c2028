// The sockets of Linux, under the names of Windows.
#pragma once

#include <netinet/in.h>
#include <sys/select.h>
#include <unistd.h>

using SOCKET = int;
inline constexpr SOCKET INVALID_SOCKET = -1;

// A socket that a child process does not inherit.
inline SOCKET OpenSocket() {
    return socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
}

inline constexpr auto* closesocket = close;
