// A TCP connection over IPv4, or the socket that listens for them; and messages over it as frames.
//
//     Zn_Socket socket;                                     // the client
//     if (socket.Connect(u"10.0.0.7", 5000, 3, 5) != 0 || socket.SendAllData(request) != 0)
//         return Report(socket.lastError);
//     int length = socket.RecvAllData(answer, 30);          // a status below 0: see there
//
//     Zn_Socket listener, connection;                       // the server
//     listener.Create(5000, 0, 5);
//     connection.Attach(static_cast<unsigned>(listener.Accept(peer)));
//
// Calls block; time-outs are whole seconds, count anew whenever bytes have come, and 0 means no limit. What fails
// returns -1 (framed reception: a status from -2 to -5) and leaves the system's error in lastError, by its Windows
// number on every platform: 10060 time-out, 10061 refused, 10054 reset, 87 a length beyond the buffer. The end of the
// stream is no error and sets none. A connection that is gone raises no signal.
//
// The object owns its handle and closes it in the end. Copies hold the same handle and close it too, which may hit a
// socket that was opened since: pass a handle on with Attach and Detach. One object is used by one thread at a time.
#pragma once

#include "Zn_Buffer.h"
#include "Zn_WString.h"

#include <span>

class ZN_API Zn_Socket {
public:
    static constexpr std::uint32_t kClosed = 0xFFFFFFFF;
    // The longest payload of a frame that is received, in bytes.
    static constexpr int kMaxFrame = 0xA00000;

    // What framed reception returns below 0. lastError tells a time-out and a reset from an end of the stream.
    enum Status {
        NoFlag = -2,    // the frame ends inside its head
        NoLength = -3,  // no frame, or less than its length: also how an orderly end shows
        NoPayload = -4, // the frame ends inside its payload
        TooLong = -5    // the frame announces more than kMaxFrame, or RecvAllData reached its limit
    };

    Zn_Socket() noexcept = default;
    Zn_Socket(const Zn_Socket&) noexcept = default;
    Zn_Socket& operator=(const Zn_Socket&) noexcept = default;
    ~Zn_Socket();

    // ---- Connections. Ports count by their low 16 bits. At closing, the system goes on sending for up to
    // lingerSeconds; with 0 it drops what is unsent and resets the connection.

    // Listens on a port (0: the system chooses, see GetLocalPort) of the machine's address (0: of all). -1 with a
    // socket that is open already, which stays so; any other failure closes it.
    int Create(int port, std::uint32_t address, int lingerSeconds);
    // Waits for a connection and returns its handle, for Attach; peer becomes its address in dotted form.
    int Accept(Zn_WString& peer, int timeoutSeconds = 0);
    // To a host by dotted address or name. A connection that is refused or can't get there is tried up to `retries`
    // times (at least once), without a pause.
    int Connect(const char16_t* host, int port, int retries, int lingerSeconds);
    // The same on an open socket; closes it on failure.
    int _Connect(const char16_t* host, int port, int retries);
    void Close() noexcept;
    // Takes over a handle and closes its own, unless they are the same. The other object keeps it: have it Detach.
    void Attach(const Zn_Socket& other) noexcept { Attach(other.handle); }
    void Attach(unsigned int newHandle) noexcept;
    // Gives the handle away, open.
    unsigned int Detach() noexcept;
    // The port that the socket is bound to, -1 for none.
    int GetLocalPort();

    // ---- Bytes. Out is replaced by what came, on failure too.

    // Up to a line feed, which is kept, or maxBytes. Returns the count, 0 for maxBytes below 1.
    int RecvLine(Zn_Buffer& out, int maxBytes, int timeoutSeconds);
    // Exactly so many bytes, fewer only when the stream ends. Returns the count.
    int RecvPacket(Zn_Buffer& out, int bytes, int timeoutSeconds);
    // The first length bytes (below 0: all), in pieces of at most 64 KiB.
    int SendPacket(const Zn_Buffer& data, int length = -1);

    // ---- Frames: length (4 bytes), flag (2), payload; numbers are big-endian. The flag is the sender's; other than 0
    // it means to RecvAllData that more frames belong to the message.

    int SendData(const Zn_Buffer& data, std::uint16_t flag, int length = -1);
    // Sends nothing and returns 0 for null or a length below 0.
    int SendData(const unsigned char* data, std::uint16_t flag, int length);
    // A message of any length as the frames that RecvAllData puts together.
    int SendAllData(const Zn_Buffer& data);
    // One frame: out is replaced by its payload, or emptied on failure. Returns the length, or a Status.
    int RecvData(Zn_Buffer& out, std::uint16_t& flag, int timeoutSeconds);
    // Appends the payloads of frames up to one with flag 0; returns the length of out, or a Status (whole frames that
    // came before stay in out).
    int RecvAllData(Zn_Buffer& out, int timeoutSeconds);
    // The most bytes that one RecvAllData takes, for all sockets of the program: 1 GiB unless it is set. A frame that
    // goes beyond ends the call with TooLong before its payload is received. Returns the limit before.
    static int SetReceiveLimit(int bytes) noexcept;

    // ---- The system

    // Takes over the system's last error and returns -1.
    int _socket_error() noexcept;
    // Readies the system's sockets where it wants that; done when needed. Returns the error, which lastError takes too.
    int InitWSA() noexcept;

    std::uint32_t handle = kClosed;
    std::int32_t lastError = 0;

protected:
    // A socket of the given kind; -1 when there is one already.
    int open(int type, int family, int protocol);

private:
    int Fail(int error) noexcept;
    int FailAndClose() noexcept;
    bool Receive(unsigned char* out, int least, int room, int timeoutSeconds, int& count) noexcept;
    int ReceiveBehind(Zn_Buffer& out, int at, int bytes, int timeoutSeconds);
    int ReceiveFrame(Zn_Buffer& out, int at, std::uint16_t& flag, int timeoutSeconds, int limit);
    int SendFrame(std::span<const unsigned char> payload, std::uint16_t flag) noexcept;
    int Send(std::span<const unsigned char> first, std::span<const unsigned char> second) noexcept;

    [[maybe_unused]] std::uint32_t reserved_ = 0;
};
