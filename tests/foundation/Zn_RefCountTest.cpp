#include "Zn_RefCount.h"

#include "Zn_Buffer.h"
#include "Zn_WString.h"

#include <gtest/gtest.h>
#include <thread>
#include <vector>

namespace {

TEST(Zn_RefCount, Counts)
{
    Zn_RefCount count;
    EXPECT_EQ(count.AddRef(), 1);
    EXPECT_EQ(count.AddRef(), 2);
    EXPECT_EQ(count.Release(), 1);
    EXPECT_EQ(count.Get(), 1);
    EXPECT_EQ(count.Release(), 0);
}

// Counted without locks before the threads start, with them while they run, and again by one thread afterwards.
TEST(Zn_RefCount, HoldersInManyThreadsComeOutEven)
{
    constexpr int kThreads = 4, kRounds = 5000;
    Zn_WString text(u"shared text");
    Zn_Buffer bytes;
    bytes.Set(reinterpret_cast<const unsigned char*>("bytes"), 5);
    Zn_RefCount count(1);
    const char16_t* where = text.GetText();
    const unsigned char* whereBytes = bytes.GetData();
    std::vector<Zn_WString> texts(kThreads, text);
    std::vector<Zn_Buffer> buffers(kThreads, bytes);
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < kThreads; ++i) {
        threads.emplace_back([&count, mine = std::move(texts[i]), own = std::move(buffers[i])]() mutable {
            for (int round = 0; round < kRounds; ++round) {
                Zn_WString copy(mine);
                const Zn_Buffer copyOfBytes(own);
                copy.SetAt(0, u'S');
                count.AddRef();
                count.Release();
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    threads.clear();
    texts.clear();
    buffers.clear();
    EXPECT_EQ(count.Get(), 1);
    EXPECT_EQ(text, u"shared text");
    text.SetAt(0, u'S');
    EXPECT_EQ(text.GetText(), where) << "the only holder writes in place";
    EXPECT_EQ(bytes.GetSafeBuffer(5), whereBytes);
}

} // namespace
