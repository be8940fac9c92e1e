#include "Zn_Socket.h"

#include "Zn_AString.h"
#include "foundation/byteorder.h"
#include "platform/sockets.h"
#include "system/dotted_address.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <climits>
#include <utility>

namespace platform = zn::platform;

namespace {

constexpr int kInet = 2, kStream = 1, kTcp = 6;
constexpr int kBacklog = 48;
constexpr int kMostPerSend = 0x10000;
constexpr int kFirstRoom = 0x10000;
constexpr int kHeadSize = 6;
constexpr int kLengthSize = 4;
constexpr int kSentFrame = 1 << 20; // payload of the frames that SendAllData makes

constexpr int kInvalidParameter = 87;
constexpr int kNetworkUnreachable = 10051;
constexpr int kNoBufferSpace = 10055;
constexpr int kIsConnected = 10056;
constexpr int kTimedOut = 10060;
constexpr int kConnectionRefused = 10061;
constexpr int kNotInitialised = 10093;

std::atomic<int> receiveLimit = 1 << 30;

} // namespace

static_assert(Zn_Socket::kClosed == platform::kNoSocket);

Zn_Socket::~Zn_Socket()
{
    Close();
}

int Zn_Socket::_socket_error() noexcept
{
    return Fail(platform::LastSocketError());
}

int Zn_Socket::Fail(int error) noexcept
{
    lastError = error;
    return -1;
}

int Zn_Socket::FailAndClose() noexcept
{
    _socket_error();
    Close();
    return -1;
}

int Zn_Socket::InitWSA() noexcept
{
    lastError = platform::StartSockets(2);
    return lastError;
}

// ---- Connections

int Zn_Socket::open(int type, int family, int protocol)
{
    if (handle != kClosed)
        return Fail(kIsConnected);
    handle = platform::OpenSocket(family, type, protocol);
    if (handle == kClosed && platform::LastSocketError() == kNotInitialised) {
        InitWSA();
        handle = platform::OpenSocket(kInet, kStream, kTcp);
    }
    if (handle == kClosed)
        return _socket_error();
    // Else the end of a frame may wait for an acknowledgement that the other side delays. Connections that a listening
    // socket accepts are as it is.
    platform::SetSocketOption(handle, platform::SocketOption::NoDelay, true);
    return 0;
}

int Zn_Socket::Create(int port, std::uint32_t address, int lingerSeconds)
{
    if (open(kStream, kInet, kTcp) != 0)
        return -1;
    const platform::Endpoint local{address, static_cast<std::uint16_t>(port)};
    const bool listening = platform::SetSocketOption(handle, platform::SocketOption::ReuseAddress, true) &&
                           platform::SetSocketOption(handle, platform::SocketOption::KeepAlive, true) &&
                           platform::SetLinger(handle, lingerSeconds) && platform::BindSocket(handle, local) &&
                           platform::ListenSocket(handle, kBacklog);
    return listening ? 0 : FailAndClose();
}

int Zn_Socket::Accept(Zn_WString& peer, int timeoutSeconds)
{
    platform::Endpoint from;
    const platform::Socket accepted = platform::AcceptSocket(handle, from, timeoutSeconds);
    if (accepted == platform::kNoSocket)
        return _socket_error();
    peer = zn::DottedAddress(from.address);
    return static_cast<int>(accepted);
}

int Zn_Socket::Connect(const char16_t* host, int port, int retries, int lingerSeconds)
{
    if (open(kStream, kInet, 0) != 0)
        return -1;
    if (!platform::SetLinger(handle, lingerSeconds))
        return FailAndClose();
    return _Connect(host, port, std::max(retries, 1));
}

int Zn_Socket::_Connect(const char16_t* host, int port, int retries)
{
    const Zn_AString name(host, -1, 0);
    for (int failed = 1;; ++failed) {
        platform::Endpoint peer{0, static_cast<std::uint16_t>(port)};
        if (!platform::ResolveHost(name, peer.address))
            return FailAndClose();
        if (platform::ConnectSocket(handle, peer))
            return 0;
        _socket_error();
        const bool mayPass =
            lastError == kConnectionRefused || lastError == kNetworkUnreachable || lastError == kTimedOut;
        if (!mayPass || failed >= retries) {
            Close();
            return -1;
        }
    }
}

void Zn_Socket::Close() noexcept
{
    if (handle != kClosed)
        platform::CloseSocket(std::exchange(handle, kClosed));
}

void Zn_Socket::Attach(unsigned int newHandle) noexcept
{
    if (newHandle == handle)
        return;
    Close();
    handle = newHandle;
}

unsigned int Zn_Socket::Detach() noexcept
{
    return std::exchange(handle, kClosed);
}

int Zn_Socket::GetLocalPort()
{
    platform::Endpoint local;
    return platform::LocalEndpoint(handle, local) ? local.port : _socket_error();
}

// ---- Bytes

// Receives until `least` bytes are in or the stream ends; false on failure. Count becomes what came in any case.
bool Zn_Socket::Receive(unsigned char* out, int least, int room, int timeoutSeconds, int& count) noexcept
{
    for (count = 0; count < least;) {
        const int got = platform::ReceiveBytes(handle, out + count, room - count, timeoutSeconds);
        if (got < 0)
            _socket_error();
        if (got <= 0)
            return got == 0;
        count += got;
    }
    return true;
}

