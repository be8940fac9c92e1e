#include "Zn_UdpSocket.h"

#include "Zn_AString.h"
#include "platform/sockets.h"
#include "system/dotted_address.h"

#include <algorithm>
#include <utility>

namespace platform = zn::platform;

namespace {

constexpr int kInet = 2, kDatagram = 2, kUdp = 17;
constexpr int kLeastPacketSize = 128;
constexpr int kInvalidParameter = 87;
constexpr int kNoBufferSpace = 10055;
constexpr int kNotInitialised = 10093;

} // namespace

static_assert(Zn_UdpSocket::kClosed == platform::kNoSocket);

Zn_UdpSocket::~Zn_UdpSocket()
{
    Close();
}

int Zn_UdpSocket::_socket_error() noexcept
{
    return Fail(platform::LastSocketError());
}

int Zn_UdpSocket::Fail(int error) noexcept
{
    lastError = error;
    return -1;
}

void Zn_UdpSocket::_clear_sender_info() noexcept
{
    senderAddr_.Empty();
    senderName_.Empty();
}

int Zn_UdpSocket::InitWSA() noexcept
{
    lastError = platform::StartSockets(2);
    return lastError;
}

int Zn_UdpSocket::OpenOn(int port)
{
    handle = platform::OpenSocket(kInet, kDatagram, kUdp);
    if (handle == kClosed && platform::LastSocketError() == kNotInitialised) {
        InitWSA();
        handle = platform::OpenSocket(kInet, kDatagram, kUdp);
    }
    if (handle == kClosed)
        return _socket_error();
    if (platform::BindSocket(handle, {0, static_cast<std::uint16_t>(port)}))
        return 0;
    _socket_error();
    Close();
    return -1;
}

int Zn_UdpSocket::CreateServerPort(int port)
{
    return SetPort(port) < 0 ? -1 : OpenOn(port_);
}

int Zn_UdpSocket::Connect(Zn_WString address, int port)
{
    SetTargetAddr(std::move(address));
    SetTargetPort(port);
    return OpenOn(0);
}

int Zn_UdpSocket::Close() noexcept
{
    return platform::CloseSocket(std::exchange(handle, kClosed)) ? 0 : -1;
}

void Zn_UdpSocket::SetMaxPacketSize(int size) noexcept
{
    maxPacketSize_ = std::max(size, kLeastPacketSize);
}

int Zn_UdpSocket::SetPort(int port) noexcept
{
    if (port >= 0)
        port_ = port;
    return port_ < 1 ? -1 : port_;
}

int Zn_UdpSocket::SetTargetAddr(Zn_WString address)
{
    targetAddr_ = std::move(address);
    return 0;
}

int Zn_UdpSocket::SetTargetPort(int port) noexcept
{
    if (port > 0)
        targetPort_ = port;
    return targetPort_ > 0 ? 0 : -1;
}

int Zn_UdpSocket::GetLocalPort()
{
    platform::Endpoint local;
    return platform::LocalEndpoint(handle, local) ? local.port : _socket_error();
}

int Zn_UdpSocket::SendPacket(const Zn_Buffer& data, Zn_WString address, int port)
{
    if (handle == kClosed || SetTargetAddr(std::move(address)) != 0 || SetTargetPort(port) != 0)
        return -1;
    return SendPacket(data, -1);
}

int Zn_UdpSocket::SendPacket(const Zn_Buffer& data, int length)
{
    if (handle == kClosed)
        return -1;
    const int count = length < 0 ? data.GetLength() : length;
    if (count > maxPacketSize_)
        return -1;
    if (count > data.GetLength())
        return Fail(kInvalidParameter);
    platform::Endpoint to{0, static_cast<std::uint16_t>(targetPort_)};
    if (!platform::ResolveHost(Zn_AString(targetAddr_, -1, 0), to.address))
        return _socket_error();
    const int sent = platform::SendDatagram(handle, data.GetSpan().first(static_cast<std::size_t>(count)), to);
    return sent < 0 ? _socket_error() : sent;
}

int Zn_UdpSocket::SendPacket(const Zn_Buffer& data, void* address)
{
    if (handle == kClosed || data.GetLength() > maxPacketSize_)
        return -1;
    if (!address)
        return Fail(kInvalidParameter);
    const int sent = platform::SendDatagram(handle, data.GetSpan(), static_cast<const void*>(address));
    return sent < 0 ? _socket_error() : sent;
}

int Zn_UdpSocket::RecvPacket(Zn_Buffer& out, int timeoutSeconds, int keepSender)
{
    if (handle == kClosed)
        return -1;
    out.SetSize(maxPacketSize_);
    unsigned char* room = out.GetSafeBuffer(0);
    if (!room || out.GetLength() != maxPacketSize_)
        return Fail(kNoBufferSpace);
    platform::Endpoint from;
    const int length = platform::ReceiveDatagram(handle, room, maxPacketSize_, std::max(timeoutSeconds, 0), from);
    if (length < 0)
        return _socket_error();
    out.SetSize(length);
    if (keepSender) {
        _clear_sender_info();
        senderAddr_ = zn::DottedAddress(from.address);
        senderPort_ = from.port;
    }
    return length;
}
