#include <TuvoUtil/Benchmark.h>

#include "support/BenchmarkSession.h"
#include "support/TestFiles.h"
#include "support/TestInChild.h"

#include <basutl/BuLocalize.h>

#include <cstdint>
#include <cstdio>
#include <cwchar>
#include <memory>

namespace {

using namespace tuvo::benchmark;

constexpr char Dashes[] = "----------------------------------\n";

// The text of a report.
std::string Report(const std::string& history, const std::string& summary)
{
    const auto heading = [](const char* text) { return std::string(Dashes) + text + Dashes; };
    return heading("Benchmark history:\n") + history +
           (summary.empty() ? "" : heading("Benchmark summary:\n") + summary);
}

// What only a derived class sees.
struct Tree : Benchmark
{
    using Benchmark::DumpChronoItemChildren;
    static auto& Root() { return m_tiRoot; }
    static bool IsEmpty() { return m_ptiCurrent == &m_tiRoot && m_tiRoot.GetChildCount() == 0 && m_tiRoot.IsValid(); }
};

// ---- Reports -------------------------------------------------------------------------------------------------------

TEST_IN_CHILD(Benchmark, ReportsHistoryAndSummary)
{
    const struct
    {
        const char *program, *history, *summary;
    } rows[] = {
        {"(a +1 )", "1s: Chrono 'a'\n", "1.000s : 1 calls of    a\n"},
        {"(a +0.5 )", "0.5s: Chrono 'a'\n", "0.500s : 1 calls of    a\n"},
        {"(%d%s +12.5 )", "12.5s: Chrono '%d%s'\n", "12.500s : 1 calls of    %d%s\n"},
        // One that is too short waits for the next one, and is not shown then either.
        {"(a +0.25 ) (b +1 )", "1s: Chrono 'b'\n", "1.000s : 1 calls of    b\n"},
        // A section that only holds others contributes no key.
        {"(a +1 (b +2 ) +1 )", "4s (internal: 2s): Chrono 'a'\n   2s: Chrono 'b'\n", "2.000s : 1 calls of    b\n"},
        {"(a (b (c +1 ) ) )", "1s (internal: 0s): Chrono 'a'\n   1s (internal: 0s): Chrono 'b'\n      1s: Chrono 'c'\n",
         "1.000s : 1 calls of    c\n"},
        {"(a +1 (b +0.25 ) +1 )", "2.25s (internal: 2s): Chrono 'a'\n", ""},
        {"(a +0.25 !one +1 )", "1.25s: Chrono 'a'\n", "1.250s : 1 calls of    a\n"},
        // What ran between two steps stands below the later one.
        {"(a +1 !one +1 (b +2 ) +1 !two +1 )",
         "6s (internal: 4s): Chrono 'a'\n   1s: Step one\n   5s (internal: 3s): 'Step two'\n"
         "      2s: Chrono 'b'\n   6s: End\n",
         "6.000s : 1 calls of    a / End\n3.000s : 1 calls of    a / Step two\n2.000s : 1 calls of    b\n"
         "1.000s : 1 calls of    a / Step one\n"},
        {"(a +1 !one +1 (b +1 (c +1 ) ) (d +1 ) )",
         "5s (internal: 2s): Chrono 'a'\n   1s: Step one\n   5s (internal: 2s): 'End'\n"
         "      2s (internal: 1s): Chrono 'b'\n         1s: Chrono 'c'\n      1s: Chrono 'd'\n",
         "2.000s : 1 calls of    a / End\n1.000s : 1 calls of    d\n1.000s : 1 calls of    a / Step one\n"
         "1.000s : 1 calls of    c\n"},
        // A step whose own time is too short has no key; one nested section that is too short has no line.
        {"(a +0.25 (b +0.5 ) (c +0.125 ) !one +1 )",
         "1.875s (internal: 1.25s): Chrono 'a'\n   0.875s (internal: 0.25s): 'Step one'\n"
         "      0.5s: Chrono 'b'\n   1.875s: End\n",
         "1.875s : 1 calls of    a / End\n0.500s : 1 calls of    b\n"},
        // Calls of one name add up. Of equal times the last in the order of names comes first.
        {"(a +1 (b +1 ) (c +3 ) (b +2 ) )",
         "7s (internal: 1s): Chrono 'a'\n   1s: Chrono 'b'\n   3s: Chrono 'c'\n   2s: Chrono 'b'\n",
         "3.000s : 1 calls of    c\n3.000s : 2 calls of    b\n"},
    };
    BenchmarkSession session;
    for (const auto& [program, history, summary] : rows) {
        session.Run(program);
        EXPECT_EQ(session.TakeLog(), Report(history, summary)) << program;
        EXPECT_TRUE(Tree::IsEmpty()) << program;
    }
    session.Run("(a +0.25 )");
    EXPECT_EQ(session.TakeLog(), "");
    EXPECT_EQ(Tree::Root().GetChildCount(), 1);
}

// Equal times change places in the first pass of the sort.
TEST_IN_CHILD(Benchmark, SummaryKeepsTheOrderOfItsSort)
{
    BenchmarkSession session;
    session.Run("(0 (a +2 ) (b +2 ) (c +1 ) (d +3 ) )");
    const std::string log = session.TakeLog();
    EXPECT_EQ(log.substr(log.rfind("-\n") + 2),
              "3.000s : 1 calls of    d\n2.000s : 1 calls of    a\n"
              "2.000s : 1 calls of    b\n1.000s : 1 calls of    c\n");
}

TEST_IN_CHILD(Benchmark, TranslatesTextsButNotLines)
{
    BenchmarkSession session;
    BuSetTranslator([](const wchar_t* text, int) -> const wchar_t* {
        return std::wcscmp(text, L"Step %s") == 0 ? L"Schritt %s" : std::wcscmp(text, L"End") == 0 ? L"Ende" : nullptr;
    });
    session.Run("(a +1 !eins +1 )");
    BuSetTranslator(nullptr);
    EXPECT_EQ(session.TakeLog(), Report("2s: Chrono 'a'\n   1s: Schritt eins\n   2s: Ende\n",
                                        "2.000s : 1 calls of    a / Ende\n1.000s : 1 calls of    a / Schritt eins\n"));
}

TEST_IN_CHILD(Benchmark, DumpAddsToASummaryInTheOrderOfUtf16)
{
    BenchmarkSession session;
    BuObjectArrayTempl<BuString> names;
    BuArrayTempl<float> times;
    BuArrayTempl<unsigned long long> counts;
    names.Add(L"b");
    times.Add(4.0F);
    counts.Add(7);
    {
        const Benchmark all(L"all", BENCH_LEVEL_0);
        for (const wchar_t* const name : {L"\xFFFF", L"b", L"a", L"\U00010000", L"aa", L"b"}) {
            const Benchmark section(name, BENCH_LEVEL_0);
            session.Wait(1);
        }
        const auto* node = Tree::Root().GetFirstChildNode()->item->GetFirstChildNode();
        for (; node != nullptr; node = node->next)
            Tree::DumpChronoItemChildren(*node->item, node->next != nullptr ? L"> " : nullptr, names, times, counts);
        const std::string log = session.TakeLog();
        EXPECT_EQ(log.substr(log.rfind("> ")), "> 1s: Chrono 'aa'\n1s: Chrono 'b'\n");
    }
    EXPECT_EQ(session.TakeLog(), Report("6s (internal: 0s): Chrono 'all'\n", ""));  // what was dumped is gone
    const struct
    {
        const wchar_t* name;
        float time;
        unsigned long long count;
    } rows[] = {{L"a", 1, 1}, {L"aa", 1, 1}, {L"b", 6, 9}, {L"\U00010000", 1, 1}, {L"\xFFFF", 1, 1}};
    ASSERT_EQ(names.GetCount(), 5);
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(names[i], rows[i].name) << i;
        EXPECT_EQ(times[i], rows[i].time) << i;
        EXPECT_EQ(counts[i], rows[i].count) << i;
    }
}

