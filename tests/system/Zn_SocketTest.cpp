#include "Zn_Socket.h"

#include "foundation/memory.h"
#include "system/connection.h"

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#if !defined(_WIN32)
#    include <csignal>
#    include <pthread.h>
#endif

namespace {

using namespace std::string_view_literals;

class Socket : public NothingLeftOpen {};

std::string Frame(std::uint32_t length, std::uint16_t flag, std::string_view payload)
{
    std::string frame;
    for (int shift = 24; shift >= 0; shift -= 8)
        frame += static_cast<char>(length >> shift);
    frame += static_cast<char>(flag >> 8);
    frame += static_cast<char>(flag);
    frame += payload;
    return frame;
}

} // namespace

TEST_F(Socket, ListensAndConnects)
{
    const Connection connection;
    EXPECT_EQ(connection.peer, u"127.0.0.1");

    Zn_Socket listener;
    EXPECT_EQ(listener.GetLocalPort(), -1);
    EXPECT_EQ(listener.lastError, 10038);
    ASSERT_EQ(listener.Create(0, kLoopback, 5), 0);
    const int port = listener.GetLocalPort();
    EXPECT_EQ(listener.Create(0, kLoopback, 5), -1);
    EXPECT_EQ(listener.Connect(u"127.0.0.1", port, 1, 5), -1);
    EXPECT_EQ(listener.GetLocalPort(), port); // as it was

    Zn_Socket second;
    EXPECT_EQ(second.Create(port, kLoopback, 5), -1);
    if (!IsWindows()) { // there 10013 is the number too
        EXPECT_EQ(second.lastError, 10048);
    }
    EXPECT_EQ(second.handle, Zn_Socket::kClosed);
    EXPECT_EQ(second.Connect(u"localhost", port + 0x10000, 1, 5), 0); // callers rely on the low 16 bits counting

    Zn_WString peer;
    second.Attach(static_cast<unsigned>(listener.Accept(peer, 10)));
    const Stopwatch time;
    EXPECT_EQ(listener.Accept(peer, 1), -1);
    EXPECT_EQ(listener.lastError, 10060);
    EXPECT_GE(time.Seconds(), 1.0);
}

TEST_F(Socket, ConnectionsThatFail)
{
    Zn_Socket free;
    ASSERT_EQ(free.Create(0, kLoopback, 5), 0);
    const int port = free.GetLocalPort();
    free.Close();
    for (const int retries : {-1, 0, 1, 3}) {
        Zn_Socket socket;
        EXPECT_EQ(socket.Connect(u"127.0.0.1", port, retries, 5), -1);
        if (retries <= 1 || !IsWindows()) { // Wine tells of the attempts that follow that they were aborted
            EXPECT_EQ(socket.lastError, 10061);
        }
        EXPECT_EQ(socket.handle, Zn_Socket::kClosed);
    }
    Zn_Socket socket;
    EXPECT_EQ(socket.Connect(u"", port, 3, 5), -1);
    EXPECT_EQ(socket.lastError, 11001);
    EXPECT_EQ(socket.handle, Zn_Socket::kClosed);
    EXPECT_EQ(socket._Connect(u"127.0.0.1", port, 1), -1); // without an open socket
    EXPECT_EQ(socket.lastError, 10038);

    if (IsWindows())
        return; // where each attempt takes a second or two
    // Attempts follow each other until somebody listens.
    Zn_Socket late;
    std::thread opener([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        late.Create(port, kLoopback, 5);
    });
    EXPECT_EQ(socket.Connect(u"127.0.0.1", port, 10'000'000, 5), 0);
    EXPECT_EQ(socket.lastError, 10061); // of the attempts before
    opener.join();
}

TEST_F(Socket, HandlesArePassedOn)
{
    Connection connection;
    Zn_Socket& near = connection.near;
    const unsigned handle = near.Detach();
    EXPECT_EQ(near.handle, Zn_Socket::kClosed);
    EXPECT_EQ(near.SendPacket(BytesOf("x")), -1);
    EXPECT_EQ(near.lastError, 10038);

    Zn_Socket other;
    other.Attach(handle);
    other.Attach(other); // itself: stays open
    near.Attach(other);
    EXPECT_EQ(near.handle, other.handle); // both hold it now
    EXPECT_EQ(other.Detach(), handle);
    EXPECT_EQ(near.SendData(BytesOf("abc"), 0), 0);

    near.lastError = 5;
    Zn_Socket copy;
    copy = near;
    EXPECT_EQ(copy.lastError, 5);
    EXPECT_EQ(copy.Detach(), handle);
    near.Attach(Zn_Socket::kClosed); // closes
    Zn_Buffer in;
    EXPECT_EQ(connection.far.RecvPacket(in, 100, 10), 9);
}

