// What sockets are called by the system that is built for, so that calls that all systems have are written once
// (sockets.cpp); the others are in the system's own file.
#pragma once

#include "platform/sockets.h"

#if defined(_WIN32)
#    include <winsock2.h>
#    include <ws2tcpip.h>
#else
#    include <arpa/inet.h>
#    include <netdb.h>
#    include <netinet/in.h>
#    include <netinet/tcp.h>
#    include <sys/socket.h>
#endif

namespace zn::platform {

#if defined(_WIN32)
using SocketLength = int;
// Ports that wait for late packets can be bound again without asking, and SO_REUSEADDR would let two listen on one.
inline constexpr int kReuseAddress = SO_EXCLUSIVEADDRUSE;

// Handles of the system are of 32 bits; all bits set mean none at both widths.
inline SOCKET Native(Socket socket) noexcept
{
    return socket == kNoSocket ? INVALID_SOCKET : socket;
}
#else
using SocketLength = socklen_t;
inline constexpr int kReuseAddress = SO_REUSEADDR;

inline int Native(Socket socket) noexcept
{
    return static_cast<int>(socket);
}
#endif

inline sockaddr_in AddressOf(Endpoint endpoint) noexcept
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(endpoint.port);
    address.sin_addr.s_addr = htonl(endpoint.address);
    return address;
}

inline Endpoint EndpointOf(const sockaddr_in& address) noexcept
{
    return {ntohl(address.sin_addr.s_addr), ntohs(address.sin_port)};
}

inline const sockaddr* Generic(const sockaddr_in& address) noexcept
{
    return reinterpret_cast<const sockaddr*>(&address);
}

inline sockaddr* Generic(sockaddr_in& address) noexcept
{
    return reinterpret_cast<sockaddr*>(&address);
}

template <class Value>
bool SetOption(Socket socket, int level, int option, const Value& value) noexcept
{
    return setsockopt(Native(socket), level, option, reinterpret_cast<const char*>(&value),
                      static_cast<SocketLength>(sizeof(value))) == 0;
}

// In the system's own file: the number of ResolveHost for one of getaddrinfo, and sending a datagram.
int ResolverError(int error) noexcept;
int SendTo(Socket socket, std::span<const unsigned char> data, const sockaddr_in& to) noexcept;

} // namespace zn::platform
