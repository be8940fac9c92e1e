#include "Zn_ObjList.h"

#include "TracedItem.h"
#include "foundation/memory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <thread>
#include <vector>

namespace {

constexpr int kAbsent = -7;

std::vector<int> ValuesOf(const TracedList& list)
{
    std::vector<int> values;
    for (int i = 0; i < list.Count(); ++i)
        values.push_back(list.GetItem(i) ? list.GetItem(i)->value : kAbsent);
    return values;
}

void Fill(TracedList& list, std::initializer_list<int> values)
{
    for (int value : values)
        list.Add(Traced(value));
}

using Ints = std::vector<int>;

// Every body runs on lists without room at first, and on lists that keep their first items in a strip.
class ObjList : public testing::TestWithParam<int> {
protected:
    void SetUp() override
    {
        TracedHandler::EmptyItem();
        TracedList::roomAtStart = GetParam();
        alive_ = Traced::alive;
        used_ = TracedHandler::Instance().GetPool().GetUsedCount();
    }
    void TearDown() override
    {
        TracedList::roomAtStart = 0;
        EXPECT_EQ(Traced::alive, alive_) << "births and deaths balance";
        EXPECT_EQ(TracedHandler::Instance().GetPool().GetUsedCount(), used_);
    }

private:
    int alive_ = 0;
    int used_ = 0;
};

TEST_P(ObjList, IndexesAtTheEdges)
{
    TracedList list;
    Fill(list, {1, 2, 3});
    EXPECT_EQ(list.Insert(-5, Traced(0)), 0);
    EXPECT_EQ(list.Insert(99, Traced(4)), 4);
    EXPECT_EQ(ValuesOf(list), (Ints{0, 1, 2, 3, 4}));
    EXPECT_EQ(list.GetItem(5), nullptr);
    EXPECT_EQ(list.GetItem(-1), nullptr);
    EXPECT_EQ(list[5], &TracedHandler::EmptyItem());
    EXPECT_EQ(list.GetItemNN(-1), list.GetItemNN(77));
    EXPECT_EQ(list.Set(5, Traced(9)), -1);
    EXPECT_EQ(list.Set(-1, Traced(9), 1), -1);
    EXPECT_EQ(list.Add(nullptr), -1);
    EXPECT_EQ(list.AddLink(nullptr), -1);
    EXPECT_EQ(list.Exchange(0, 4), 1);
    EXPECT_EQ(list.Exchange(0, 5), 0);
    EXPECT_EQ(list.Delete(5), 0);
    EXPECT_EQ(list.Delete(-1), 0);
    EXPECT_EQ(list.Delete(1, 0), 0);
    EXPECT_EQ(list.Delete(3, 100), 2);
    EXPECT_EQ(ValuesOf(list), (Ints{4, 1, 2}));
    EXPECT_EQ(list.FindItem(list.GetItem(2)), 2);
    const Traced missing(5);
    EXPECT_EQ(list.FindItem(&missing), -1);
}

TEST_P(ObjList, CopiesOwnTheirItems)
{
    TracedList source;
    Fill(source, {1, 2, 3});
    source.InsertAbsent(1, 1);
    TracedList copy(source);
    copy.GetSafeItem(0)->value = 50;
    EXPECT_EQ(ValuesOf(source), (Ints{1, kAbsent, 2, 3}));
    EXPECT_EQ(ValuesOf(copy), (Ints{50, kAbsent, 2, 3}));
    copy = source;
    EXPECT_EQ(ValuesOf(copy), ValuesOf(source));
    EXPECT_EQ(copy.AssignList(copy), 4);
    EXPECT_EQ(copy.AppendList(copy), 8);
    EXPECT_EQ(ValuesOf(copy), (Ints{1, kAbsent, 2, 3, 1, kAbsent, 2, 3}));
    const Traced* first = copy.GetItem(0);
    TracedList moved(std::move(copy));
    EXPECT_EQ(moved.GetItem(0), first);
    EXPECT_EQ(copy.Count(), 0);
    copy.Add(Traced(8));
    moved = std::move(copy);
    EXPECT_EQ(ValuesOf(moved), (Ints{8}));
    copy.Add(Traced(9));
    EXPECT_EQ(ValuesOf(copy), (Ints{9}));
}

TEST_P(ObjList, LinkedItemsAreSharedNotCopied)
{
    TracedList a, b;
    const int copied = Traced::copied;
    Traced* item = a.NewItem();
    item->value = 5;
    EXPECT_EQ(a.AddLink(item), 0);
    EXPECT_EQ(b.InsertLink(0, item), 0);
    EXPECT_EQ(b.SetLink(3, item, 1), 3);
    EXPECT_EQ(Traced::copied, copied);
    EXPECT_EQ(ValuesOf(b), (Ints{5, kAbsent, kAbsent, 5}));
    EXPECT_EQ(Zn_ObjBufData::FromItem(item)->GetRefCount(), 3);
    a.ReleaseList();
    EXPECT_EQ(b.GetItem(0), item) << "lives on in the other list";
    b.Set(0, Traced(6));
    EXPECT_EQ(item->value, 5) << "the shared item is replaced, not written";
    b.SetLink(3, b.GetItem(3));
    EXPECT_EQ(Zn_ObjBufData::FromItem(item)->GetRefCount(), 1) << "linking an item to its own place";

    const Traced outside(9);
    EXPECT_EQ(b.AddLink(&outside), 4);
    EXPECT_NE(b.GetItem(4), &outside) << "no item of the pool: a copy";
    EXPECT_EQ(b.GetItem(4)->value, 9);

    void* own = b.Detach(4);
    EXPECT_EQ(b.Count(), 4);
    TracedHandler::Instance().Drop(own);
}

TEST_P(ObjList, GetSafeItemGrowsWithMadeItems)
{
    TracedList list;
    Zn_ObjList& base = list;
    EXPECT_EQ(base.GetSafeItem(2, 0), nullptr);
    EXPECT_EQ(base.GetSafeItem(-1, 1), nullptr);
    ASSERT_NE(base.GetSafeItem(2, 1), nullptr);
    EXPECT_EQ(ValuesOf(list), (Ints{0, 0, 0}));
    list.InsertAbsent(1, 2);
    EXPECT_EQ(base.GetSafeItem(1, 0), nullptr);
    EXPECT_NE(base.GetSafeItem(1, 1), nullptr) << "fills an absent place";
    EXPECT_EQ(ValuesOf(list), (Ints{0, 0, kAbsent, 0, 0}));
}

TEST_P(ObjList, OrderedListKeepsOneOfEqualItems)
{
    TracedList list(1);
    for (int value : {5, 1, 3, 1, 5, 9})
        EXPECT_EQ(list.GetItem(list.Add(Traced(value)))->value, value);
    EXPECT_EQ(ValuesOf(list), (Ints{1, 3, 5, 9}));
    EXPECT_EQ(list.Add(Traced(3)), 1);
    Traced* again = list.NewItem();
    again->value = 3;
    EXPECT_EQ(list.AddLink(again), 1);
    TracedHandler::Instance().Drop(again); // refused: still the caller's
    const Traced nine(9), two(2);
    EXPECT_EQ(list.FindItem(&nine), 3);
    EXPECT_EQ(list.FindItem(&two), -1);

    TracedList plain;
    Fill(plain, {9, 2, 2, 4});
    EXPECT_EQ(list.AppendList(plain), 6);
    EXPECT_EQ(ValuesOf(list), (Ints{1, 2, 3, 4, 5, 9}));
    list = plain;
    EXPECT_EQ(ValuesOf(list), (Ints{2, 4, 9})) << "assigning keeps the option";
    list = std::move(plain);
    EXPECT_EQ(ValuesOf(list), (Ints{2, 4, 9}));
    EXPECT_EQ(plain.Count(), 0);
    list.InsertAbsent(list.Count(), 2);
    list.Add(Traced(20));
    EXPECT_EQ(ValuesOf(list), (Ints{2, 4, 9, 20, kAbsent, kAbsent})) << "absent places come last";
}

TEST_P(ObjList, DeleteIfWalksOnce)
{
    for (int count : {0, 10, 9000}) {
        TracedList list;
        for (int i = 0; i < count; ++i)
            list.Add(Traced(i));
        list.InsertAbsent(count / 4, 1);
        int asked = 0;
        EXPECT_EQ(list.DeleteIf([&](const void* item) {
            ++asked;
            return !item || static_cast<const Traced*>(item)->value % 3 != 0;
        }),
                  count - (count + 2) / 3 + 1);
        EXPECT_EQ(asked, count + 1);
        for (int i = 0; i < list.Count(); ++i)
            ASSERT_EQ(list.GetItem(i)->value, 3 * i);
    }
}

TEST_P(ObjList, StaysWholeWhenMemoryRunsOut)
{
    bool failed = true;
    for (int n = 1; failed; ++n) {
        ASSERT_LT(n, 2000);
        TracedList list, ordered(1), other;
        Fill(other, {7, 3, 5, 3});
        Fill(ordered, {4, 5});
        std::vector<TracedList> full(20, other); // so that the pool has to grow soon
        zn::FailAllocation(n);
        for (int i = 0; i < 40; ++i) {
            const int before = list.Count();
            const int index = list.Insert(i / 2, Traced(i));
            ASSERT_EQ(list.Count(), before + (index >= 0 ? 1 : 0));
        }
        Traced* item = ordered.NewItem();
        if (item && list.InsertLink(2, item) < 0)
            TracedHandler::Instance().Drop(item); // refused: still the caller's
        const Ints values = ValuesOf(list);
        const bool appended = list.AppendList(other) >= 0;
        EXPECT_EQ(ValuesOf(list).size(), values.size() + (appended ? 4 : 0));
        TracedList assigned(0);
        Fill(assigned, {1});
        const int had = assigned.Count();
        const bool same = assigned.AssignList(list) >= 0;
        EXPECT_EQ(assigned.Count(), same ? list.Count() : had);
        const bool added = ordered.AppendList(other) >= 0;
        EXPECT_EQ(ValuesOf(ordered), added ? (Ints{3, 4, 5, 7}) : (Ints{4, 5}));
        const int before = list.Count();
        const bool grown = static_cast<Zn_ObjList&>(list).GetSafeItem(before + 100, 1) != nullptr;
        EXPECT_EQ(list.Count(), grown ? before + 101 : before);
        list.Delete(3, 20);
        failed = zn::AllocationFailed();
        zn::FailAllocation(0);
    }
}

TEST_P(ObjList, RangeForGivesTheEmptyItemForAbsentPlaces)
{
    TracedList list;
    Fill(list, {1, 2});
    list.InsertAbsent(1, 1);
    Ints values;
    for (const Traced& item : list)
        values.push_back(&item == &TracedHandler::EmptyItem() ? kAbsent : item.value);
    EXPECT_EQ(values, (Ints{1, kAbsent, 2}));
}

TEST_P(ObjList, AnyOperationsInAnyOrder)
{
    std::mt19937 random(static_cast<unsigned>(GetParam()));
    const auto below = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
    for (int round = 0; round < 300; ++round) {
        TracedList list, other;
        Ints values; // what the list holds
        Fill(other, {1000, 1001});
        for (int step = 0; step < 12; ++step) {
            const int count = list.Count();
            const int at = below(count + 1);
            switch (below(10)) {
            case 0:
            case 1:
                EXPECT_EQ(list.Add(Traced(step)), count);
                values.push_back(step);
                break;
            case 2:
                static_cast<Zn_ObjList&>(list).GetSafeItem(count + 1, 1);
                values.resize(values.size() + 2, 0);
                break;
            case 3:
                list.InsertAbsent(at, 1);
                values.insert(values.begin() + at, kAbsent);
                break;
            case 4: {
                list.InsertLink(at, other.GetItem(0));
                values.insert(values.begin() + at, 1000);
                break;
            }
            case 5:
                if (count > 0 && list.GetItem(at % count))
                    other.AddLink(list.GetItem(at % count)); // which the list and the other then share
                break;
            case 6:
                values.erase(values.begin() + at, values.begin() + at + list.Delete(at, 1 + below(2)));
                break;
            case 7:
                if (list.Set(at, Traced(70 + step), 1) >= 0) {
                    values.resize(std::max(values.size(), static_cast<std::size_t>(at) + 1), kAbsent);
                    values[static_cast<std::size_t>(at)] = 70 + step;
                }
                break;
            case 8:
                if (static_cast<Zn_ObjList&>(list).GetSafeItem(at, 1) &&
                    (at == count || values[std::size_t(at)] == kAbsent)) {
                    values.resize(std::max(values.size(), static_cast<std::size_t>(at) + 1));
                    values[static_cast<std::size_t>(at)] = 0;
                }
                break;
            default: {
                const TracedList copy(list);
                ASSERT_EQ(ValuesOf(copy), values);
                if (list.Exchange(0, count - 1))
                    std::swap(values.front(), values.back());
                break;
            }
            }
            ASSERT_EQ(ValuesOf(list), values) << "round " << round << " step " << step;
        }
        for (int i = 2; i < other.Count(); ++i)
            EXPECT_GE(other.GetItem(i)->value, 0) << "lives";
        if (below(2))
            list.ReleaseList();
        for (int i = 2; i < other.Count(); ++i)
            EXPECT_GE(other.GetItem(i)->value, 0) << "lives on in the other list";
    }
}

INSTANTIATE_TEST_SUITE_P(RoomAtStart, ObjList, testing::Values(0, 3, 15));

TEST(ObjListStrip, KeepsItemsOneBehindTheOther)
{
    Zn_ObjBufPool& pool = TracedHandler::Instance().GetPool();
    const int used = pool.GetUsedCount();
    {
        TracedList list;
        list.AllocItems(5);
        Fill(list, {1, 2, 3});
        for (int i = 0; i < 3; ++i)
            EXPECT_EQ(reinterpret_cast<const char*>(list.GetItem(i)) - reinterpret_cast<const char*>(list.GetItem(0)),
                      i * pool.GetStride());
        const Traced* last = list.GetItem(2);
        TracedList keeper;
        keeper.AddLink(last);
        list.Delete(0);
        EXPECT_EQ(list.GetItem(1), last) << "items stay where they are";
        EXPECT_EQ(pool.GetUsedCount(), used + 2) << "what the strip had beside its items is given back";
        const TracedList copy(list);
        list.ReleaseList();
        EXPECT_EQ(keeper.GetItem(0)->value, 3);
        EXPECT_EQ(copy.GetItem(1)->value, 3);
    }
    EXPECT_EQ(pool.GetUsedCount(), used);
}

// An item that holds items of its own class.
struct Nested {
    Nested();
    void Set(const Nested& other);
    static void InitWithMemory(Nested* memory) { Zn_InitInPlace(memory); }
    static void FreeWithMemory(Nested* item) { Zn_FreeInPlace(item); }
    Zn_ObjList items;
};

class NestedHandler final : public Zn_TypedHandler<Nested> {
public:
    NestedHandler() noexcept : Zn_TypedHandler("Nested", 64) {}
    int _CompareItem(void* a, void* b) override { return a == b ? 0 : -1; }
    static NestedHandler& Instance() { return Zn_Global<NestedHandler>(); }
};

Nested::Nested() : items(&NestedHandler::Instance()) {}
void Nested::Set(const Nested& other)
{
    items = other.items;
}

TEST(ObjListNesting, TakesAListOutOfItsOwnItem)
{
    {
        Nested root;
        root.items.GetSafeItem(0, 1);
        Zn_ObjList& inner = static_cast<Nested*>(root.items.GetItem(0))->items;
        inner.GetSafeItem(1, 1);
        root.items = inner;
        EXPECT_EQ(root.items.Count(), 2);
        Zn_ObjList& other = static_cast<Nested*>(root.items.GetItem(1))->items;
        other.GetSafeItem(2, 1);
        root.items = std::move(other);
        EXPECT_EQ(root.items.Count(), 3);
    }
    EXPECT_EQ(NestedHandler::Instance().GetPool().GetUsedCount(), 0);
}

TEST(ObjListNesting, DestroysADeepTreeOnAShallowStack)
{
    Zn_ObjBufPool& pool = NestedHandler::Instance().GetPool();
    {
        Nested root;
        Nested* last = &root;
        for (int depth = 0; depth < 200000; ++depth) {
            last->items.GetSafeItem(2, 1); // two that hold nothing beside the one that goes on
            last = static_cast<Nested*>(last->items.GetItem(1));
        }
        EXPECT_EQ(pool.GetUsedCount(), 600000);
    }
    EXPECT_EQ(pool.GetUsedCount(), 0);
}

struct Counted {
    void Set(const Counted& other) { value = other.value; }
    static void InitWithMemory(Counted* memory) { Zn_InitInPlace(memory); }
    static void FreeWithMemory(Counted* item) { Zn_FreeInPlace(item); }
    int value = 0;
};

class CountedHandler final : public Zn_TypedHandler<Counted> {
public:
    CountedHandler() noexcept : Zn_TypedHandler("Counted", 8) {}
    int _CompareItem(void* a, void* b) override { return a == b ? 0 : -1; }
    static CountedHandler& Instance() { return Zn_Global<CountedHandler>(); }
    static const Counted& EmptyItem() { return Zn_Global<Counted>(); }
};

using CountedList = Zn_TypedList<Counted, CountedHandler>;

TEST(ObjListThreads, ListsOfOnePoolInTwoThreads)
{
    CountedList source;
    for (int i = 0; i < 100; ++i)
        source.AddLink(source.NewItem());
    const CountedList* shared = &source;
    const auto work = [shared] {
        for (int round = 0; round < 50; ++round) {
            CountedList list;
            for (const Counted& item : *shared)
                list.AddLink(&item); // counts of items that both threads hold
            list.AppendList(*shared);
            list.Delete(50, 100);
        }
    };
    std::thread other(work);
    work();
    other.join();
    EXPECT_EQ(CountedHandler::Instance().GetPool().GetUsedCount(), 100);
    source.ReleaseList();
    EXPECT_EQ(CountedHandler::Instance().GetPool().GetUsedCount(), 0);
}

} // namespace