TEST_F(Socket, FramesThereAndBack)
{
    Connection connection;
    Zn_Socket &near = connection.near, &far = connection.far;
    std::uint16_t flag = 0;
    Zn_Buffer in;
    for (const int length : {0, 1, 65'529, 65'530, 65'531, 200'000, Zn_Socket::kMaxFrame}) {
        const Zn_Buffer out = Pattern(length);
        std::thread sender([&] { EXPECT_EQ(near.SendData(out, 0xFE01, -1), 0); });
        EXPECT_EQ(far.RecvData(in, flag, 10), length);
        sender.join();
        EXPECT_EQ(flag, 0xFE01);
        EXPECT_TRUE(in == out);
    }
    const Zn_Buffer abc = BytesOf("abc");
    EXPECT_EQ(near.SendData(abc, 0, 2), 0);
    EXPECT_EQ(near.SendData(abc.GetData(), 7, 0), 0);
    EXPECT_EQ(near.SendData(nullptr, 7, 3), 0);
    EXPECT_EQ(near.SendData(abc.GetData(), 7, -1), 0); // the last two send nothing
    EXPECT_EQ(near.SendData(abc, 0, 4), -1);
    EXPECT_EQ(near.lastError, 87);
    near.Close();
    EXPECT_EQ(far.RecvPacket(in, 100, 10), 14);
    EXPECT_EQ(in, BytesOf("\0\0\0\2\0\0ab\0\0\0\0\0\7"sv));
}

TEST_F(Socket, MessagesOfSeveralFrames)
{
    Connection connection;
    Zn_Socket &near = connection.near, &far = connection.far;
    Zn_Buffer in = BytesOf("head ");
    EXPECT_EQ(near.SendPacket(BytesOf(Frame(3, 1, "one") + Frame(0, 1, "") + Frame(3, 0, "two") + Frame(1, 0, "x"))),
              0);
    EXPECT_EQ(far.RecvAllData(in, 10), 11); // behind what stands there
    EXPECT_EQ(in, BytesOf("head onetwo"));
    in.Release();
    EXPECT_EQ(far.RecvAllData(in, 10), 1);

    for (const int length : {0, 1 << 20, (1 << 20) + 1, 5'000'000}) {
        const Zn_Buffer out = Pattern(length);
        std::thread sender([&] { EXPECT_EQ(near.SendAllData(out), 0); });
        in.Release();
        EXPECT_EQ(far.RecvAllData(in, 10), length);
        sender.join();
        EXPECT_TRUE(in == out);
    }
    near.SendPacket(BytesOf(Frame(3, 1, "one") + Frame(3, 0, "tw")));
    near.Close();
    in.Release();
    EXPECT_EQ(far.RecvAllData(in, 10), Zn_Socket::NoPayload);
    EXPECT_EQ(in, BytesOf("one"));
}

TEST_F(Socket, TheLimitOfAMessage)
{
    const int before = Zn_Socket::SetReceiveLimit(10);
    EXPECT_EQ(before, 1 << 30);
    const struct {
        std::string frames;
        int result;
    } rows[] = {
        {Frame(10, 0, "0123456789"), 10},
        {Frame(11, 0, "0123456789a"), Zn_Socket::TooLong},
        {Frame(9, 1, "012345678") + Frame(1, 1, "9") + Frame(0, 0, ""), 10},
        {Frame(9, 1, "012345678") + Frame(2, 0, "9a"), Zn_Socket::TooLong},
    };
    for (const auto& row : rows) {
        Connection connection;
        connection.near.SendPacket(BytesOf(row.frames));
        Zn_Buffer in;
        EXPECT_EQ(connection.far.RecvAllData(in, 10), row.result);
        EXPECT_LE(in.GetLength(), 10);
        std::uint16_t flag = 0;
        connection.near.SendPacket(BytesOf(Frame(11, 0, "0123456789a")));
        if (row.result > 0) {
            EXPECT_EQ(connection.far.RecvData(in, flag, 10), 11); // a single frame has its own limit
        }
    }
    EXPECT_EQ(Zn_Socket::SetReceiveLimit(-1), 10);
    EXPECT_EQ(Zn_Socket::SetReceiveLimit(before), 0);
}

