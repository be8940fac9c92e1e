#include "Zn_UdpSocket.h"

#include "platform/sockets.h"
#include "system/connection.h"

#include <utility>

namespace {

class UdpSocket : public NothingLeftOpen {};

// A server on a port that was free a moment ago.
void OpenServer(Zn_UdpSocket& server)
{
    for (int attempt = 0; attempt < 100; ++attempt) {
        Zn_UdpSocket probe;
        ASSERT_EQ(probe.Connect(u"", 0), 0);
        const int port = probe.GetLocalPort();
        ASSERT_EQ(probe.Close(), 0);
        if (server.CreateServerPort(port) == 0)
            return;
    }
    FAIL() << "no free port";
}

} // namespace

TEST_F(UdpSocket, ThereAndBackWithTheSender)
{
    Zn_UdpSocket server, client;
    OpenServer(server);
    ASSERT_EQ(client.Connect(u"127.0.0.1", server.GetPort()), 0);
    EXPECT_EQ(client.GetTargetAddr(), u"127.0.0.1");
    EXPECT_EQ(client.GetTargetPort(), server.GetPort());
    Zn_Buffer in;
    EXPECT_EQ(client.SendPacket(BytesOf("question"), 5), 5);
    EXPECT_EQ(server.RecvPacket(in, 10, 1), 5);
    EXPECT_EQ(in, BytesOf("quest"));
    EXPECT_EQ(server.GetSenderAddr(), u"127.0.0.1");
    EXPECT_EQ(server.GetSenderPort(), client.GetLocalPort());

    EXPECT_EQ(server.SendPacket(BytesOf("answer"), server.GetSenderAddr(), server.GetSenderPort()), 6);
    EXPECT_EQ(client.RecvPacket(in, 10, 0), 6);
    EXPECT_EQ(in, BytesOf("answer"));
    EXPECT_TRUE(client.GetSenderAddr().IsEmpty()); // as it was
    EXPECT_EQ(client.GetSenderPort(), 0);
    EXPECT_EQ(server.SendPacket(Zn_Buffer(), -1), 0); // an empty datagram arrives too
    EXPECT_EQ(client.RecvPacket(in, 10, 1), 0);
    EXPECT_EQ(in.GetLength(), 0);
    EXPECT_EQ(client.GetSenderPort(), server.GetPort());

    client.SetTargetAddr(u"localhost"); // a name is looked up
    EXPECT_EQ(client.SendPacket(BytesOf("x"), -1), 1);
    EXPECT_EQ(server.RecvPacket(in, 10, 0), 1);
}

TEST_F(UdpSocket, ToAnAddressOfTheSystem)
{
    Zn_UdpSocket server, client;
    OpenServer(server);
    ASSERT_EQ(client.Connect(u"", 0), 0);
    unsigned char address[16] = {};
    const std::uint16_t family = 2;
    std::memcpy(address, &family, 2);
    address[2] = static_cast<unsigned char>(server.GetPort() >> 8);
    address[3] = static_cast<unsigned char>(server.GetPort());
    address[4] = 127;
    address[7] = 1;
    EXPECT_EQ(client.SendPacket(BytesOf("abc"), address), 3);
    Zn_Buffer in;
    EXPECT_EQ(server.RecvPacket(in, 10, 0), 3);
    EXPECT_EQ(client.SendPacket(BytesOf("abc"), nullptr), -1);
    EXPECT_EQ(client.lastError, 87);
}

