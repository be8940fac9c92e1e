// The calls that the sockets of all systems share.

#include "platform/native_sockets.h"
#include "platform/platform.h"

#include <cstring>

namespace zn::platform {

bool SetSocketOption(Socket socket, SocketOption option, bool on) noexcept
{
    const int value = on;
    if (option == SocketOption::NoDelay)
        return SetOption(socket, IPPROTO_TCP, TCP_NODELAY, value);
    return SetOption(socket, SOL_SOCKET, option == SocketOption::ReuseAddress ? kReuseAddress : SO_KEEPALIVE, value);
}

bool SetLinger(Socket socket, int seconds) noexcept
{
    linger value{};
    value.l_onoff = 1;
    value.l_linger = static_cast<std::uint16_t>(seconds);
    return SetOption(socket, SOL_SOCKET, SO_LINGER, value);
}

bool BindSocket(Socket socket, Endpoint local) noexcept
{
    const sockaddr_in address = AddressOf(local);
    return bind(Native(socket), Generic(address), sizeof(address)) == 0;
}

bool ListenSocket(Socket socket, int backlog) noexcept
{
    return listen(Native(socket), backlog) == 0;
}

bool LocalEndpoint(Socket socket, Endpoint& local) noexcept
{
    sockaddr_in address{};
    SocketLength size = sizeof(address);
    if (getsockname(Native(socket), Generic(address), &size) != 0)
        return false;
    local = EndpointOf(address);
    return true;
}

bool ResolveHost(const char* host, std::uint32_t& address) noexcept
{
    const auto numeric = inet_addr(host);
    if (numeric != INADDR_NONE) {
        address = ntohl(numeric);
        return true;
    }
    addrinfo wanted{};
    wanted.ai_family = AF_INET;
    wanted.ai_socktype = SOCK_STREAM;
    addrinfo* found = nullptr;
    const int error = *host ? getaddrinfo(host, nullptr, &wanted, &found) : EAI_NONAME;
    if (error != 0 || !found) {
        SetLastError(ResolverError(error));
        return false;
    }
    sockaddr_in first{};
    std::memcpy(&first, found->ai_addr, sizeof(first));
    address = EndpointOf(first).address;
    freeaddrinfo(found);
    return true;
}

int SendDatagram(Socket socket, std::span<const unsigned char> data, const void* address) noexcept
{
    sockaddr_in to{};
    std::memcpy(&to, address, sizeof(to));
    return SendTo(socket, data, to);
}

int SendDatagram(Socket socket, std::span<const unsigned char> data, Endpoint to) noexcept
{
    return SendTo(socket, data, AddressOf(to));
}

} // namespace zn::platform
