#include "platform/native_sockets.h"

namespace zn::platform {

namespace {

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

WSABUF PieceOf(std::span<const unsigned char> bytes) noexcept
{
    return {static_cast<ULONG>(bytes.size()), reinterpret_cast<char*>(const_cast<unsigned char*>(bytes.data()))};
}

} // namespace

int ResolverError(int error) noexcept
{
    return error;
}

int SendTo(Socket socket, std::span<const unsigned char> data, const sockaddr_in& to) noexcept
{
    return sendto(Native(socket), reinterpret_cast<const char*>(data.data()), static_cast<int>(data.size()), 0,
                  Generic(to), sizeof(to));
}

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
    SocketLength size = sizeof(address);
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

int ReceiveDatagram(Socket socket, unsigned char* out, int room, int timeoutSeconds, Endpoint& from) noexcept
{
    if (!WaitReadable(socket, timeoutSeconds))
        return -1;
    sockaddr_in address{};
    SocketLength size = sizeof(address);
    const int length = recvfrom(Native(socket), reinterpret_cast<char*>(out), room, 0, Generic(address), &size);
    from = EndpointOf(address);
    return length;
}

} // namespace zn::platform