TEST_F(UdpSocket, Sizes)
{
    Zn_UdpSocket server, client;
    OpenServer(server);
    ASSERT_EQ(client.Connect(u"127.0.0.1", server.GetPort()), 0);
    Zn_Buffer in;
    unsigned char address[16] = {};
    EXPECT_EQ(client.SendPacket(Pattern(40'961), -1), -1);
    EXPECT_EQ(client.SendPacket(Pattern(40'961), address), -1);
    EXPECT_EQ(client.lastError, 0); // refused before any call
    EXPECT_EQ(client.SendPacket(Pattern(40'960), -1), 40'960);
    EXPECT_EQ(server.RecvPacket(in, 10, 0), 40'960);
    EXPECT_TRUE(in == Pattern(40'960));

    server.SetMaxPacketSize(10); // raised to 128
    EXPECT_EQ(client.SendPacket(Pattern(128), -1), 128);
    EXPECT_EQ(server.RecvPacket(in, 10, 0), 128);
    EXPECT_EQ(client.SendPacket(Pattern(129), -1), 129);
    EXPECT_EQ(server.RecvPacket(in, 10, 0), -1); // what does not fit is lost
    EXPECT_EQ(server.lastError, 10040);
    EXPECT_EQ(client.SendPacket(BytesOf("next"), -1), 4);
    EXPECT_EQ(server.RecvPacket(in, 10, 0), 4);
    EXPECT_EQ(client.SendPacket(BytesOf("abc"), 4), -1);
    EXPECT_EQ(client.lastError, 87);
    client.SetMaxPacketSize(70'000);
    EXPECT_EQ(client.SendPacket(Pattern(66'000), -1), -1); // more than a datagram holds
    EXPECT_EQ(client.lastError, 10040);
}

TEST_F(UdpSocket, PortsAndTargets)
{
    Zn_UdpSocket socket;
    EXPECT_EQ(socket.GetPort(), -1);
    EXPECT_EQ(socket.CreateServerPort(0), -1);
    EXPECT_EQ(socket.GetPort(), 0);
    EXPECT_EQ(socket.SetPort(-5), -1); // not stored
    EXPECT_EQ(socket.GetPort(), 0);
    EXPECT_EQ(socket.SetPort(5000), 5000);
    EXPECT_EQ(socket.SetPort(-5), 5000);

    EXPECT_EQ(socket.SetTargetPort(0), -1);
    EXPECT_EQ(socket.GetTargetPort(), -1);
    EXPECT_EQ(socket.SetTargetPort(5000), 0);
    EXPECT_EQ(socket.SetTargetPort(0), 0);
    EXPECT_EQ(socket.GetTargetPort(), 5000);
}

TEST_F(UdpSocket, WhatFails)
{
    Zn_UdpSocket socket;
    Zn_Buffer in;
    unsigned char address[16] = {};
    EXPECT_EQ(socket.SendPacket(BytesOf("x"), -1), -1);
    EXPECT_EQ(socket.SendPacket(BytesOf("x"), u"127.0.0.1", 5000), -1);
    EXPECT_EQ(socket.SendPacket(BytesOf("x"), address), -1);
    EXPECT_EQ(socket.RecvPacket(in, 1, 1), -1);
    EXPECT_TRUE(socket.GetTargetAddr().IsEmpty()); // a closed socket takes no target
    EXPECT_EQ(socket.lastError, 0);
    EXPECT_EQ(socket.Close(), -1);

    ASSERT_EQ(socket.Connect(u"127.0.0.1", 5000), 0);
    const Stopwatch time;
    EXPECT_EQ(socket.RecvPacket(in, 1, 1), -1);
    EXPECT_EQ(socket.lastError, 10060);
    EXPECT_GE(time.Seconds(), 1.0);
    EXPECT_LT(time.Seconds(), 3.0);
    EXPECT_EQ(in.GetLength(), 40'960); // as it was made for the call
    socket.SetTargetAddr(u"");
    EXPECT_EQ(socket.SendPacket(BytesOf("x"), -1), -1);
    EXPECT_EQ(socket.lastError, 11001);

    Zn_UdpSocket server, second;
    OpenServer(server);
    EXPECT_EQ(second.CreateServerPort(server.GetPort()), -1);
    EXPECT_EQ(second.lastError, 10048);
    EXPECT_EQ(second.handle, Zn_UdpSocket::kClosed);
}

// Callers rely on an open handle being left open, and on copies holding the same one.
TEST_F(UdpSocket, OpeningLeavesTheOldHandle)
{
    Zn_UdpSocket socket;
    ASSERT_EQ(socket.Connect(u"127.0.0.1", 5000), 0);
    const std::uint32_t old = socket.handle;
    ASSERT_EQ(socket.Connect(u"127.0.0.1", 5001), 0);
    EXPECT_NE(socket.handle, old);
    {
        Zn_UdpSocket copy(socket);
        EXPECT_EQ(copy.GetTargetPort(), 5001);
        EXPECT_EQ(copy.handle, socket.handle);
        EXPECT_EQ(socket.Close(), 0);
        EXPECT_EQ(copy.Close(), -1); // closed already
    }
    EXPECT_TRUE(zn::platform::CloseSocket(old));
}
