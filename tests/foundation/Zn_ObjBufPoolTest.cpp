#include "Zn_ObjBufPool.h"

#include "foundation/memory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
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