// ---- Sections ------------------------------------------------------------------------------------------------------

TEST_IN_CHILD(Benchmark, TimesByLevelAndNeverTheFirst)
{
    platform::SetEnvironmentValue(L"QD_BENCH_LEVEL", L"1");
    BuLogger::GetInstance().SetSink([](int, const wchar_t*, void*) {}, nullptr);
    {
        const Benchmark first(L"first", BENCH_LEVEL_0);
        EXPECT_EQ(Tree::Root().GetChildCount(), 0);
        for (const int level : {-1, 0, 1, 2, 3}) {
            const int before = Tree::Root().GetChildCount();
            const Benchmark section(nullptr, static_cast<_Level>(level));
            EXPECT_EQ(Tree::Root().GetChildCount() - before, level <= 1 ? 1 : 0) << level;
            EXPECT_EQ(Benchmark::IsBenchLevelActive(static_cast<_Level>(level)), level <= 1 ? 1 : 0) << level;
        }
    }
    EXPECT_EQ(Tree::Root().GetChildCount(), 3);
}

TEST_IN_CHILD(Benchmark, CopiesCloseOnce)
{
    BenchmarkSession session;
    auto outer = std::make_unique<Benchmark>(L"outer", BENCH_LEVEL_0);
    auto inner = std::make_unique<Benchmark>(L"inner", BENCH_LEVEL_0);
    const auto untimed = std::make_unique<Benchmark>(L"untimed", static_cast<_Level>(3));
    Benchmark copy(*inner), assigned(*untimed);
    assigned = copy;
    assigned = *&assigned;
    session.Wait(1);
    inner.reset();
    session.Wait(1);
    copy.RecordElapsedTime(L"after the end");
    copy = *untimed;  // the section is closed: nothing happens
    Benchmark last(*outer);
    outer.reset();
    const std::string report =
        Report("2s (internal: 1s): Chrono 'outer'\n   1s: Chrono 'inner'\n", "1.000s : 1 calls of    inner\n");
    EXPECT_EQ(session.TakeLog(), report);
    EXPECT_TRUE(Tree::IsEmpty());
    // The copies are still there, and no later section takes their place.
    for (int i = 0; i < 10; ++i)
        session.Run("(a +1 (b +1 ) )");
    last = *untimed;
    assigned = last;
    EXPECT_TRUE(Tree::IsEmpty());
}

