#include "Zn_Thread.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <thread>

namespace {

using namespace std::chrono_literals;
constexpr std::uint32_t kFailed = 0xFFFFFFFF;

// Waits at most ten seconds.
bool Eventually(const std::function<bool()>& condition)
{
    for (int i = 0; i < 10'000; ++i, std::this_thread::sleep_for(1ms)) {
        if (condition())
            return true;
    }
    return false;
}

std::uint32_t Mark(void* flag)
{
    ++*static_cast<std::atomic<int>*>(flag);
    return 7;
}

// Counts until it is told to stop.
struct Counter {
    std::atomic<long> count = 0;
    std::atomic<bool> stop = false;
    std::atomic<bool> done = false;
    Zn_Thread thread;

    static std::uint32_t Run(void* param)
    {
        auto* self = static_cast<Counter*>(param);
        for (; !self->stop; std::this_thread::sleep_for(100us))
            ++self->count;
        self->done = true;
        return 0;
    }
    bool Start()
    {
        return thread.CreateThread(Run, this, 0, 0) == 0 && Eventually([&] { return count > 0; });
    }
    bool Counts()
    {
        const long before = count;
        return Eventually([&] { return count > before + 2; });
    }
    bool Rests()
    {
        const long before = count;
        std::this_thread::sleep_for(30ms);
        return count == before;
    }
};

} // namespace

TEST(Thread, FunctionAndParameterAreStored)
{
    std::atomic<int> first = 0, second = 0;
    Zn_Thread thread;
    EXPECT_EQ(thread.BeginThread(0), -1);
    EXPECT_EQ(thread.lastError, 22);
    EXPECT_EQ(thread.started, 0);
    thread.lastError = 0;
    EXPECT_EQ(thread.SetThreadFunc(nullptr, &first), -1);
    EXPECT_EQ(thread.lastError, 22);
    EXPECT_EQ(thread.CreateThread(nullptr, nullptr, 0, 0), -1);

    EXPECT_EQ(thread.SetThreadFunc(Mark, &first), 0);
    EXPECT_EQ(thread.SetThreadFunc(Mark, nullptr), 0); // keeps the parameter
    EXPECT_EQ(thread.BeginThread(5), 0);
    EXPECT_EQ(thread.started, 1);
    EXPECT_EQ(thread.WaitThread(), 0);
    EXPECT_EQ(first, 1);

    EXPECT_EQ(thread.SetThreadParam(&second), 0);
    EXPECT_EQ(thread.BeginThread(0), 0);
    EXPECT_EQ(thread.WaitThread(), 0);
    EXPECT_EQ(thread.WaitThread(), 0); // the handle says so for as long as it is kept
    EXPECT_EQ(first + 10 * second, 11);

    const auto takesNull = [](void* param) -> std::uint32_t { return param ? kFailed : 0; };
    EXPECT_EQ(thread.SetThreadFunc(takesNull, nullptr), 0);
    EXPECT_EQ(thread.SetThreadParam(nullptr), 0);
    EXPECT_EQ(thread.BeginThread(0), 0);
    EXPECT_EQ(thread.WaitThread(), 0);
}

TEST(Thread, WithoutAHandle)
{
    Zn_Thread thread;
    EXPECT_EQ(thread.TerminateThread(), 0);
    EXPECT_EQ(thread.StopThread(0), 0);
    EXPECT_EQ(thread.SuspendThread(), kFailed);
    EXPECT_EQ(thread.ResumeThread(), kFailed);
    EXPECT_EQ(thread.WaitThread(), -1);
    EXPECT_EQ(zn_getlasterror(), 6);

    std::atomic<int> ran = 0;
    EXPECT_EQ(thread.CreateThread(Mark, &ran, 0, 1), 0); // detached
    EXPECT_EQ(thread.handle, nullptr);
    EXPECT_TRUE(Eventually([&] { return ran == 1; }));
}

TEST(Thread, SuspendCounts)
{
    Counter counter;
    ASSERT_TRUE(counter.Start());
    EXPECT_EQ(counter.thread.SuspendThread(), 0U);
    EXPECT_TRUE(counter.Rests());
    EXPECT_EQ(counter.thread.SuspendThread(), 1U);
    EXPECT_EQ(counter.thread.ResumeThread(), 2U);
    EXPECT_TRUE(counter.Rests());
    EXPECT_EQ(counter.thread.ResumeThread(), 1U);
    EXPECT_TRUE(counter.Counts());
    EXPECT_EQ(counter.thread.ResumeThread(), 0U);

    for (std::uint32_t n = 0; n < 127; ++n)
        ASSERT_EQ(counter.thread.SuspendThread(), n);
    EXPECT_EQ(counter.thread.SuspendThread(), kFailed);
    EXPECT_EQ(zn_getlasterror(), 156);
    for (std::uint32_t n = 127; n > 0; --n)
        ASSERT_EQ(counter.thread.ResumeThread(), n);

    counter.stop = true;
    EXPECT_EQ(counter.thread.WaitThread(), 0);
    EXPECT_EQ(counter.thread.SuspendThread(), kFailed);
    EXPECT_EQ(zn_getlasterror(), 5);
    EXPECT_EQ(counter.thread.ResumeThread(), 0U);
}