TEST_F(Socket, BrokenFrames)
{
    const struct {
        std::string_view bytes;
        int status;
    } rows[] = {
        {""sv, Zn_Socket::NoLength},
        {"\0\0\0"sv, Zn_Socket::NoLength},
        {"\0\0\0\5"sv, Zn_Socket::NoFlag},
        {"\0\0\0\5\0"sv, Zn_Socket::NoFlag},
        {"\0\0\0\0\0"sv, Zn_Socket::NoFlag},
        {"\0\0\0\5\0\1"sv, Zn_Socket::NoPayload},
        {"\0\0\0\5\0\1abcd"sv, Zn_Socket::NoPayload},
        {"\0\xA0\0\0\0\0abc"sv, Zn_Socket::NoPayload}, // 10,485,760
        {"\0\xA0\0\1"sv, Zn_Socket::TooLong},          // one more
        {"\xFF\xFF\xFF\xFF\0\0abc"sv, Zn_Socket::TooLong},
    };
    for (const auto& row : rows) {
        Connection connection;
        connection.near.SendPacket(BytesOf(row.bytes));
        if (row.status != Zn_Socket::TooLong)
            connection.near.Close(); // the length alone tells what is too long
        Zn_Buffer in = BytesOf("old");
        std::uint16_t flag = 0;
        EXPECT_EQ(connection.far.RecvData(in, flag, 10), row.status);
        EXPECT_EQ(in.GetLength(), 0);
        EXPECT_EQ(connection.far.lastError, 0); // an end of the stream is none
    }
    Connection connection(0);
    connection.near.SendPacket(BytesOf("\0\0\0\5\0\1ab"sv));
    std::uint16_t flag = 0;
    Zn_Buffer in;
    EXPECT_EQ(connection.far.RecvPacket(in, 7, 10), 7);
    connection.near.Close(); // resets
    EXPECT_EQ(connection.far.RecvData(in, flag, 10), Zn_Socket::NoLength);
    if (!IsWindows()) {
        EXPECT_EQ(connection.far.lastError, 10054);
    }
}

