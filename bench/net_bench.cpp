// Frames over loopback beside a bare loop of send and recv that moves the same bytes: the same frames, built once, sent
// in the same pieces and received into one place without time-outs. Processor time of both ends, from the first byte to
// the last; both ways take turns, and medians are compared.
#include "Zn_Socket.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <sys/socket.h>
#include <thread>
#include <vector>

namespace {

constexpr std::uint32_t kLoopback = 0x7F000001;
constexpr int kTimeout = 30;
constexpr int kRounds = 11;
constexpr std::size_t kHead = 6;
constexpr std::size_t kPiece = 65536;

using Bytes = std::vector<unsigned char>;

void Require(bool good, const char* what)
{
    if (!good) {
        std::fprintf(stderr, "wrong: %s\n", what);
        std::exit(1);
    }
}

struct Connection {
    Zn_Socket out, in;

    Connection()
    {
        Zn_Socket listener;
        Zn_WString peer;
        Require(listener.Create(0, kLoopback, 5) == 0, "listening");
        Require(out.Connect(u"127.0.0.1", listener.GetLocalPort(), 1, 5) == 0, "connecting");
        in.Attach(static_cast<unsigned>(listener.Accept(peer)));
    }
};

Bytes FrameOf(std::size_t length)
{
    Bytes frame(kHead + length);
    for (std::size_t i = 0; i < 4; ++i)
        frame[i] = static_cast<unsigned char>(length >> (24 - 8 * i));
    for (std::size_t i = 0; i < length; ++i)
        frame[kHead + i] = static_cast<unsigned char>(i * 7);
    return frame;
}

void SendPlain(const Zn_Socket& socket, const Bytes& frame)
{
    for (std::size_t at = 0; at < frame.size();) {
        const ssize_t sent =
            send(static_cast<int>(socket.handle), frame.data() + at, std::min(kPiece, frame.size() - at), 0);
        Require(sent > 0, "send");
        at += static_cast<std::size_t>(sent);
    }
}

void ReceivePlain(const Zn_Socket& socket, unsigned char* out, std::size_t length)
{
    for (std::size_t at = 0; at < length;) {
        const ssize_t got = recv(static_cast<int>(socket.handle), out + at, length - at, 0);
        Require(got > 0, "recv");
        at += static_cast<std::size_t>(got);
    }
}

double SecondsSince(std::clock_t start)
{
    return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

// Seconds that it takes to bring so many frames from one end to the other: from one thread to another, or, where frames
// are so small that it would be the waking of threads that is timed, in batches by one thread.
template <class Send, class Receive>
double TimeOf(std::size_t frameSize, int count, Send send, Receive receive)
{
    constexpr std::size_t kSmall = 2048;
    constexpr int kBatch = 50;
    const std::clock_t start = std::clock();
    if (frameSize < kSmall) {
        for (int done = 0; done < count; done += kBatch) {
            for (int i = 0; i < kBatch; ++i)
                send();
            for (int i = 0; i < kBatch; ++i)
                receive();
        }
        return SecondsSince(start);
    }
    std::thread sender([&] {
        for (int i = 0; i < count; ++i)
            send();
    });
    for (int i = 0; i < count; ++i)
        receive();
    sender.join();
    return SecondsSince(start);
}

double Plain(const Bytes& frame, int count)
{
    Connection connection;
    Bytes place(frame.size());
    const double time = TimeOf(
        frame.size(), count, [&] { SendPlain(connection.out, frame); },
        [&] {
            ReceivePlain(connection.in, place.data(), kHead);
            ReceivePlain(connection.in, place.data() + kHead, frame.size() - kHead);
        });
    Require(std::equal(frame.begin() + kHead, frame.end(), place.begin() + kHead), "what plain receiving gave");
    return time;
}

double Ours(const Bytes& frame, int count)
{
    Connection connection;
    Zn_Buffer payload, in;
    payload.Set(frame.data() + kHead, static_cast<int>(frame.size() - kHead));
    std::uint16_t flag = 0;
    const double time = TimeOf(
        frame.size(), count, [&] { Require(connection.out.SendData(payload, 0, -1) == 0, "SendData"); },
        [&] { Require(connection.in.RecvData(in, flag, kTimeout) == payload.GetLength(), "RecvData"); });
    Require(in == payload, "what RecvData gave");
    return time;
}

double MedianOf(std::vector<double> times)
{
    std::nth_element(times.begin(), times.begin() + kRounds / 2, times.end());
    return times[kRounds / 2];
}

void Compare(const char* name, std::size_t length, int count)
{
    const Bytes frame = FrameOf(length);
    std::vector<double> ours, plain;
    for (int round = 0; round < kRounds; ++round) {
        plain.push_back(Plain(frame, count));
        ours.push_back(Ours(frame, count));
    }
    const double time = MedianOf(ours), other = MedianOf(plain);
    std::printf("%-10s %12.2f %10.0f %12.2f %10.2fx\n", name, time / count * 1e6,
                static_cast<double>(length) * count / time / 1e6, other / count * 1e6, other / time);
    std::fflush(stdout);
}

} // namespace

int main()
{
    std::printf("%-10s %12s %10s %12s %11s\n", "payload", "us/frame", "MB/s", "plain us", "ratio");
    Compare("100 bytes", 100, 200'000);
    Compare("1 KiB", 1 << 10, 200'000);
    Compare("64 KiB", 1 << 16, 10'000);
    Compare("1 MiB", 1 << 20, 1'000);
}