TEST(Thread, SuspendsItself)
{
    struct Sleeper {
        Zn_Thread thread;
        std::atomic<bool> ready = false;
        std::atomic<int> before = -1;
    } sleeper;
    const auto run = [](void* param) -> std::uint32_t {
        auto* self = static_cast<Sleeper*>(param);
        while (!self->ready)
            std::this_thread::yield();
        self->before = static_cast<int>(self->thread.SuspendThread());
        return 0;
    };
    ASSERT_EQ(sleeper.thread.CreateThread(run, &sleeper, 0, 0), 0);
    sleeper.ready = true;
    // Does nothing before the thread rests.
    ASSERT_TRUE(Eventually([&] { return sleeper.thread.ResumeThread() == 1; }));
    EXPECT_EQ(sleeper.thread.WaitThread(), 0);
    EXPECT_EQ(sleeper.before, 0);
}

TEST(Thread, TerminatesRunningSuspendedAndItself)
{
    Counter running, suspended, kept;
    ASSERT_TRUE(running.Start() && suspended.Start() && kept.Start());
    EXPECT_EQ(running.thread.TerminateThread(), 0);
    EXPECT_TRUE(running.Rests());
    EXPECT_EQ(suspended.thread.SuspendThread(), 0U);
    EXPECT_EQ(suspended.thread.StopThread(0), 0);
    EXPECT_TRUE(suspended.Rests());
    EXPECT_FALSE(running.done || suspended.done);
    EXPECT_EQ(running.thread.handle, nullptr);
    EXPECT_EQ(running.thread.started, 1);

    EXPECT_EQ(kept.thread.StopThread(1), 0);
    EXPECT_TRUE(kept.Counts());
    kept.stop = true;
    EXPECT_EQ(kept.thread.WaitThread(), 0);
    EXPECT_EQ(kept.thread.TerminateThread(), 0); // of a thread that has ended

    struct Own {
        Zn_Thread thread;
        std::atomic<bool> ready = false;
        std::atomic<bool> survived = false;
    } own;
    const auto endItself = [](void* param) -> std::uint32_t {
        auto* self = static_cast<Own*>(param);
        while (!self->ready)
            std::this_thread::yield();
        Zn_Thread(self->thread).TerminateThread();
        self->survived = true;
        return 0;
    };
    ASSERT_EQ(own.thread.CreateThread(endItself, &own, 0, 0), 0);
    own.ready = true;
    EXPECT_EQ(own.thread.WaitThread(), 0);
    EXPECT_FALSE(own.survived);
}

// The thread outlives its handle; copies share the handle, and it is closed once.
TEST(Thread, HandleAndThreadAreTwoThings)
{
    Counter counter;
    ASSERT_TRUE(counter.Start());
    {
        const Zn_Thread copy = counter.thread;
        EXPECT_EQ(copy.handle, counter.thread.handle);
    }
    EXPECT_TRUE(counter.Counts());
    EXPECT_EQ(counter.thread.SuspendThread(), kFailed); // the copy has closed it
    EXPECT_EQ(counter.thread.TerminateThread(), -1);
    EXPECT_EQ(counter.thread.lastError, 6);
    EXPECT_EQ(counter.thread.handle, nullptr);
    counter.stop = true;
    EXPECT_TRUE(Eventually([&] { return counter.done.load(); }));

    std::atomic<int> ran = 0;
    Zn_Thread thread;
    ASSERT_EQ(thread.CreateThread(Mark, &ran, 0, 0), 0);
    const Zn_Thread first = thread;
    ASSERT_EQ(thread.CreateThread(Mark, &ran, 0, 0), 0); // closes the first handle
#if !defined(_WIN32)                                     // where the new thread may get the number of the closed handle
    EXPECT_NE(thread.handle, first.handle);
    EXPECT_EQ(Zn_Thread(first).ResumeThread(), kFailed);
#endif
    EXPECT_EQ(thread.WaitThread(), 0);
    EXPECT_TRUE(Eventually([&] { return ran == 2; }));
}

// Orders from several threads to one that ends meanwhile.
TEST(Thread, OrdersMeetTheEnd)
{
    for (int round = 0; round < 50; ++round) {
        std::atomic<int> ran = 0;
        Zn_Thread thread;
        ASSERT_EQ(thread.CreateThread(Mark, &ran, 0, 0), 0);
        const auto disturb = [&thread] {
            for (int i = 0; i < 20; ++i) {
                if (thread.SuspendThread() != kFailed)
                    thread.ResumeThread();
            }
        };
        std::thread a(disturb), b(disturb);
        if (round % 2 == 1) {
            EXPECT_EQ(Zn_Thread(thread).TerminateThread(), 0);
        }
        a.join();
        b.join();
        if (round % 2 == 0) {
            EXPECT_EQ(thread.WaitThread(), 0);
            EXPECT_EQ(ran, 1);
        }
    }
}

TEST(Thread, CompareVersionComparesPairs)
{
    const struct {
        const char16_t* a;
        const char16_t* b;
        int result;
    } rows[] = {
        {u"2004, 7, 15, 2", u"2004, 7, 15, 3", -1},
        {u"2004, 8, 0, 0", u"2004, 7, 99, 99", 1},
        {u"2004, 7, 15, 2", u"2004,7,15,2", 0},
        {u" 2004,  7, 15, 2 beta", u"2004, 7, 15, 2", 0},
        {u"2004 , 7", u"2004", 0}, // what does not fit ends the reading
        {u"4", u"4, 0, 0, 0", 0},
        {u"", nullptr, 0},
        {u"-1", u"0", -1},
        {u"32768", u"1", -1},      // the sign of 32 bits
        {u"1, 65536", u"1, 0", 0}, // the two numbers share bits
        {u"0, 0, 1", u"0, 0, 0, 99", 1},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(ZnCompareVersion(row.a, row.b), row.result);
        EXPECT_EQ(ZnCompareVersion(row.b, row.a), -row.result);
    }
}
