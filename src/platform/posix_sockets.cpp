#include "platform/platform.h"
#include "platform/sockets.h"

#include <algorithm>
#include <arpa/inet.h>
#include <array>
#include <cerrno>
#include <chrono>
#include <climits>
#include <cstring>
#include <fcntl.h>
#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <optional>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#ifndef MSG_NOSIGNAL
#    define MSG_NOSIGNAL 0 // where a socket option does it
#endif

namespace zn::platform {

namespace {

constexpr int kTimedOut = 10060;
constexpr std::size_t kJoined = 4096;

int Descriptor(Socket socket) noexcept
{
    return static_cast<int>(socket);
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

template <class Call>
auto Uninterrupted(Call call) noexcept
{
    auto result = call();
    while (result < 0 && errno == EINTR)
        result = call();
    return result;
}

// The time that a call may wait in all, over interruptions and false alarms.
class Deadline {
public:
    explicit Deadline(int seconds) noexcept : limited_(seconds != 0), end_(Clock::now() + std::chrono::seconds(seconds))
    {
    }

    // Waits until the socket has something: false with the error when it fails or time runs out.
    bool Wait(Socket socket, short what) const noexcept
    {
        for (;;) {
            pollfd entry{Descriptor(socket), what, 0};
            const int left = Left();
            const int ready = poll(&entry, 1, left);
            if (ready > 0) {
                errno = EBADF;
                return (entry.revents & POLLNVAL) == 0;
            }
            if (ready < 0 && errno != EINTR)
                return false;
            if (ready == 0 && limited_ && Clock::now() >= end_) {
                SetLastError(kTimedOut);
                return false;
            }
        }
    }

private:
    using Clock = std::chrono::steady_clock;

    int Left() const noexcept
    {
        if (!limited_)
            return -1;
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(end_ - Clock::now()).count();
        return static_cast<int>(std::clamp<long long>(left, 0, INT_MAX));
    }

    bool limited_;
    Clock::time_point end_;
};

// Tries a call first and waits only when there is nothing: what has come already costs no wait. The call gets the flags
// that keep it from blocking where that is not to last.
template <class Call>
int WithTimeout(Socket socket, int seconds, Call call) noexcept
{
    if (seconds < 0) {
        errno = EINVAL;
        return -1;
    }
    const int flags = seconds > 0 ? MSG_DONTWAIT : 0;
    for (std::optional<Deadline> deadline;;) {
        const auto result = Uninterrupted([&] { return call(flags); });
        if (result >= 0 || (errno != EAGAIN && errno != EWOULDBLOCK))
            return static_cast<int>(result);
        if (!deadline)
            deadline.emplace(seconds);
        if (!deadline->Wait(socket, POLLIN))
            return -1;
    }
}

bool SetOption(Socket socket, int level, int option, const void* value, std::size_t size) noexcept
{
    return setsockopt(Descriptor(socket), level, option, value, static_cast<socklen_t>(size)) == 0;
}

// What a fresh descriptor gets where the call that makes it can't be told so.
Socket Prepared(int descriptor) noexcept
{
    if (descriptor < 0)
        return kNoSocket;
#ifdef SO_NOSIGPIPE
    const int on = 1;
    SetOption(static_cast<Socket>(descriptor), SOL_SOCKET, SO_NOSIGPIPE, &on, sizeof(on));
#endif
#ifndef SOCK_CLOEXEC
    fcntl(descriptor, F_SETFD, FD_CLOEXEC);
#endif
    return static_cast<Socket>(descriptor);
}

int ResolverError(int error) noexcept
{
    switch (error) {
    case EAI_SYSTEM:
        return SocketErrorNumber(errno);
    case EAI_AGAIN:
        return 11002;
    case EAI_MEMORY:
        return 10055;
    case EAI_FAIL:
        return 11003;
    default:
        return 11001;
    }
}

// Finishes a connection that a signal interrupted: it goes on by itself.
bool FinishConnection(Socket socket) noexcept
{
    if (!Deadline(0).Wait(socket, POLLOUT))
        return false;
    int error = 0;
    socklen_t size = sizeof(error);
    if (getsockopt(Descriptor(socket), SOL_SOCKET, SO_ERROR, &error, &size) != 0)
        return false;
    errno = error;
    return error == 0;
}

int SendTo(Socket socket, std::span<const unsigned char> data, const sockaddr_in& to) noexcept
{
    return static_cast<int>(Uninterrupted(
        [&] { return sendto(Descriptor(socket), data.data(), data.size(), MSG_NOSIGNAL, Generic(to), sizeof(to)); }));
}

} // namespace

int LastSocketError() noexcept
{
    return SocketErrorNumber(errno);
}

int StartSockets(unsigned) noexcept
{
    return 0;
}

Socket OpenSocket(int family, int type, int protocol) noexcept
{
#ifdef SOCK_CLOEXEC
    type |= SOCK_CLOEXEC;
#endif
    return Prepared(socket(family, type, protocol));
}

bool CloseSocket(Socket socket) noexcept
{
    return close(Descriptor(socket)) == 0;
}

bool SetSocketOption(Socket socket, SocketOption option, bool on) noexcept
{
    const int value = on;
    if (option == SocketOption::NoDelay)
        return SetOption(socket, IPPROTO_TCP, TCP_NODELAY, &value, sizeof(value));
    const int name = option == SocketOption::ReuseAddress ? SO_REUSEADDR : SO_KEEPALIVE;
    return SetOption(socket, SOL_SOCKET, name, &value, sizeof(value));
}

bool SetLinger(Socket socket, int seconds) noexcept
{
    const linger value{1, static_cast<std::uint16_t>(seconds)};
    return SetOption(socket, SOL_SOCKET, SO_LINGER, &value, sizeof(value));
}

bool BindSocket(Socket socket, Endpoint local) noexcept
{
    const sockaddr_in address = AddressOf(local);
    return bind(Descriptor(socket), Generic(address), sizeof(address)) == 0;
}

bool ListenSocket(Socket socket, int backlog) noexcept
{
    return listen(Descriptor(socket), backlog) == 0;
}

bool LocalEndpoint(Socket socket, Endpoint& local) noexcept
{
    sockaddr_in address{};
    socklen_t size = sizeof(address);
    if (getsockname(Descriptor(socket), Generic(address), &size) != 0)
        return false;
    local = EndpointOf(address);
    return true;
}

bool ResolveHost(const char* host, std::uint32_t& address) noexcept
{
    const in_addr_t numeric = inet_addr(host);
    if (numeric != INADDR_NONE) {
        address = ntohl(numeric);
        return true;
    }
    addrinfo wanted{};
    wanted.ai_family = AF_INET;
    wanted.ai_socktype = SOCK_STREAM;
    addrinfo* found = nullptr;
    const int error = getaddrinfo(host, nullptr, &wanted, &found);
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

bool ConnectSocket(Socket socket, Endpoint peer) noexcept
{
    const sockaddr_in address = AddressOf(peer);
    if (connect(Descriptor(socket), Generic(address), sizeof(address)) == 0)
        return true;
    return errno == EINTR && FinishConnection(socket);
}

Socket AcceptSocket(Socket socket, Endpoint& peer, int timeoutSeconds) noexcept
{
    if (timeoutSeconds < 0) {
        errno = EINVAL;
        return kNoSocket;
    }
    if (timeoutSeconds > 0 && !Deadline(timeoutSeconds).Wait(socket, POLLIN))
        return kNoSocket;
    sockaddr_in address{};
    socklen_t size = sizeof(address);
    const int accepted = Uninterrupted([&] {
#ifdef SOCK_CLOEXEC
        return accept4(Descriptor(socket), Generic(address), &size, SOCK_CLOEXEC);
#else
        return accept(Descriptor(socket), Generic(address), &size);
#endif
    });
    peer = EndpointOf(address);
    return Prepared(accepted);
}

int SendBytes(Socket socket, std::span<const unsigned char> first, std::span<const unsigned char> second) noexcept
{
    std::array<unsigned char, kJoined> joined;
    if (first.size() + second.size() <= joined.size()) { // cheaper to copy than to have them gathered
        std::copy(first.begin(), first.end(), joined.data());
        std::copy(second.begin(), second.end(), joined.data() + first.size());
        first = {joined.data(), first.size() + second.size()};
        second = {};
    }
    if (second.empty())
        return static_cast<int>(
            Uninterrupted([&] { return send(Descriptor(socket), first.data(), first.size(), MSG_NOSIGNAL); }));
    iovec pieces[2] = {{const_cast<unsigned char*>(first.data()), first.size()},
                       {const_cast<unsigned char*>(second.data()), second.size()}};
    msghdr message{};
    message.msg_iov = pieces;
    message.msg_iovlen = 2;
    return static_cast<int>(Uninterrupted([&] { return sendmsg(Descriptor(socket), &message, MSG_NOSIGNAL); }));
}

int ReceiveBytes(Socket socket, unsigned char* out, int room, int timeoutSeconds) noexcept
{
    return WithTimeout(socket, timeoutSeconds,
                       [&](int flags) { return recv(Descriptor(socket), out, static_cast<std::size_t>(room), flags); });
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

// The system writes through the piece: NOLINTNEXTLINE(readability-non-const-parameter)
int ReceiveDatagram(Socket socket, unsigned char* out, int room, int timeoutSeconds, Endpoint& from) noexcept
{
    sockaddr_in address{};
    iovec piece{out, static_cast<std::size_t>(room)};
    msghdr message{};
    message.msg_iov = &piece;
    message.msg_iovlen = 1;
    message.msg_name = &address;
    const int length = WithTimeout(socket, timeoutSeconds, [&](int flags) {
        message.msg_namelen = sizeof(address);
        return recvmsg(Descriptor(socket), &message, flags);
    });
    if (length >= 0 && (message.msg_flags & MSG_TRUNC) != 0) {
        errno = EMSGSIZE;
        return -1;
    }
    from = EndpointOf(address);
    return length;
}

} // namespace zn::platform
