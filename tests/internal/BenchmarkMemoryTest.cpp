// Chronometers when memory is exhausted: a section is not timed, a step or a line is left out, and everything is freed.

#include <TuvoUtil/Benchmark.h>

#include "platform/Platform.h"
#include "support/AllocationControl.h"
#include "support/TestFiles.h"
#include "support/TestInChild.h"

#include <basutl/BuChrono.h>
#include <basutl/BuLogger.h>

#include <cwchar>
#include <initializer_list>
#include <string>

namespace {

using namespace tuvo::benchmark;

struct Tree : Benchmark
{
    static bool IsEmpty() { return m_ptiCurrent == &m_tiRoot && m_tiRoot.GetChildCount() == 0; }
};

long long g_ticks = 0;
int g_lines = 0;

// Every line that arrives is whole. Allocates nothing.
void Check(int, const wchar_t* text, void*)
{
    const wchar_t* line = text;
    while (*line == L' ')
        ++line;
    bool isKnown = std::wcsstr(line, L"s : 1 calls of    ") != nullptr;
    for (const wchar_t* const known :
         {L"----------------------------------\n", L"Benchmark history:\n", L"Benchmark summary:\n",
          L"6s (internal: 2s): Chrono 'a section with a long name'\n", L"6s: Chrono 'a section with a long name'\n",
          L"1s: Step one\n", L"5s (internal: 1s): 'Step two'\n", L"5s: Step two\n", L"6s: End\n",
          L"6s (internal: 2s): 'End'\n", L"4s (internal: 0s): Chrono 'inner'\n", L"4s: Chrono 'inner'\n",
          L"4s: Chrono 'innermost'\n"})
        isKnown = isKnown || std::wcscmp(line, known) == 0;
    EXPECT_TRUE(isKnown);
    ++g_lines;
}

void Work()
{
    Benchmark outer(L"a section with a long name", BENCH_LEVEL_0);
    g_ticks += 1'000'000'000;
    outer.RecordElapsedTime(L"%s", L"one");
    {
        const Benchmark inner(L"inner", BENCH_LEVEL_0);
        const Benchmark innermost(L"innermost", BENCH_LEVEL_0);
        g_ticks += 4'000'000'000;
    }
    outer.RecordElapsedTime(L"%s", L"two");
    g_ticks += 1'000'000'000;
}

TEST_IN_CHILD(BenchmarkMemory, LeavesOutWhatCannotBeHeld)
{
    BuSetTickSource([] { return g_ticks; });
    BuLogger::GetInstance().SetSink(Check, nullptr);
    const Benchmark first(L"first", BENCH_LEVEL_0);
    const int blocks = allocation::LiveBlocks();
    const int failures = allocation::ForEachFailure([&] {
        g_lines = 0;
        Work();
        EXPECT_TRUE(Tree::IsEmpty());
        EXPECT_EQ(allocation::LiveBlocks(), blocks);
    });
    EXPECT_GT(failures, 20);
    EXPECT_EQ(g_lines, 6 + 6 + 4);
}

TEST_IN_CHILD(BenchmarkMemory, SummaryArraysStayOrGrowAsAWhole)
{
    struct Dump : Benchmark
    {
        using Benchmark::DumpChronoItemChildren;
    };
    BuTreeItemTempl<Benchmark::Chrono*, BuCRTAllocator> empty;
    allocation::ForEachFailure([&] {
        BuObjectArrayTempl<BuString> names;
        BuArrayTempl<float> times;
        BuArrayTempl<unsigned long long> counts;
        const bool isFilled = names.Add(L"a long name") == 0 && times.Add(1.0F) == 0 && counts.Add(3) == 0;
        if (!isFilled)
            return;
        const int length = names[0].GetLength();
        Dump::DumpChronoItemChildren(empty, L"a prefix", names, times, counts);
        EXPECT_EQ(names.GetCount(), 1);
        EXPECT_EQ(names[0].GetLength(), length);
        EXPECT_EQ(counts[0], 3ULL);
    });
}

CHILD_SCENARIO(BenchmarkTraceWithoutMemory)
{
    const std::wstring file = platform::Widen(ChildArguments().at(0));
    platform::SetEnvironmentValue(L"QD_BENCH_TRACE", file);
    BuLogger::GetInstance().SetSink([](int level, const wchar_t*, void*) { g_lines += level == 2 ? 1 : 100; }, nullptr);
    const Benchmark first(L"first", BENCH_LEVEL_0);
    const Benchmark whole(L"whole", BENCH_LEVEL_0);
    const std::string events = ReadBinaryFile(file);
    EXPECT_NE(events.find("whole"), events.npos);
    allocation::FailOnce(3);  // after the section itself
    const Benchmark cut(L"a name that needs memory of its own in an event", BENCH_LEVEL_0);
    EXPECT_TRUE(allocation::HasFailed());
    allocation::FailFrom(0);
    const Benchmark untraced(L"untraced", BENCH_LEVEL_0);
    EXPECT_EQ(g_lines, 1);
    EXPECT_EQ(ReadBinaryFile(file), events);
    return testing::Test::HasFailure() ? 1 : 0;
}

TEST(BenchmarkMemory, ATraceEndsWithWhatItCannotHold)
{
    const TemporaryFolder folder;
    const ChildResult child = RunChild("BenchmarkTraceWithoutMemory", {}, {folder.Path("trace.json")});
    EXPECT_EQ(child.exitCode, 0) << child.output << child.errors;
}

}  // namespace
