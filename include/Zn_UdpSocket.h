// Datagrams over IPv4: a bound port, a default target for sending, and who sent what came last.
//
//     Zn_UdpSocket server, client;
//     server.CreateServerPort(5001);
//     client.Connect(u"10.0.0.7", 5001);                    // sends nothing yet
//     client.SendPacket(question, -1);
//     server.RecvPacket(in, 30, 1);                         // 1: remember the sender
//     server.SendPacket(answer, server.GetSenderAddr(), server.GetSenderPort());
//
// Failures return -1; lastError has the Windows number of the system's error on every platform: 10060 for a time-out,
// 10040 for a datagram that is longer than the maximum packet size (it is lost), 87 for a length beyond the buffer and
// a missing address. A length above the maximum packet size returns -1 and sets no error. A datagram may get lost
// without one.
//
// The object owns its handle and closes it in the end; opening does not close one that is open: Close() first. Copies
// hold the same handle and close it too, which may hit a socket that was opened since. One object is used by one thread
// at a time.
#pragma once

#include "Zn_Buffer.h"
#include "Zn_WString.h"

class ZN_API Zn_UdpSocket {
public:
    static constexpr std::uint32_t kClosed = 0xFFFFFFFF;

    Zn_UdpSocket() = default;
    Zn_UdpSocket(const Zn_UdpSocket&) = default;
    Zn_UdpSocket& operator=(const Zn_UdpSocket&) = default;
    virtual ~Zn_UdpSocket();

    // Opens a socket on a port of all the machine's addresses; -1 for a port below 1 when none was set before.
    int CreateServerPort(int port);
    // Sets the target and opens a socket on a port that the system chooses.
    int Connect(Zn_WString address, int port);
    // What the system's close returns: -1 without an open socket.
    int Close() noexcept;

    // In bytes; 40,960 unless set, at least 128.
    void SetMaxPacketSize(int size) noexcept;
    // Stores a port of 0 or above; returns the stored one, -1 when that is below 1. The port to be opened next.
    int SetPort(int port) noexcept;
    // Dotted address or name; looked up with every send. Returns 0.
    int SetTargetAddr(Zn_WString address);
    // Stores a port above 0; -1 when none is stored.
    int SetTargetPort(int port) noexcept;

    // Return the bytes sent. The first sets the target; the second sends the first length bytes (below 0: all) to it.
    int SendPacket(const Zn_Buffer& data, Zn_WString address, int port);
    int SendPacket(const Zn_Buffer& data, int length);
    // To a socket address of 16 bytes in the system's own layout.
    int SendPacket(const Zn_Buffer& data, void* address);
    // Waits for a datagram - without limit for timeoutSeconds below 1 - and returns its length, which may be 0. With
    // keepSender its sender is what the getters give. After a failure out holds bytes that mean nothing.
    int RecvPacket(Zn_Buffer& out, int timeoutSeconds, int keepSender);

    Zn_WString GetSenderAddr() const { return senderAddr_; }
    Zn_WString GetTargetAddr() const { return targetAddr_; }
    int GetSenderPort() const noexcept { return senderPort_; }
    int GetTargetPort() const noexcept { return targetPort_; }
    int GetPort() const noexcept { return port_; }
    // The port that the socket is bound to, -1 for none.
    int GetLocalPort();

    // Readies the system's sockets where it wants that; done when needed. Returns the error, which lastError takes too.
    int InitWSA() noexcept;

    std::uint32_t handle = kClosed;
    std::int32_t lastError = 0;

protected:
    int _socket_error() noexcept;
    void _clear_target_addr() noexcept { targetAddr_.Empty(); }
    void _clear_sender_info() noexcept;

private:
    int OpenOn(int port);
    int Fail(int error) noexcept;

    std::int32_t maxPacketSize_ = 0xA000;
    std::int32_t port_ = -1;
    std::int32_t targetPort_ = -1;
    Zn_WString targetAddr_;
    Zn_WString senderAddr_;
    Zn_WString senderName_; // emptied with the address and otherwise unused
    std::int32_t senderPort_ = 0;
    [[maybe_unused]] std::int32_t reserved_ = 0;
};