// Memory that runs out ends the call with a status, wherever it happens.
TEST_F(Socket, WithoutMemory)
{
    int failed = 0;
    for (int n = 1;; ++n) {
        Connection connection;
        connection.near.SendPacket(BytesOf(Frame(70'000, 1, std::string(70'000, 'a')) + Frame(3, 0, "bcd") + "line\n"));
        Zn_Buffer in, line;
        zn::FailAllocation(n);
        const int length = connection.far.RecvAllData(in, 10);
        const int ofLine = length > 0 ? connection.far.RecvLine(line, 10, 10) : 5;
        const bool hit = zn::AllocationFailed();
        zn::FailAllocation(0);
        if (!hit) {
            EXPECT_EQ(length, 70'003);
            break;
        }
        EXPECT_TRUE((length == Zn_Socket::NoPayload && in.GetLength() % 70'000 == 0) || ofLine == -1);
        EXPECT_EQ(connection.far.lastError, 10055);
        ASSERT_LT(++failed, 100);
    }
    EXPECT_GT(failed, 2);
}

TEST_F(Socket, APeerThatSendsByteByByte)
{
    Connection connection;
    std::thread sender([&] {
        const std::string bytes = Frame(300, 1, std::string(300, 'a')) + Frame(5, 0, "bcdef") + "line\nrest";
        for (const char byte : bytes) {
            connection.near.SendPacket(BytesOf({&byte, 1}));
            std::this_thread::sleep_for(std::chrono::microseconds(200));
        }
        connection.near.Close();
    });
    Zn_Buffer in;
    EXPECT_EQ(connection.far.RecvAllData(in, 10), 305);
    EXPECT_EQ(in, BytesOf(std::string(300, 'a') + "bcdef"));
    EXPECT_EQ(connection.far.RecvLine(in, 100, 10), 5);
    EXPECT_EQ(connection.far.RecvPacket(in, 4, 10), 4);
    sender.join();
    EXPECT_EQ(connection.far.RecvPacket(in, 4, 10), 0);
}

TEST_F(Socket, TimeoutsCountSeconds)
{
    Connection connection;
    Zn_Socket& far = connection.far;
    Zn_Buffer in;
    std::uint16_t flag = 0;
    const Stopwatch time;
    EXPECT_EQ(far.RecvPacket(in, 10, 2), -1);
    EXPECT_EQ(far.lastError, 10060);
    EXPECT_GE(time.Seconds(), 2.0);
    EXPECT_LT(time.Seconds(), 4.0);

    far.lastError = 0;
    connection.near.SendPacket(BytesOf("abc"));
    EXPECT_EQ(far.RecvPacket(in, 10, 1), -1);
    EXPECT_EQ(in, BytesOf("abc"));
    EXPECT_EQ(far.lastError, 10060);
    connection.near.SendPacket(BytesOf("abc"));
    EXPECT_EQ(far.RecvLine(in, 10, 1), -1);
    EXPECT_EQ(in, BytesOf("abc"));

    far.lastError = 0;
    connection.near.SendPacket(BytesOf("\0\0\0\5\0\1ab"sv));
    EXPECT_EQ(far.RecvData(in, flag, 1), Zn_Socket::NoPayload);
    EXPECT_EQ(far.lastError, 10060);
    EXPECT_EQ(far.RecvPacket(in, 1, -1), -1);
    EXPECT_EQ(far.lastError, 10022);
}

TEST_F(Socket, LinesAndPackets)
{
    Connection connection;
    Zn_Socket& far = connection.far;
    connection.near.SendPacket(BytesOf("one\n\ntwothree"));
    connection.near.Close();
    Zn_Buffer in = BytesOf("old");
    EXPECT_EQ(far.RecvLine(in, 0, 10), 0);
    EXPECT_EQ(far.RecvPacket(in, 0, 10), 0);
    EXPECT_EQ(in, BytesOf("old"));
    const struct {
        int most;
        std::string_view line;
    } rows[] = {{1, "o"}, {3, "ne\n"}, {9, "\n"}, {3, "two"}, {2'000'000'000, "three"}, {5, ""}};
    for (const auto& row : rows) {
        EXPECT_EQ(far.RecvLine(in, row.most, 10), static_cast<int>(row.line.size()));
        EXPECT_EQ(in, BytesOf(row.line));
    }
    EXPECT_EQ(far.RecvPacket(in, 2'000'000'000, 10), 0);
    EXPECT_EQ(far.lastError, 0);
}

TEST_F(Socket, SendingToNobody)
{
    Connection connection(0);
    connection.far.Close();
    Zn_Socket& near = connection.near;
    int result = 0;
    for (int i = 0; i < 100 && result == 0; ++i) // what the system still takes
        result = near.SendPacket(Pattern(100'000));
    EXPECT_EQ(result, -1); // and the program lives
    EXPECT_EQ(near.lastError, 10054);
    EXPECT_EQ(near.SendPacket(BytesOf("abc"), 4), -1);
    EXPECT_EQ(near.lastError, 87);
    EXPECT_EQ(near.SendPacket(BytesOf("abc"), 0), 0);
    EXPECT_EQ(near.SendPacket(Zn_Buffer()), 0);
}

#if !defined(_WIN32)
// Signals end sends and receives early, which nobody notices.
TEST_F(Socket, InterruptedCallsGoOn)
{
    struct sigaction action {};
    struct sigaction before {};
    action.sa_handler = [](int) {};
    sigaction(SIGUSR1, &action, &before);

    Connection connection;
    const Zn_Buffer out = Pattern(8'000'000);
    std::atomic<bool> over = false;
    std::thread sender([&] { EXPECT_EQ(connection.near.SendAllData(out), 0); });
    const pthread_t ids[] = {sender.native_handle(), pthread_self()};
    std::thread disturber([&] {
        for (int i = 0; i < 20'000 && !over; ++i, std::this_thread::sleep_for(std::chrono::microseconds(100))) {
            for (const pthread_t id : ids)
                pthread_kill(id, SIGUSR1);
        }
    });
    Zn_Buffer in;
    EXPECT_EQ(connection.far.RecvAllData(in, 10), out.GetLength());
    EXPECT_TRUE(in == out);
    const Stopwatch time;
    EXPECT_EQ(connection.far.RecvPacket(in, 1, 1), -1);
    EXPECT_GE(time.Seconds(), 1.0);
    over = true;
    disturber.join();
    sender.join();
    sigaction(SIGUSR1, &before, nullptr);
}
#endif
