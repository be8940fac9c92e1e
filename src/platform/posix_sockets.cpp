#include "platform/native_sockets.h"
#include "platform/platform.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <climits>
#include <fcntl.h>
#include <optional>
#include <poll.h>
#include <unistd.h>

#ifndef MSG_NOSIGNAL
#    define MSG_NOSIGNAL 0 // where a socket option does it
#endif

namespace zn::platform {

namespace {

constexpr int kTimedOut = 10060;
constexpr std::size_t kJoined = 4096;

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
            pollfd entry{Native(socket), what, 0};
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

// What a fresh descriptor gets where the call that makes it can't be told so.
Socket Prepared(int descriptor) noexcept
{
    if (descriptor < 0)
        return kNoSocket;
#ifdef SO_NOSIGPIPE
    const int on = 1;
    SetOption(static_cast<Socket>(descriptor), SOL_SOCKET, SO_NOSIGPIPE, on);
#endif
#ifndef SOCK_CLOEXEC
    fcntl(descriptor, F_SETFD, FD_CLOEXEC);
#endif
    return static_cast<Socket>(descriptor);
}

// Finishes a connection that a signal interrupted: it goes on by itself.
bool FinishConnection(Socket socket) noexcept
{
    if (!Deadline(0).Wait(socket, POLLOUT))
        return false;
    int error = 0;
    socklen_t size = sizeof(error);
    if (getsockopt(Native(socket), SOL_SOCKET, SO_ERROR, &error, &size) != 0)
        return false;
    errno = error;
    return error == 0;
}

} // namespace

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

int SendTo(Socket socket, std::span<const unsigned char> data, const sockaddr_in& to) noexcept
{
    return static_cast<int>(Uninterrupted(
        [&] { return sendto(Native(socket), data.data(), data.size(), MSG_NOSIGNAL, Generic(to), sizeof(to)); }));
}

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
    return close(Native(socket)) == 0;
}

bool ConnectSocket(Socket socket, Endpoint peer) noexcept
{
    const sockaddr_in address = AddressOf(peer);
    if (connect(Native(socket), Generic(address), sizeof(address)) == 0)
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
        return accept4(Native(socket), Generic(address), &size, SOCK_CLOEXEC);
#else
        return accept(Native(socket), Generic(address), &size);
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
            Uninterrupted([&] { return send(Native(socket), first.data(), first.size(), MSG_NOSIGNAL); }));
    iovec pieces[2] = {{const_cast<unsigned char*>(first.data()), first.size()},
                       {const_cast<unsigned char*>(second.data()), second.size()}};
    msghdr message{};
    message.msg_iov = pieces;
    message.msg_iovlen = 2;
    return static_cast<int>(Uninterrupted([&] { return sendmsg(Native(socket), &message, MSG_NOSIGNAL); }));
}

int ReceiveBytes(Socket socket, unsigned char* out, int room, int timeoutSeconds) noexcept
{
    return WithTimeout(socket, timeoutSeconds,
                       [&](int flags) { return recv(Native(socket), out, static_cast<std::size_t>(room), flags); });
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
        return recvmsg(Native(socket), &message, flags);
    });
    if (length >= 0 && (message.msg_flags & MSG_TRUNC) != 0) {
        errno = EMSGSIZE;
        return -1;
    }
    from = EndpointOf(address);
    return length;
}

} // namespace zn::platform