// Replaces what stands behind `at` in a buffer by so many bytes, fewer when the stream ends: their count, or -1. The
// buffer grows with what comes: a length that is only announced takes no memory.
int Zn_Socket::ReceiveBehind(Zn_Buffer& out, int at, int bytes, int timeoutSeconds)
{
    int count = 0;
    bool good = true;
    for (bool more = true; good && more && count < bytes;) {
        const int present = std::max(out.GetLength() - at - count, 0);
        const int room = std::min(bytes - count, std::max({kFirstRoom, count, present}));
        unsigned char* data = room <= INT_MAX - at - count ? out.GetSafeBuffer(at + count + room) : nullptr;
        if (!data) {
            out.SetSize(at + count);
            return Fail(kNoBufferSpace);
        }
        int got = 0;
        good = Receive(data + at + count, room, room, timeoutSeconds, got);
        count += got;
        more = got == room;
    }
    out.SetSize(at + count);
    return good ? count : -1;
}

int Zn_Socket::RecvLine(Zn_Buffer& out, int maxBytes, int timeoutSeconds)
{
    if (maxBytes < 1)
        return 0;
    out.Release();
    unsigned char byte = 0;
    while (out.GetLength() < maxBytes && byte != '\n') {
        int got = 0;
        if (!Receive(&byte, 1, 1, timeoutSeconds, got))
            return -1;
        if (got == 0)
            break;
        const int length = out.GetLength();
        out.Append(&byte, 1);
        if (out.GetLength() == length)
            return Fail(kNoBufferSpace);
    }
    return out.GetLength();
}

int Zn_Socket::RecvPacket(Zn_Buffer& out, int bytes, int timeoutSeconds)
{
    return bytes < 1 ? 0 : ReceiveBehind(out, 0, bytes, timeoutSeconds);
}

// All of two pieces, one behind the other.
int Zn_Socket::Send(std::span<const unsigned char> first, std::span<const unsigned char> second) noexcept
{
    while (!first.empty() || !second.empty()) {
        const auto now = first.first(std::min<std::size_t>(first.size(), kMostPerSend));
        const auto behind = second.first(std::min(second.size(), kMostPerSend - now.size()));
        const int sent = platform::SendBytes(handle, now, behind);
        if (sent <= 0)
            return _socket_error();
        const auto count = static_cast<std::size_t>(sent);
        const std::size_t ofFirst = std::min(count, first.size());
        first = first.subspan(ofFirst);
        second = second.subspan(count - ofFirst);
    }
    return 0;
}

int Zn_Socket::SendPacket(const Zn_Buffer& data, int length)
{
    if (length > data.GetLength())
        return Fail(kInvalidParameter);
    const auto bytes = data.GetSpan();
    return Send(length < 0 ? bytes : bytes.first(static_cast<std::size_t>(length)), {});
}

// ---- Frames

int Zn_Socket::SendFrame(std::span<const unsigned char> payload, std::uint16_t flag) noexcept
{
    std::array<unsigned char, kHeadSize> head{};
    zn::PutBe32(head.data(), static_cast<std::uint32_t>(payload.size()));
    zn::PutBe16(head.data() + kLengthSize, flag);
    return Send(head, payload);
}

int Zn_Socket::SendData(const Zn_Buffer& data, std::uint16_t flag, int length)
{
    if (length > data.GetLength())
        return Fail(kInvalidParameter);
    return SendData(data.GetData(), flag, length < 0 ? data.GetLength() : length);
}

int Zn_Socket::SendData(const unsigned char* data, std::uint16_t flag, int length)
{
    return data && length >= 0 ? SendFrame({data, static_cast<std::size_t>(length)}, flag) : 0;
}

int Zn_Socket::SendAllData(const Zn_Buffer& data)
{
    auto rest = data.GetSpan();
    for (; rest.size() > kSentFrame; rest = rest.subspan(kSentFrame)) {
        if (SendFrame(rest.first(kSentFrame), 1) != 0)
            return -1;
    }
    return SendFrame(rest, 0);
}

// A frame of at most `limit` bytes, whose payload replaces what stands behind `at`: its length, or a Status.
int Zn_Socket::ReceiveFrame(Zn_Buffer& out, int at, std::uint16_t& flag, int timeoutSeconds, int limit)
{
    std::array<unsigned char, kHeadSize> head{};
    int count = 0;
    if (!Receive(head.data(), kLengthSize, kHeadSize, timeoutSeconds, count) || count < kLengthSize)
        return NoLength;
    const std::uint32_t announced = zn::GetBe32(head.data());
    if (announced > static_cast<std::uint32_t>(limit))
        return TooLong;
    const int missing = kHeadSize - count;
    if (!Receive(head.data() + count, missing, missing, timeoutSeconds, count) || count < missing)
        return NoFlag;
    flag = zn::GetBe16(head.data() + kLengthSize);
    const int length = static_cast<int>(announced);
    if (ReceiveBehind(out, at, length, timeoutSeconds) < length) {
        out.SetSize(at);
        return NoPayload;
    }
    return length;
}

int Zn_Socket::RecvData(Zn_Buffer& out, std::uint16_t& flag, int timeoutSeconds)
{
    const int result = ReceiveFrame(out, 0, flag, timeoutSeconds, kMaxFrame);
    if (result < 0)
        out.Release();
    return result;
}

int Zn_Socket::RecvAllData(Zn_Buffer& out, int timeoutSeconds)
{
    int left = receiveLimit;
    std::uint16_t flag = 1;
    while (flag != 0) {
        const int result = ReceiveFrame(out, out.GetLength(), flag, timeoutSeconds, std::min(left, kMaxFrame));
        if (result < 0)
            return result;
        left -= result;
    }
    return out.GetLength();
}

int Zn_Socket::SetReceiveLimit(int bytes) noexcept
{
    return receiveLimit.exchange(std::max(bytes, 0));
}