TEST_IN_CHILD(Benchmark, AnyOrderOfClosingLeavesAnEmptyTree)
{
    BenchmarkSession session;
    for (int order = 0; order < 27; ++order) {
        std::vector<std::unique_ptr<Benchmark>> open;
        for (const wchar_t* const name : {L"a", L"b", L"c", L"d"}) {
            open.push_back(std::make_unique<Benchmark>(name, BENCH_LEVEL_0));
            session.Wait(1);
            open.back()->RecordElapsedTime(L"in %s", name);
        }
        for (int code = order; !open.empty(); code /= 3)
            open.erase(open.begin() + code % 3 % static_cast<int>(open.size()));
        EXPECT_TRUE(Tree::IsEmpty()) << order;
        EXPECT_NE(session.TakeLog().find("Chrono 'a'"), std::string::npos) << order;
    }
}

TEST_IN_CHILD(Benchmark, SinkMayOpenSections)
{
    const BenchmarkSession session;
    static int lines = 0;
    BuLogger::GetInstance().SetSink(
        [](int, const wchar_t*, void*) {
            ++lines;
            const Benchmark section(L"log", BENCH_LEVEL_0);
            BenchmarkSession::Wait(1);
        },
        nullptr);
    session.Run("(a +1 )");
    EXPECT_EQ(lines, 8);
    EXPECT_TRUE(Tree::IsEmpty());
}

