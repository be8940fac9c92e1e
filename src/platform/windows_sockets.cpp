#include "platform/sockets.h"

#include <cstring>
#include <winsock2.h>
#include <ws2tcpip.h>

namespace zn::platform {

namespace {

// Handles of the system are of 32 bits; all bits set mean none at both widths.
SOCKET Native(Socket socket) noexcept
{
    return socket == kNoSocket ? INVALID_SOCKET : socket;
}

sockaddr_in AddressOf(Endpoint endpoint) noexcept
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(endpoint.port);
    address.sin_addr.s_addr = htonl(endpoint.address);
    return address;
}

Endpoint EndpointOf(const sockaddr_in& address) noexcept
{
    return {ntohl(address.sin_addr.s_addr), ntohs(address.sin_port)};
}

const sockaddr* Generic(const sockaddr_in& address) noexcept
{
    return reinterpret_cast<const sockaddr*>(&address);
}

sockaddr* Generic(sockaddr_in& address) noexcept
{
    return reinterpret_cast<sockaddr*>(&address);
}

// Waits until the socket has something: false with the error when it fails or time runs out.
bool WaitReadable(Socket socket, int seconds) noexcept
{
    if (seconds < 0) {
        WSASetLastError(WSAEINVAL);
        return false;
    }
    if (seconds == 0)
        return true; // the call that follows waits
    fd_set readable;
    FD_ZERO(&readable);
    FD_SET(Native(socket), &readable);
    timeval limit{seconds, 0};
    const int ready = select(0, &readable, nullptr, nullptr, &limit);
    if (ready == 0)
        WSASetLastError(WSAETIMEDOUT);
    return ready > 0;
}

bool SetOption(Socket socket, int level, int option, const void* value, int size) noexcept
{
    return setsockopt(Native(socket), level, option, static_cast<const char*>(value), size) == 0;
}

int SendTo(Socket socket, std::span<const unsigned char> data, const sockaddr_in& to) noexcept
{
    return sendto(Native(socket), reinterpret_cast<const char*>(data.data()), static_cast<int>(data.size()), 0,
                  Generic(to), sizeof(to));
}

WSABUF PieceOf(std::span<const unsigned char> bytes) noexcept
{
    return {static_cast<ULONG>(bytes.size()), reinterpret_cast<char*>(const_cast<unsigned char*>(bytes.data()))};
}

} // namespace

int LastSocketError() noexcept
{
    return WSAGetLastError();
}

int StartSockets(unsigned version) noexcept
{
    WSADATA data;
    return WSAStartup(static_cast<WORD>(version), &data);
}

Socket OpenSocket(int family, int type, int protocol) noexcept
{
    const SOCKET opened = WSASocketW(family, type, protocol, nullptr, 0, WSA_FLAG_OVERLAPPED);
    if (opened != INVALID_SOCKET)
        SetHandleInformation(reinterpret_cast<HANDLE>(opened), HANDLE_FLAG_INHERIT, 0);
    return static_cast<Socket>(opened);
}

bool CloseSocket(Socket socket) noexcept
{
    return closesocket(Native(socket)) == 0;
}

bool SetSocketOption(Socket socket, SocketOption option, bool on) noexcept
{
    const BOOL value = on;
    if (option == SocketOption::NoDelay)
        return SetOption(socket, IPPROTO_TCP, TCP_NODELAY, &value, sizeof(value));
    // Ports that wait for late packets can be bound again without asking, and SO_REUSEADDR would let two listen on one.
    const int name = option == SocketOption::ReuseAddress ? SO_EXCLUSIVEADDRUSE : SO_KEEPALIVE;
    return SetOption(socket, SOL_SOCKET, name, &value, sizeof(value));
}

bool SetLinger(Socket socket, int seconds) noexcept
{
    const linger value{1, static_cast<u_short>(seconds)};
    return SetOption(socket, SOL_SOCKET, SO_LINGER, &value, sizeof(value));
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
    int size = sizeof(address);
    if (getsockname(Native(socket), Generic(address), &size) != 0)
        return false;
    local = EndpointOf(address);
    return true;
}

bool ResolveHost(const char* host, std::uint32_t& address) noexcept
{
    const unsigned long numeric = inet_addr(host);
    if (numeric != INADDR_NONE) {
        address = ntohl(numeric);
        return true;
    }
    addrinfo wanted{};
    wanted.ai_family = AF_INET;
    wanted.ai_socktype = SOCK_STREAM;
    addrinfo* found = nullptr;
    const int error = *host ? getaddrinfo(host, nullptr, &wanted, &found) : WSAHOST_NOT_FOUND;
    if (error != 0 || !found) {
        WSASetLastError(error);
        return false;
    }
    sockaddr_in first{};
    std::memcpy(&first, found->ai_addr, sizeof(first));
    address = EndpointOf(first).address;
    freeaddrinfo(found);
    return true;
}

bool ConnectSocket(Socket socket, Endpoint peer) noexcept
{
    const sockaddr_in address = AddressOf(peer);
    return connect(Native(socket), Generic(address), sizeof(address)) == 0;
}

Socket AcceptSocket(Socket socket, Endpoint& peer, int timeoutSeconds) noexcept
{
    if (!WaitReadable(socket, timeoutSeconds))
        return kNoSocket;
    sockaddr_in address{};
    int size = sizeof(address);
    const SOCKET accepted = accept(Native(socket), Generic(address), &size);
    peer = EndpointOf(address);
    return static_cast<Socket>(accepted);
}

int SendBytes(Socket socket, std::span<const unsigned char> first, std::span<const unsigned char> second) noexcept
{
    WSABUF pieces[2] = {PieceOf(first), PieceOf(second)};
    DWORD sent = 0;
    return WSASend(Native(socket), pieces, 2, &sent, 0, nullptr, nullptr) == 0 ? static_cast<int>(sent) : -1;
}

int ReceiveBytes(Socket socket, unsigned char* out, int room, int timeoutSeconds) noexcept
{
    if (!WaitReadable(socket, timeoutSeconds))
        return -1;
    return recv(Native(socket), reinterpret_cast<char*>(out), room, 0);
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

int ReceiveDatagram(Socket socket, unsigned char* out, int room, int timeoutSeconds, Endpoint& from) noexcept
{
    if (!WaitReadable(socket, timeoutSeconds))
        return -1;
    sockaddr_in address{};
    int size = sizeof(address);
    const int length = recvfrom(Native(socket), reinterpret_cast<char*>(out), room, 0, Generic(address), &size);
    from = EndpointOf(address);
    return length;
}

} // namespace zn::platform
