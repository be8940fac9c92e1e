// Frames as a peer may send them, and what the receiver makes of them: the length of the message or a status, by a
// plain reading of the same bytes.
#include "fuzz.h"

#include "Zn_Socket.h"

#include <sys/socket.h>

#include <algorithm>
#include <string>

namespace {

constexpr std::size_t kMost = 100'000; // what a pair of sockets holds without a reader
constexpr int kLimit = 20'000;

struct Expected {
    int result = 0;
    std::string bytes; // payloads of the whole frames
};

Expected Read(const std::uint8_t* data, std::size_t size)
{
    Expected expected;
    for (;;) {
        if (size < 4)
            return {Zn_Socket::NoLength, expected.bytes};
        const std::size_t length =
            std::size_t{data[0]} << 24 | std::size_t{data[1]} << 16 | std::size_t{data[2]} << 8 | data[3];
        if (length > kLimit - expected.bytes.size())
            return {Zn_Socket::TooLong, expected.bytes};
        if (size < 6)
            return {Zn_Socket::NoFlag, expected.bytes};
        const bool more = data[4] != 0 || data[5] != 0;
        data += 6;
        size -= 6;
        if (size < length)
            return {Zn_Socket::NoPayload, expected.bytes};
        expected.bytes.append(reinterpret_cast<const char*>(data), length);
        data += length;
        size -= length;
        if (!more)
            break;
    }
    expected.result = static_cast<int>(expected.bytes.size());
    return expected;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    size = std::min(size, kMost);
    int ends[2];
    Require(socketpair(AF_UNIX, SOCK_STREAM, 0, ends) == 0);
    Zn_Socket sender, receiver;
    sender.Attach(static_cast<unsigned>(ends[0]));
    receiver.Attach(static_cast<unsigned>(ends[1]));
    Require(sender.SendPacket(BufferOf(data, size)) == 0);
    sender.Close();

    Zn_Socket::SetReceiveLimit(kLimit);
    const Expected expected = Read(data, size);
    Zn_Buffer message;
    Require(receiver.RecvAllData(message, 5) == expected.result);
    Require(std::equal(expected.bytes.begin(), expected.bytes.end(), reinterpret_cast<const char*>(message.GetData()),
                       reinterpret_cast<const char*>(message.GetData()) + message.GetLength()));
    Require(receiver.lastError == 0);
    return 0;
}