// Neither depth nor length nor the number of keys may cost the stack or quadratic time.
TEST_IN_CHILD(Benchmark, HistoriesMayBeDeepAndLong)
{
    BenchmarkSession session;
    std::vector<std::unique_ptr<Benchmark>> open;
    for (int i = 0; i < 200'000; ++i)
        open.push_back(std::make_unique<Benchmark>(L"deep", BENCH_LEVEL_0));
    while (!open.empty())
        open.pop_back();
    {
        const Benchmark all(L"all", BENCH_LEVEL_0);
        for (int i = 0; i < 200'000; ++i) {
            const Benchmark section(UtlFormatString(L"%d", 200'000 - i), BENCH_LEVEL_0);
            session.Wait(0.5);
        }
    }
    const std::string log = session.TakeLog();
    EXPECT_NE(log.find("\n100000s (internal: 0s): Chrono 'all'\n   0.5s: Chrono '200000'\n"), std::string::npos);
    EXPECT_NE(log.find("\n0.500s : 1 calls of    123456\n"), std::string::npos);
    EXPECT_TRUE(Tree::IsEmpty());
}

// ---- Settings ------------------------------------------------------------------------------------------------------

CHILD_SCENARIO(BenchmarkSettings)
{
    BuLogger::GetInstance().SetSink(
        [](int level, const wchar_t* text, void*) { std::printf("%d:%s|", level, platform::Narrow(text).c_str()); },
        nullptr);
    float threshold = 0.0F;
    const int level = Benchmark::GetSessionBenchLevel(&threshold);
    std::printf("%d %g", level, static_cast<double>(threshold));
    Benchmark::GetSessionBenchLevel(nullptr);  // reads, and tells, nothing anew
    return 0;
}

TEST(BenchmarkSettings, ComeFromTheEnvironment)
{
    const std::string badLevel = "2:Benchmark activation: invalid value for 'QD_BENCH_LEVEL' environment variable (";
    const std::string badThreshold =
        "2:Benchmark activation: invalid value for 'QD_BENCH_THRESHOLD_SEC' environment variable (";
    const std::string expectedLevel = "): Expected 0, 1 or 2\n|",
                      expectedTime = "): Expected positive time in seconds\n|";
    const struct
    {
        std::optional<std::wstring> level, threshold;
        std::string output;
    } rows[] = {
        {{}, {}, "0 0.5"},
        {L"0", L"0.25", "0 0.25"},
        {L"1", {}, "6:Benchmark is activated: level=1 - threshold=0.5sec|1 0.5"},
        {L"2", L"1e-3", "6:Benchmark is activated: level=2 - threshold=0.001sec|2 0.001"},
        {L"3", {}, badLevel + "3" + expectedLevel + "0 0.5"},
        {L"01", {}, badLevel + "01" + expectedLevel + "0 0.5"},
        {L"%s%n", {}, badLevel + "%s%n" + expectedLevel + "0 0.5"},
        {{}, L"0", badThreshold + "0" + expectedTime + "0 0.5"},
        {{}, L"-1", badThreshold + "-1" + expectedTime + "0 0.5"},
        {{}, L"abc", badThreshold + "abc" + expectedTime + "0 0.5"},
        {{}, L"nan", badThreshold + "nan" + expectedTime + "0 0.5"},
        {{}, L"1e-50", badThreshold + "1e-50" + expectedTime + "0 0.5"},
        {{}, L" 0.75sec", "0 0.75"},
        {{}, L"0x10", "0 16"},
        {{}, L"1e50", "0 inf"},
        {L"x", L"y", badLevel + "x" + expectedLevel + badThreshold + "y" + expectedTime + "0 0.5"},
    };
    for (const auto& [level, threshold, output] : rows) {
        const ChildResult child = RunChild(
            "BenchmarkSettings",
            {{L"QD_BENCH_LEVEL", level}, {L"QD_BENCH_THRESHOLD_SEC", threshold}, {L"QD_BENCH_TRACE", std::nullopt}});
        EXPECT_EQ(child.output, output);
        EXPECT_EQ(child.exitCode, 0) << child.errors;
    }
}

// ---- Traces --------------------------------------------------------------------------------------------------------

CHILD_SCENARIO(BenchmarkTraceEvents)
{
    const std::wstring file = platform::Widen(ChildArguments().at(0));
    BenchmarkSession session(L"0", L"100", file);
    auto expect = [&, events = std::string()](const char* event) mutable {
        const std::string ids = ",\"pid\":" + std::to_string(platform::ProcessId()) + ",\"tid\":1";
        if (*event != '\0')
            events += (events.empty() ? "\n{\"name\":" : ",\n{\"name\":") + std::string(event) + ids;
        if (std::string(event).find("\"i\"") != std::string::npos)
            events += ",\"s\":\"t\"";
        events += *event != '\0' ? "}" : "";
        EXPECT_EQ(ReadBinaryFile(file), "[" + events + "\n]\n");
    };
    expect("");
    session.Wait(0.000'001'5);
    Benchmark* const outer = new Benchmark(L"\"a\\\n\u00E9\U0001F600", BENCH_LEVEL_0);
    expect(R"("\"a\\\u000a\u00e9\ud83d\ude00","ph":"B","ts":1.500)");
    session.Wait(2);
    outer->RecordElapsedTime(L"%d", 7);
    expect(R"("7","ph":"i","ts":2000001.500)");
    Benchmark* const inner = new Benchmark(L"b", BENCH_LEVEL_0);
    expect(R"("b","ph":"B","ts":2000001.500)");
    const Benchmark untimed(L"c", BENCH_LEVEL_1);
    delete outer;  // what ends in a trace is always the innermost section
    expect(R"("b","ph":"E","ts":2000001.500)");
    delete inner;
    expect(R"("\"a\\\u000a\u00e9\ud83d\ude00","ph":"E","ts":2000001.500)");
    EXPECT_EQ(session.TakeLog(), "");
    return testing::Test::HasFailure() ? 1 : 0;
}

TEST(BenchmarkTrace, IsWholeAfterEveryEvent)
{
    const TemporaryFolder folder;
    const ChildResult child = RunChild("BenchmarkTraceEvents", {}, {folder.Path("trace.json")});
    EXPECT_EQ(child.exitCode, 0) << child.output << child.errors;
}

CHILD_SCENARIO(BenchmarkTraceUntilTheEnd)
{
    const Benchmark first(L"first", BENCH_LEVEL_0);
    const Benchmark section(L"section", BENCH_LEVEL_0);
    std::_Exit(7);
}

TEST(BenchmarkTrace, OutlastsTheProcess)
{
    const TemporaryFolder folder;
    const ChildResult child = RunChild("BenchmarkTraceUntilTheEnd",
                                       {{L"QD_BENCH_TRACE", folder.Path("trace.json")}, {L"QD_BENCH_LEVEL", {}}});
    EXPECT_EQ(child.exitCode, 7);
    const std::string text = ReadBinaryFile(folder.Path("trace.json"));
    EXPECT_EQ(text.find("[\n{\"name\":\"section\",\"ph\":\"B\","), 0U) << text;
    EXPECT_EQ(text.rfind("}\n]\n"), text.size() - 4) << text;
}

TEST(BenchmarkTrace, TellsAFileThatCannotBeWritten)
{
    const TemporaryFolder folder;
    const ChildResult child =
        RunChild("BenchmarkSettings",
                 {{L"QD_BENCH_TRACE", folder.Path()}, {L"QD_BENCH_LEVEL", {}}, {L"QD_BENCH_THRESHOLD_SEC", {}}});
    EXPECT_EQ(child.output, "2:Benchmark activation: invalid value for 'QD_BENCH_TRACE' environment variable (" +
                                folder.NarrowPath() + "): Expected a file that can be written\n|0 0.5");
}

// ---- Counters ------------------------------------------------------------------------------------------------------

TEST_IN_CHILD(Counter, TellsTheCallsOfAPeriod)
{
    static std::int64_t now = 1'000;
    BuSetTimeSource([] { return now; });
    BenchmarkSession session(L"1");
    Counter counter(L"calls %d", BENCH_LEVEL_1), inactive(L"none", BENCH_LEVEL_2);
    const struct
    {
        int wait, period, count;
        const char* log;
    } rows[] = {
        {0, 10, 1, ""},    {9, 10, 2, ""},
        {0, 10, 3, ""},    {1, 10, 0, "calls %d: 4 calls within 10 sec"},
        {100, 10, 1, ""},  {9, 10, 2, ""},
        {100, 200, 3, ""}, {0, 0, 0, "calls %d: 4 calls within 0 sec"},
        {0, 0, 1, ""},     {0, 0, 0, "calls %d: 2 calls within 0 sec"},
        {0, -5, 1, ""},    {-2, -5, 0, "calls %d: 2 calls within -5 sec"},
        {0, -5, 1, ""},
    };
    for (const auto& [wait, period, count, log] : rows) {
        now += wait;
        EXPECT_EQ(counter.IncrementCount(period), count);
        EXPECT_EQ(session.TakeLog(), log);
        EXPECT_EQ(inactive.IncrementCount(0), 0);
    }
    Counter copy(counter);
    EXPECT_EQ(copy.IncrementCount(5), 2);
    EXPECT_EQ(counter.IncrementCount(5), 2);
    copy = inactive;
    EXPECT_EQ(copy.IncrementCount(5), 0);
    BuSetTimeSource(nullptr);
}

TEST(FormatString, GivesANewText)
{
    EXPECT_EQ(UtlFormatString(L"%s / %d", L"a", 7), L"a / 7");
    EXPECT_TRUE(UtlFormatString(nullptr).IsEmpty());
}

}  // namespace
