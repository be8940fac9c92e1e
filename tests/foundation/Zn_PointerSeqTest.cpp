#include "Zn_PointerSeq.h"

#include "foundation/memory.h"
#include "foundation/part_index.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <vector>

namespace {

void* Ptr(std::size_t n)
{
    return reinterpret_cast<void*>(static_cast<std::uintptr_t>(n));
}

// The sequence beside a vector that goes through the same.
struct Pair {
    Zn_PointerSeq seq{1};
    std::vector<void*> oracle;
    std::size_t next = 1;

    void Insert(int index, int count)
    {
        std::vector<void*> fresh;
        for (int i = 0; i < count; ++i)
            fresh.push_back(Ptr(next++));
        ASSERT_TRUE(seq.Insert(index, fresh.data(), count));
        oracle.insert(oracle.begin() + index, fresh.begin(), fresh.end());
    }
    void Remove(int index, int count)
    {
        seq.Remove(index, count);
        oracle.erase(oracle.begin() + index, oracle.begin() + index + count);
    }
    int Count() const { return static_cast<int>(oracle.size()); }

    void Check() const
    {
        ASSERT_EQ(seq.Count(), Count());
        EXPECT_EQ(seq.GetTag(), 1) << "stays through everything";
        std::vector<void*> walked;
        seq.ForEach([&](void* p) { walked.push_back(p); });
        ASSERT_EQ(walked, oracle);
        EXPECT_EQ(seq.At(-1), nullptr);
        EXPECT_EQ(seq.At(Count()), nullptr);
    }
};

struct Size {
    const char* name;
    int start;
    int steps;
    int longest; // inserted or removed at once
};

class PointerSeqSizes : public testing::TestWithParam<Size> {};

TEST_P(PointerSeqSizes, KeepsStepWithAVector)
{
    const Size size = GetParam();
    std::mt19937 random(20040229);
    const auto below = [&](int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); };
    const auto place = [&](int limit) {
        const int ways[] = {0, limit / 2, limit - 1, below(limit)};
        return ways[below(4)];
    };
    Pair pair;
    pair.Insert(0, size.start);
    for (int step = 0; step < size.steps; ++step) {
        // Grows for the first half, shrinks in the second.
        const bool grow = below(3) != 0 ? step < size.steps / 2 : step >= size.steps / 2;
        const int count = below(size.longest) + 1;
        if (grow || pair.Count() == 0) {
            pair.Insert(place(pair.Count() + 1), count);
        } else {
            const int index = place(pair.Count());
            pair.Remove(index, std::min(count, pair.Count() - index));
        }
        if (pair.Count() > 0) {
            const int index = below(pair.Count());
            ASSERT_EQ(pair.seq.At(index), pair.oracle[static_cast<std::size_t>(index)]) << "step " << step;
        }
        if (step % 512 == 0) {
            ASSERT_NO_FATAL_FAILURE(pair.Check());
        }
    }
    pair.Check();
}

INSTANTIATE_TEST_SUITE_P(All, PointerSeqSizes,
                         testing::Values(Size{"Few", 0, 2000, 3}, Size{"FromArrayToChunksAndBack", 2500, 20000, 1},
                                         Size{"ManyChunks", 40000, 30000, 1}, Size{"LongRuns", 10000, 400, 1500}),
                         [](const auto& row) { return row.param.name; });

TEST(PointerSeq, RemovesAnyRangeOfManyChunks)
{
    for (int from : {0, 1, 447, 448, 449, 5000})
        for (int count : {1, 447, 448, 1000, 6000}) {
            Pair pair;
            pair.Insert(0, 12000);
            pair.Insert(1, 1);
            pair.Remove(from, count);
            pair.Check();
            pair.Insert(from, 700);
            pair.Check();
            pair.Remove(0, pair.Count());
            pair.Check();
        }
}

TEST(PointerSeq, InsertsNullPlaces)
{
    for (int start : {0, 5, 9000}) {
        Pair pair;
        pair.Insert(0, start);
        ASSERT_TRUE(pair.seq.Insert(start / 3, nullptr, 2));
        pair.oracle.insert(pair.oracle.begin() + start / 3, 2, nullptr);
        pair.Check();
    }
}

TEST(PointerSeq, ChangesNothingWithoutMemory)
{
    for (int start : {0, 6, 9000, 30000})
        for (int n = 1; n < 200; ++n) {
            Pair pair;
            pair.Insert(0, start);
            const std::vector<void*> fresh(1500, Ptr(7));
            zn::FailAllocation(n);
            const bool done = pair.seq.Insert(start / 4, fresh.data(), 1500);
            const bool failed = zn::AllocationFailed();
            zn::FailAllocation(0);
            if (done)
                pair.oracle.insert(pair.oracle.begin() + start / 4, fresh.begin(), fresh.end());
            ASSERT_NO_FATAL_FAILURE(pair.Check()) << start << " places, allocation " << n;
            ASSERT_TRUE(done || failed);
            if (!failed)
                break;
            ASSERT_LT(n, 199);
        }
}

TEST(PartIndex, FindsThePartOfEveryIndex)
{
    std::mt19937 random(3);
    for (int parts : {1, 2, 63, 64, 65, 4095, 4096, 4097, 5000}) {
        SCOPED_TRACE(parts);
        std::vector<std::int32_t> lengths(static_cast<std::size_t>(parts));
        for (std::int32_t& length : lengths)
            length = static_cast<std::int32_t>(random() % 4); // some are empty
        lengths.back() = 2;
        std::vector<std::int32_t> memory(static_cast<std::size_t>(zn::PartIndex::MemoryFor(parts + 70)));
        zn::PartIndex index(memory.data(), parts + 70);
        index.Build(lengths.data(), parts);
        for (int change = 0; change < 100; ++change) {
            const std::size_t part = random() % lengths.size();
            const int delta = change % 2 == 0 ? 3 : -std::min(lengths[part], 1);
            lengths[part] += delta;
            index.Add(static_cast<int>(part), delta);
        }
        int at = 0;
        for (int part = 0; part < parts; ++part)
            for (int offset = 0; offset < lengths[static_cast<std::size_t>(part)]; ++offset, ++at) {
                const zn::PartIndex::Found found = index.Find(at);
                ASSERT_EQ(found.part, part);
                ASSERT_EQ(found.offset, offset);
            }
    }
}

TEST(PointerSeq, TagsAreSwappedToo)
{
    Zn_PointerSeq seq(1), other(0);
    seq.Swap(other);
    EXPECT_EQ(seq.GetTag(), 0);
    other.Clear();
    EXPECT_EQ(other.GetTag(), 1);
}

} // namespace
