// What the tests of sockets share: a connection over loopback whose two ends are in one program, and a count of what is
// open.
#pragma once

#include "Zn_Socket.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <iterator>
#include <string_view>

inline constexpr std::uint32_t kLoopback = 0x7F000001;

struct Connection {
    Zn_Socket near, far;
    Zn_WString peer;

    // Both ends close with this linger time: 0 resets the connection.
    explicit Connection(int lingerSeconds = 5)
    {
        Zn_Socket listener;
        EXPECT_EQ(listener.Create(0, kLoopback, lingerSeconds), 0);
        EXPECT_EQ(near.Connect(u"127.0.0.1", listener.GetLocalPort(), 0, lingerSeconds), 0);
        far.Attach(static_cast<unsigned>(listener.Accept(peer, 10)));
        EXPECT_NE(far.handle, Zn_Socket::kClosed);
    }
};

inline Zn_Buffer BytesOf(std::string_view text)
{
    Zn_Buffer buffer;
    buffer.Set(reinterpret_cast<const unsigned char*>(text.data()), static_cast<int>(text.size()));
    return buffer;
}

inline Zn_Buffer Pattern(int length)
{
    Zn_Buffer buffer;
    unsigned char* data = buffer.GetSafeBuffer(length);
    for (int i = 0; i < length; ++i)
        data[i] = static_cast<unsigned char>(i * 31 + i / 256);
    return buffer;
}

// Windows, or Wine in its place, whose sockets tell less exactly why something failed.
constexpr bool IsWindows() noexcept
{
#if defined(_WIN32)
    return true;
#else
    return false;
#endif
}

class Stopwatch {
public:
    double Seconds() const { return std::chrono::duration<double>(std::chrono::steady_clock::now() - start_).count(); }

private:
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

// Each test leaves as many descriptors open as it found, where the system lists them.
class NothingLeftOpen : public testing::Test {
protected:
    void SetUp() override { before_ = Open(); }
    void TearDown() override { EXPECT_EQ(Open(), before_); }

private:
    static std::ptrdiff_t Open()
    {
        if (IsWindows())
            return 0; // Wine lists what is its own
        std::error_code error;
        const std::filesystem::directory_iterator entries("/proc/self/fd", error);
        return error ? 0 : std::distance(begin(entries), end(entries));
    }
    std::ptrdiff_t before_ = 0;
};
