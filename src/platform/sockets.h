// The porting contract for sockets of IPv4 (sockets.cpp, posix_sockets.cpp, windows_sockets.cpp); platform.h says what
// holds for all calls.
//
// Sockets block. A call that a signal interrupts is carried on with the time that is left. A call that fails leaves its
// Windows error number with LastSocketError() of the calling thread; the numbers of sockets begin at 10000 and differ
// from those of files for the same cause (10022 for an argument, 10013 for a right). No call raises a signal.
#pragma once

#include <cstdint>
#include <span>

namespace zn::platform {

using Socket = std::uint32_t;
inline constexpr Socket kNoSocket = 0xFFFFFFFF;

// In the machine's byte order.
struct Endpoint {
    std::uint32_t address = 0;
    std::uint16_t port = 0;
};

int LastSocketError() noexcept;

// Makes sockets ready for use where the system wants that (error 10093 says so): 0 or an error number.
int StartSockets(unsigned version) noexcept;

// The numbers are those that all systems share: family 2, type 1 (stream) or 2 (datagram), protocol 0, 6 or 17. A
// program that this process starts does not inherit the socket.
Socket OpenSocket(int family, int type, int protocol) noexcept;
bool CloseSocket(Socket socket) noexcept;

// NoDelay: what is sent goes out at once, also while earlier bytes are not acknowledged.
enum class SocketOption { ReuseAddress, KeepAlive, NoDelay };
bool SetSocketOption(Socket socket, SocketOption option, bool on) noexcept;
// Closing waits that many seconds (16 bits, without sign) for what is still to be sent; with 0 it drops that and resets
// the connection.
bool SetLinger(Socket socket, int seconds) noexcept;

bool BindSocket(Socket socket, Endpoint local) noexcept;
bool ListenSocket(Socket socket, int backlog) noexcept;
// Where a socket is bound.
bool LocalEndpoint(Socket socket, Endpoint& local) noexcept;

// The address that a text of numbers and points means (all forms of inet_addr), or the first one of a host of that
// name; 11001 for an unknown name.
bool ResolveHost(const char* host, std::uint32_t& address) noexcept;
// After a connection that failed the same socket may try again.
bool ConnectSocket(Socket socket, Endpoint peer) noexcept;

// The time-outs below: 0 waits without limit, a negative one fails with 10022, one that runs out with 10060.

// The next connection to a listening socket, kNoSocket on failure.
Socket AcceptSocket(Socket socket, Endpoint& peer, int timeoutSeconds) noexcept;
// One send of both pieces, one behind the other. Returns how many bytes the system took, -1 on failure.
int SendBytes(Socket socket, std::span<const unsigned char> first, std::span<const unsigned char> second) noexcept;
// One receive: what has come, up to room bytes; 0 at the end of the stream, -1 on failure.
int ReceiveBytes(Socket socket, unsigned char* out, int room, int timeoutSeconds) noexcept;

// The destination is a socket address of 16 bytes in the system's own layout, or an endpoint. Return the bytes sent.
int SendDatagram(Socket socket, std::span<const unsigned char> data, const void* address) noexcept;
int SendDatagram(Socket socket, std::span<const unsigned char> data, Endpoint to) noexcept;
// Returns the datagram's length. One that is longer than room is gone and fails with 10040.
int ReceiveDatagram(Socket socket, unsigned char* out, int room, int timeoutSeconds, Endpoint& from) noexcept;

} // namespace zn::platform
