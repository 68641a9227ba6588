// Integers put in front of others and taken away again, against std::vector, and arrays that grow by one at a time, against
// realloc, which is called for each of them too.

#include <TuvoUtil/ArrayHelpers.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <string>
#include <vector>

namespace {

struct Ours
{
    int* numbers = nullptr;
    int count = 0;

    Ours() = default;
    ~Ours() { UtlFreeAndInit(Variable()); }
    Ours(const Ours&) = delete;
    Ours& operator=(const Ours&) = delete;

    void** Variable() { return reinterpret_cast<void**>(&numbers); }
    void Append(int number)
    {
        UtlExpandArrayByOne(Variable(), &count, sizeof number);
        numbers[count - 1] = number;
    }
    void Insert(int index, int number)
    {
        UtlInsertArrayMember(Variable(), &count, sizeof number, index);
        numbers[index] = number;
    }
    void Remove(int index) { UtlRemoveArrayMember(Variable(), &count, sizeof *numbers, index); }
    const int* begin() const { return numbers; }
    const int* end() const { return numbers + count; }
};

struct Vector : std::vector<int>
{
    void Append(int number) { push_back(number); }
    void Insert(int index, int number) { insert(begin() + index, number); }
    void Remove(int index) { erase(begin() + index); }
};

struct Plain
{
    int* numbers = nullptr;
    int count = 0;

    Plain() = default;
    ~Plain() { std::free(numbers); }
    Plain(const Plain&) = delete;
    Plain& operator=(const Plain&) = delete;

    void Append(int number)
    {
        void* const block = std::realloc(numbers, static_cast<std::size_t>(count + 1) * sizeof number);
        if (block == nullptr)
            std::abort();
        numbers = static_cast<int*>(block);
        numbers[count++] = number;
    }
    const int* begin() const { return numbers; }
    const int* end() const { return numbers + count; }
};

// ---- Work that every kind of array does ----------------------------------------------------------------------------

template <typename Array>
void Fill(Array& array, int count)
{
    for (int i = 0; i < count; ++i)
        array.Append(i);
}

template <typename Array>
void Change(Array& array, int index)
{
    array.Insert(index, index);
    array.Remove(index / 2);
}

bool AreEqual()
{
    Ours ours;
    Vector vector;
    const auto both = [&](auto work) {
        work(ours);
        work(vector);
        return std::equal(ours.begin(), ours.end(), vector.begin(), vector.end());
    };
    bool areEqual = both([](auto& array) { Fill(array, 1000); });
    for (int index = 0; index < 1000; ++index)
        areEqual = both([=](auto& array) { Change(array, index); }) && areEqual;
    return areEqual;
}

template <typename Array>
void RunChange(benchmark::State& state, int count)
{
    if (!AreEqual())
        state.SkipWithError("not what the vector holds");
    Array array;
    Fill(array, count);
    for (auto _ : state) {
        Change(array, 0);
        benchmark::ClobberMemory();
    }
}

template <typename Array>
void RunGrow(benchmark::State& state, int count)
{
    Array all;
    Fill(all, count);
    if (std::distance(all.begin(), all.end()) != count || *(all.end() - 1) != count - 1)
        state.SkipWithError("not what was appended");
    for (auto _ : state) {
        Array array;
        Fill(array, count);
        benchmark::DoNotOptimize(array.begin());
    }
}

[[maybe_unused]] const bool g_registered = [] {
    benchmark::RegisterBenchmark("ArrayHelpers/insert and remove in 1000/ours", RunChange<Ours>, 1000);
    benchmark::RegisterBenchmark("ArrayHelpers/insert and remove in 1000/vector", RunChange<Vector>, 1000);
    benchmark::RegisterBenchmark("ArrayHelpers/insert and remove in 100000/ours", RunChange<Ours>, 100'000);
    benchmark::RegisterBenchmark("ArrayHelpers/insert and remove in 100000/vector", RunChange<Vector>, 100'000);
    benchmark::RegisterBenchmark("ArrayHelpers/grow to 1000/ours", RunGrow<Ours>, 1000);
    benchmark::RegisterBenchmark("ArrayHelpers/grow to 1000/realloc", RunGrow<Plain>, 1000);
    benchmark::RegisterBenchmark("ArrayHelpers/grow to 1000/vector", RunGrow<Vector>, 1000);
    for (const int times : {1, 10, 100}) {
        const std::string size = '/' + std::to_string(times) + 'x';
        benchmark::RegisterBenchmark(("ArrayHelpers/insert and remove" + size).c_str(), RunChange<Ours>, times * 1000);
        benchmark::RegisterBenchmark(("ArrayHelpers/grow" + size).c_str(), RunGrow<Ours>, times * 1000);
    }
    return true;
}();

}  // namespace
