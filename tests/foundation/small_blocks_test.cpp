#include "foundation/small_blocks.h"

#include "Zn_WString.h"
#include "foundation/asan.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <numeric>
#include <random>
#include <thread>
#include <vector>

namespace {

struct Block {
    unsigned char* memory;
    int size;

    unsigned char Mark() const { return static_cast<unsigned char>(reinterpret_cast<std::uintptr_t>(memory) >> 3); }
};

// Blocks of random sizes, each full of its own mark.
std::vector<Block> TakeMany(std::mt19937& random, std::size_t count, int from = 1, int to = zn::kLargestSmall)
{
    std::vector<Block> blocks;
    while (blocks.size() < count) {
        const int size = from + static_cast<int>(random() % static_cast<unsigned>(to - from + 1));
        Block block{static_cast<unsigned char*>(zn::TakeSmall(size)), size};
        std::memset(block.memory, block.Mark(), static_cast<std::size_t>(size));
        blocks.push_back(block);
    }
    return blocks;
}

bool IsIntact(const Block& block)
{
    return std::all_of(block.memory, block.memory + block.size, [&](unsigned char b) { return b == block.Mark(); });
}

void GiveAll(std::vector<Block>& blocks)
{
    for (const Block& block : blocks)
        zn::GiveSmall(block.memory, block.size);
    blocks.clear();
}

TEST(SmallBlocks, KeepApartWhileOthersComeAndGo)
{
    std::mt19937 random(1);
    std::vector<Block> blocks = TakeMany(random, 20000);
    for (int round = 0; round < 5; ++round) {
        std::shuffle(blocks.begin(), blocks.end(), random);
        std::vector<Block> gone(blocks.end() - 8000, blocks.end());
        blocks.resize(blocks.size() - 8000);
        GiveAll(gone);
        for (const Block& block : TakeMany(random, 8000))
            blocks.push_back(block);
        ASSERT_TRUE(std::all_of(blocks.begin(), blocks.end(), IsIntact));
    }
    for (const Block& block : blocks)
        ASSERT_EQ(reinterpret_cast<std::uintptr_t>(block.memory) % 8, 0u);
    GiveAll(blocks);
}

TEST(SmallBlocks, MemoryServesOtherSizesAndGoesBack)
{
    std::mt19937 random(2);
    std::vector<Block> one = TakeMany(random, 1);
    const std::size_t before = zn::SmallMemory();
    std::vector<Block> large = TakeMany(random, 50000, 200);
    const std::size_t full = zn::SmallMemory();
    EXPECT_LT(full - before, 50000u * 256u * 110 / 100 + (1u << 20));
    std::shuffle(large.begin(), large.end(), random);
    GiveAll(large);
    EXPECT_LE(zn::SmallMemory(), before + (2u << 20)) << "but for what one region is";
    for (int size : {16, 40, 130}) {
        std::vector<Block> other = TakeMany(random, std::size_t(8000000 / size), size, size);
        EXPECT_LE(zn::SmallMemory(), full) << size;
        GiveAll(other);
    }
    GiveAll(one);
}

TEST(SmallBlocks, GoBackFromOtherThreads)
{
    constexpr int kThreads = 4;
    std::vector<std::vector<Block>> taken(kThreads);
    const auto run = [&](auto work) {
        std::vector<std::thread> threads;
        for (int i = 0; i < kThreads; ++i)
            threads.emplace_back(work, std::size_t(i));
        for (std::thread& thread : threads)
            thread.join();
    };
    const std::size_t before = zn::SmallMemory();
    run([&](std::size_t i) {
        std::mt19937 random(static_cast<unsigned>(i));
        taken[i] = TakeMany(random, 10000);
    });
    // Each gives what its neighbour took, and takes more meanwhile.
    std::vector<int> bad(kThreads);
    run([&](std::size_t i) {
        std::mt19937 random(static_cast<unsigned>(i));
        std::vector<Block> own = TakeMany(random, 3000);
        std::vector<Block>& other = taken[(i + 1) % kThreads];
        const auto broken = [](const Block& block) { return !IsIntact(block); };
        bad[i] += static_cast<int>(std::count_if(other.begin(), other.end(), broken));
        GiveAll(other);
        bad[i] += static_cast<int>(std::count_if(own.begin(), own.end(), broken));
        GiveAll(own);
    });
    EXPECT_EQ(std::accumulate(bad.begin(), bad.end(), 0), 0);
    EXPECT_LE(zn::SmallMemory(), before + 2 * kThreads * (2u << 20));
}

TEST(SmallBlocks, TextsThatThreadsShareGoOnce)
{
    const auto text = [](int i) {
        return Zn_WString(std::u16string(std::size_t(1 + i % 90), char16_t(u'a' + i % 26)));
    };
    std::vector<Zn_WString> first, second;
    for (int i = 0; i < 5000; ++i)
        second.push_back(first.emplace_back(text(i)));
    int bad = 0;
    std::thread other([&] {
        for (int i = 0; i < 5000; ++i) {
            bad += second[std::size_t(i)] != text(i);
            second[std::size_t(i)].Empty();
        }
    });
    for (int i = 4999; i >= 0; --i)
        first[std::size_t(i)] += u"!"; // leaves the shared body
    other.join();
    EXPECT_EQ(bad, 0);
    for (int i = 0; i < 5000; ++i)
        ASSERT_EQ(first[std::size_t(i)], text(i) + u"!");
}

TEST(SmallBlocks, ChangeTheirSizeAcrossAllLimits)
{
    constexpr int kSizes[] = {8, 9, 128, 129, 144, 145, 256, 257, 1000, 256, 100, 1};
    auto* block = static_cast<unsigned char*>(zn::ResizeBlock(nullptr, 0, 1));
    block[0] = 1;
    int size = 1;
    for (const int next : kSizes) {
        block = static_cast<unsigned char*>(zn::ResizeBlock(block, size, next));
        ASSERT_TRUE(block);
        for (int i = 0; i < std::min(size, next); ++i)
            ASSERT_EQ(block[i], static_cast<unsigned char>(i + 1)) << size << " to " << next;
        for (int i = 0; i < next; ++i)
            block[i] = static_cast<unsigned char>(i + 1);
        size = next;
    }
    EXPECT_EQ(zn::ResizeBlock(block, size, 0), nullptr);
    zn::GiveBlock(block, size);
    zn::GiveBlock(nullptr, 16);
}

#ifdef ZN_HAS_ASAN
TEST(SmallBlocks, AreClosedOutsideTheirSizeAndOnceGivenBack)
{
    auto* block = static_cast<unsigned char*>(zn::TakeSmall(20));
    EXPECT_FALSE(__asan_address_is_poisoned(block + 19));
    EXPECT_TRUE(__asan_address_is_poisoned(block + 20));
    zn::GiveSmall(block, 20);
    EXPECT_TRUE(__asan_address_is_poisoned(block));
    EXPECT_EQ(zn::TakeSmall(17), block) << "the same place serves again";
    EXPECT_FALSE(__asan_address_is_poisoned(block + 16));
    EXPECT_TRUE(__asan_address_is_poisoned(block + 17));
    zn::GiveSmall(block, 17);
}
#endif

} // namespace
