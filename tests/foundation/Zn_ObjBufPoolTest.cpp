#include "Zn_ObjBufPool.h"

#include "foundation/memory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <random>
#include <set>
#include <vector>

namespace {

TEST(ObjBufPool, HandsOutDistinctAlignedMemory)
{
    for (int size : {1, 8, 20, 24}) {
        Zn_ObjBufPool pool("Test", size, 5);
        std::set<char*> items;
        for (int i = 0; i < 23; ++i) {
            void* item = pool.Alloc();
            ASSERT_EQ(reinterpret_cast<std::uintptr_t>(item) % 8, 0u);
            ASSERT_EQ(Zn_ObjBufData::FromItem(item)->GetRefCount(), 0);
            std::memset(item, 0xEE, static_cast<std::size_t>(size));
            items.insert(static_cast<char*>(item));
        }
        EXPECT_EQ(items.size(), 23u);
        for (auto a = items.begin(), b = std::next(a); b != items.end(); ++a, ++b)
            EXPECT_GE(*b - *a, size + 8);
        EXPECT_EQ(pool.GetUsedCount(), 23);
        for (char* item : items)
            pool.Free(item);
        EXPECT_EQ(pool.GetUsedCount(), 0);
    }
}

TEST(ObjBufPool, OwnsItsItemsAndNothingElse)
{
    Zn_ObjBufPool pool("Test", 24, 4), other("Other", 24, 4);
    void* items[30];
    ASSERT_EQ(pool.Alloc(items, 30), 30);
    void* foreign = other.Alloc();
    int local = 0;
    for (void* item : items) {
        EXPECT_TRUE(pool.Owns(item));
        EXPECT_FALSE(pool.Owns(static_cast<char*>(item) + 8)) << "inside an item";
        EXPECT_FALSE(other.Owns(item));
    }
    EXPECT_FALSE(pool.Owns(foreign));
    EXPECT_FALSE(pool.Owns(&local));
    EXPECT_FALSE(pool.Owns(nullptr));
    for (void* item : items)
        pool.Free(item);
    EXPECT_EQ(std::count_if(items, items + 30, [&](void* item) { return pool.Owns(item); }), 4)
        << "of the empty pool one block is left";
    other.Free(foreign);
}

TEST(ObjBufPool, GrowsLargeAndShrinksToItsSmallestBlock)
{
    Zn_ObjBufPool pool("Test", 40, 16); // no divisor of the size of a page
    std::vector<void*> items(500000);
    ASSERT_EQ(pool.Alloc(items.data(), static_cast<int>(items.size())), static_cast<int>(items.size()));
    for (std::size_t i = 0; i < items.size(); ++i)
        std::memcpy(items[i], &i, sizeof i);
    const auto* last = static_cast<char*>(*std::max_element(items.begin(), items.end()));
    for (std::size_t i = 0; i < items.size(); ++i) {
        ASSERT_TRUE(pool.Owns(items[i]) && std::memcmp(items[i], &i, sizeof i) == 0) << i;
        ASSERT_FALSE(pool.Owns(static_cast<char*>(items[i]) + 4));
    }
    // The rest of a page that is too short for an item is none; one item is the next to be handed out.
    std::sort(items.begin(), items.end());
    int behindItems = 0;
    for (std::size_t i = 1; i < items.size(); ++i) {
        const auto* behind = static_cast<char*>(items[i - 1]) + pool.GetStride();
        behindItems += behind != items[i] && pool.Owns(behind);
    }
    EXPECT_LE(behindItems, 1);
    EXPECT_FALSE(pool.Owns(last + (4 << 20)));
    pool.Free(items.data(), static_cast<int>(items.size()));
    EXPECT_EQ(std::count_if(items.begin(), items.end(), [&](void* item) { return pool.Owns(item); }), 16);
}

TEST(ObjBufPool, GivesWhatItCanWithoutMemory)
{
    Zn_ObjBufPool pool("Test", 16, 8);
    void* items[40];
    zn::FailAllocation(3); // the registry, the first block, then the second
    EXPECT_EQ(pool.Alloc(items, 40), 8);
    EXPECT_EQ(pool.GetUsedCount(), 8);
    EXPECT_EQ(pool.Alloc(items + 8, 32), 32) << "works again when there is memory";
    zn::FailAllocation(0);
    for (void* item : items)
        pool.Free(item);
}

TEST(ObjBufPool, RunsServeSingleItemsAndOtherRuns)
{
    constexpr int kPerBlock = 20;
    Zn_ObjBufPool pool("Test", 24, kPerBlock);
    EXPECT_EQ(pool.AllocRun(0), nullptr);
    EXPECT_EQ(pool.AllocRun(kPerBlock + 1), nullptr);
    std::mt19937 random(3);
    struct Run {
        unsigned char* first;
        int count;
    };
    std::vector<Run> runs;
    int used = 0;
    const auto fill = [&](const Run& run, unsigned char mark) {
        for (int i = 0; i < run.count; ++i) {
            unsigned char* item = run.first + i * pool.GetStride();
            EXPECT_TRUE(pool.Owns(item));
            EXPECT_EQ(Zn_ObjBufData::FromItem(item)->GetRefCount(), 0);
            std::memset(item, mark, 24);
        }
    };
    const auto isFull = [&](const Run& run, unsigned char mark) {
        for (int i = 0; i < run.count; ++i)
            if (!std::all_of(run.first + i * pool.GetStride(), run.first + i * pool.GetStride() + 24,
                             [mark](unsigned char b) { return b == mark; }))
                return false;
        return true;
    };
    for (int step = 0; step < 20000; ++step) {
        const auto mark = [](const Run& run) {
            return static_cast<unsigned char>(reinterpret_cast<std::uintptr_t>(run.first) >> 3);
        };
        if (random() % 2 || runs.empty()) {
            const int count = 1 + static_cast<int>(random() % 12);
            Run run{static_cast<unsigned char*>(count == 1 ? pool.Alloc() : pool.AllocRun(count)), count};
            fill(run, mark(run));
            runs.push_back(run);
            used += count;
        } else {
            std::swap(runs[random() % runs.size()], runs.back());
            const Run run = runs.back();
            runs.pop_back();
            ASSERT_TRUE(isFull(run, mark(run)));
            if (random() % 2) {
                pool.FreeRun(run.first, run.count);
            } else {
                for (int i = 0; i < run.count; ++i)
                    pool.Free(run.first + i * pool.GetStride());
            }
            used -= run.count;
        }
        ASSERT_EQ(pool.GetUsedCount(), used);
    }
    for (const Run& run : runs)
        pool.FreeRun(run.first, run.count);
    EXPECT_EQ(pool.GetUsedCount(), 0);
}

TEST(ObjBufPool, CountsHolders)
{
    Zn_ObjBufPool pool("Test", 16, 8);
    void* item = pool.Alloc();
    Zn_ObjBufData* data = Zn_ObjBufData::FromItem(item);
    EXPECT_EQ(data->AddRef(), 1);
    EXPECT_EQ(data->AddRef(), 2);
    EXPECT_EQ(data->Release(), 1);
    EXPECT_EQ(data->Release(), 0);
    EXPECT_EQ(data->GetItem(), item);
    pool.Free(item);
}

TEST(ObjBufPool, CopiesItsDescriptionOnly)
{
    Zn_ObjBufPool pool("Test", 20, 8);
    void* item = pool.Alloc();
    const Zn_ObjBufPool copy(pool);
    EXPECT_STREQ(copy.GetName(), "Test");
    EXPECT_EQ(copy.GetItemSize(), 20);
    EXPECT_EQ(copy.GetItemsPerBlock(), 8);
    EXPECT_EQ(copy.GetUsedCount(), 0);
    EXPECT_FALSE(copy.Owns(item));
    pool.Free(item);
}

} // namespace
