// Lists and their pools, beside the standard containers on the same work.
#include "Zn_TypedList.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <memory>
#include <random>
#include <vector>

namespace {

struct Row {
    void Set(const Row& other) noexcept { *this = other; }
    static void InitWithMemory(Row* memory) { Zn_InitInPlace(memory); }
    static void FreeWithMemory(Row* item) { Zn_FreeInPlace(item); }
    int value = 0;
    void* more = nullptr;
};

class RowHandler final : public Zn_TypedHandler<Row> {
public:
    RowHandler() noexcept : Zn_TypedHandler("Row", 256) {}
    int _CompareItem(void* a, void* b) override { return static_cast<Row*>(a)->value - static_cast<Row*>(b)->value; }
    static RowHandler& Instance() { return Zn_Global<RowHandler>(); }
    static const Row& EmptyItem() { return Zn_Global<Row>(); }
};

class RowList : public Zn_TypedList<Row, RowHandler> {
public:
    // The rows 0 to count - 1; in chunks when one in the middle was taken out and put back.
    explicit RowList(int count, bool inChunks = false)
    {
        Row row;
        for (row.value = 0; row.value < count; ++row.value)
            Add(row);
        if (inChunks) {
            row = *GetItem(count / 2);
            Delete(count / 2);
            Insert(count / 2, row);
        }
    }
};

std::vector<int> RandomBelow(int limit)
{
    std::mt19937 random(7);
    std::vector<int> numbers(1 << 16);
    for (int& number : numbers)
        number = static_cast<int>(random() % static_cast<unsigned>(limit));
    return numbers;
}

void Items(benchmark::State& state, std::int64_t perRound)
{
    state.SetItemsProcessed(state.iterations() * perRound);
}

void ListAppendAndDestroy(benchmark::State& state)
{
    const int count = static_cast<int>(state.range(0));
    for (auto _ : state) {
        RowList list(count);
        if (list.Count() != count || list[count / 2]->value != count / 2)
            return state.SkipWithError("wrong list");
    }
    Items(state, count);
}

void VectorOfPointersAppendAndDestroy(benchmark::State& state)
{
    const int count = static_cast<int>(state.range(0));
    for (auto _ : state) {
        std::vector<std::unique_ptr<Row>> rows;
        for (int i = 0; i < count; ++i)
            rows.push_back(std::make_unique<Row>(Row{i, nullptr}));
        benchmark::DoNotOptimize(rows.data());
    }
    Items(state, count);
}

// Arguments: count, whether in chunks.
void ListGetRandom(benchmark::State& state)
{
    const int count = static_cast<int>(state.range(0));
    const RowList list(count, state.range(1) != 0);
    const std::vector<int> places = RandomBelow(count);
    for (int place : places)
        if (list[place]->value != place)
            return state.SkipWithError("wrong item");
    for (auto _ : state)
        for (int place : places)
            benchmark::DoNotOptimize(list.GetItem(place));
    Items(state, static_cast<std::int64_t>(places.size()));
}

void ListWalk(benchmark::State& state)
{
    const int count = static_cast<int>(state.range(0));
    const RowList list(count, state.range(1) != 0);
    for (auto _ : state) {
        std::int64_t sum = 0;
        for (const Row& row : list)
            sum += row.value;
        if (sum != static_cast<std::int64_t>(count) * (count - 1) / 2)
            return state.SkipWithError("wrong sum");
    }
    Items(state, count);
}

void SeqInsertAndRemoveAnywhere(benchmark::State& state)
{
    const int count = static_cast<int>(state.range(0));
    const std::vector<int> places = RandomBelow(count);
    Zn_PointerSeq seq;
    for (int i = 0; i < count; ++i)
        seq.Append(&seq);
    for (auto _ : state) {
        for (std::size_t i = 0; i < places.size(); ++i) {
            void* pointer = &seq;
            seq.Insert(places[i], &pointer, 1);
            seq.Remove(places[places.size() - 1 - i], 1);
        }
        if (seq.Count() != count)
            return state.SkipWithError("wrong count");
    }
    Items(state, static_cast<std::int64_t>(places.size()));
}

void VectorInsertAndEraseAnywhere(benchmark::State& state)
{
    const int count = static_cast<int>(state.range(0));
    const std::vector<int> places = RandomBelow(count);
    std::vector<void*> vector(static_cast<std::size_t>(count));
    std::size_t i = 0;
    for (auto _ : state) {
        vector.insert(vector.begin() + places[i], &vector);
        vector.erase(vector.begin() + places[i ^ 1]);
        i = (i + 1) % places.size();
    }
    Items(state, 1);
}

void PoolAllocAndFree(benchmark::State& state)
{
    Zn_ObjBufPool pool("Row", sizeof(Row), 256);
    std::vector<void*> items(10000);
    for (auto _ : state) {
        for (void*& item : items)
            item = pool.Alloc();
        for (void* item : items)
            pool.Free(item);
    }
    Items(state, static_cast<std::int64_t>(items.size()));
}

void MallocAndFree(benchmark::State& state)
{
    std::vector<void*> items(10000);
    for (auto _ : state) {
        for (void*& item : items)
            benchmark::DoNotOptimize(item = std::malloc(sizeof(Row) + sizeof(Zn_ObjBufData)));
        for (void* item : items)
            std::free(item);
    }
    Items(state, static_cast<std::int64_t>(items.size()));
}

BENCHMARK(ListAppendAndDestroy)->Arg(1000)->Arg(1000000);
BENCHMARK(VectorOfPointersAppendAndDestroy)->Arg(1000)->Arg(1000000);
BENCHMARK(ListGetRandom)->Args({1000, 0})->Args({1000000, 0})->Args({1000000, 1});
BENCHMARK(ListWalk)->Args({1000000, 0})->Args({1000000, 1});
BENCHMARK(SeqInsertAndRemoveAnywhere)->Arg(1000)->Arg(10000)->Arg(100000)->Arg(1000000);
BENCHMARK(VectorInsertAndEraseAnywhere)->Arg(1000)->Arg(10000)->Arg(100000)->Arg(1000000);
BENCHMARK(PoolAllocAndFree);
BENCHMARK(MallocAndFree);

} // namespace

BENCHMARK_MAIN();
