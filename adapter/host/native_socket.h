// The sockets of Linux, under the names that both builds share.
#pragma once

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/select.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstddef>

using NativeSocket = int;
using ByteCount = std::size_t;
inline constexpr NativeSocket NO_SOCKET = -1;
inline constexpr int SEND_FLAGS = MSG_NOSIGNAL;

// A socket that a child process does not inherit.
inline NativeSocket OpenSocket() {
    return socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
}

inline void CloseSocket(NativeSocket number) {
    close(number);
}
