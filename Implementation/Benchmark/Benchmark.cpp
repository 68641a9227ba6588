#include <TuvoUtil/Benchmark.h>

#include "Benchmark/Chrono.h"
#include "Benchmark/History.h"
#include "Benchmark/Log.h"
#include "Benchmark/Session.h"
#include "Benchmark/Trace.h"

#include <cstdarg>
#include <utility>

BuString UtlFormatString(const wchar_t* format, ...)
{
    BuString text;
    va_list arguments;
    va_start(arguments, format);
    text.FormatV(format, arguments);
    va_end(arguments);
    return text;
}

namespace tuvo::benchmark {

constinit _Level Benchmark::m_iSessionBenchLevel = BENCH_LEVEL_0;
constinit float Benchmark::m_rSessionThresholdSec = 0.5F;
constinit ChronoItem Benchmark::m_tiRoot;
constinit ChronoItem* Benchmark::m_ptiCurrent = nullptr;

namespace {

constinit bool g_isSessionRead = false;
constinit bool g_isReporting = false;

}  // namespace

// The sections that are open, and those that were not reported yet.
class ChronoTree
{
public:
    // A new section inside the current one; null when it is not timed.
    static Benchmark::Chrono* Open(const wchar_t* name, _Level level)
    {
        ChronoItem*& current = Benchmark::m_ptiCurrent;
        // Kept: the first section of a process only gives the others their place.
        if (current == nullptr) {
            current = &Benchmark::m_tiRoot;
            return nullptr;
        }
        if (level > Benchmark::GetSessionBenchLevel(nullptr) || g_isReporting)
            return nullptr;
        auto* const chrono = Benchmark::Chrono::Create(name != nullptr ? name : L"", Benchmark::m_rSessionThresholdSec);
        if (chrono == nullptr)
            return nullptr;
        ChronoItem* const item = current->AppendChild(chrono);
        if (item == nullptr) {
            delete chrono;
            return nullptr;
        }
        current = item;
        if (trace::IsOn())
            trace::BeginSection(chrono->Name());
        return chrono;
    }

    static void Close(Benchmark::Chrono& chrono)
    {
        if (!chrono.steps.IsEmpty())
            AddEndMark(chrono);
        chrono.Stop();
        if (!LeaveCurrent())
            return;
        ChronoItem& parent = *Benchmark::m_ptiCurrent;
        if (parent.GetData() != nullptr)
            parent.GetData()->steps.Add({{}, &chrono, chrono.Total(), StepKind::NestedSection});
        else if (chrono.IsShown())
            Report();
    }

    // What is still there when the process ends was not reported, and will not be.
    ~ChronoTree()
    {
        ReleaseItem(Benchmark::m_tiRoot);
        Benchmark::m_ptiCurrent = nullptr;
    }

private:
    static void AddEndMark(Benchmark::Chrono& chrono)
    {
        const float seconds = chrono.Seconds();
        if (chrono.threshold <= seconds)
            chrono.steps.Add({BuLocalizeStringExW(L"End", 0), nullptr, seconds, StepKind::End});
    }

    // Makes the parent of the current item the current one; false when there is none.
    static bool LeaveCurrent()
    {
        ChronoItem* const current = Benchmark::m_ptiCurrent;
        if (current == nullptr || current->GetParent() == nullptr)
            return false;
        if (trace::IsOn() && current->GetData() != nullptr)
            trace::EndSection(current->GetData()->Name());
        Benchmark::m_ptiCurrent = current->GetParent();
        return true;
    }

    static void Report()
    {
        BuObjectArrayTempl<BuString> names;
        BuArrayTempl<float> times;
        BuArrayTempl<unsigned long long> counts;
        g_isReporting = true;
        LogHeading(L"Benchmark history:\n");
        Benchmark::DumpChronoItemChildren(Benchmark::m_tiRoot, L"", names, times, counts);
        LogSummary({names, times, counts});
        g_isReporting = false;
    }
};

namespace {

const ChronoTree g_endOfTree;  // ends before the root, which is defined above

}  // namespace

_Level Benchmark::GetSessionBenchLevel(float* thresholdOut)
{
    if (!g_isSessionRead) {
        g_isSessionRead = true;  // first: the log's sink may open sections
        ReadSessionSettings(m_iSessionBenchLevel, m_rSessionThresholdSec);
    }
    if (thresholdOut != nullptr)
        *thresholdOut = m_rSessionThresholdSec;
    return m_iSessionBenchLevel;
}

unsigned char Benchmark::IsBenchLevelActive(_Level level)
{
    return level <= GetSessionBenchLevel(nullptr) ? 1 : 0;
}

Benchmark::Benchmark(const wchar_t* name, _Level level) : m_chrono(ChronoTree::Open(name, level)) {}

Benchmark::Benchmark(const Benchmark& other) : m_chrono(other.m_chrono)
{
    if (m_chrono != nullptr)
        m_chrono->AddHolder();
}

Benchmark& Benchmark::operator=(const Benchmark& other)
{
    if (other.m_chrono != nullptr)
        other.m_chrono->AddHolder();
    if (Chrono* const before = std::exchange(m_chrono, other.m_chrono))
        before->RemoveHolder();
    return *this;
}

Benchmark::~Benchmark()
{
    if (m_chrono == nullptr)
        return;
    if (m_chrono->IsOpen())
        ChronoTree::Close(*m_chrono);
    m_chrono->RemoveHolder();
}

void Benchmark::RecordElapsedTime(const wchar_t* format, ...)
{
    if (m_chrono == nullptr || !m_chrono->IsOpen())
        return;
    const float seconds = m_chrono->Seconds();
    const bool isShown = m_chrono->threshold <= seconds;
    if (!isShown && !trace::IsOn())
        return;
    BuString text, name;
    va_list arguments;
    va_start(arguments, format);
    const bool isNamed =
        text.FormatV(format, arguments) >= 0 && name.Format(BuLocalizeStringExW(L"Step %s", 0), text.GetText()) >= 0;
    va_end(arguments);
    if (isNamed && trace::IsOn())
        trace::AddStep(text);
    if (isNamed && isShown)
        m_chrono->steps.Add({std::move(name), nullptr, seconds, StepKind::Recorded});
}

void Benchmark::DumpChronoItemChildren(BuTreeItemTempl<Benchmark::Chrono*, BuCRTAllocator>& item, const wchar_t* prefix,
                                       BuObjectArrayTempl<BuString>& names, BuArrayTempl<float>& times,
                                       BuArrayTempl<unsigned long long>& counts)
{
    const SummaryArrays arrays = {names, times, counts};
    Summary summary;
    const bool isLoaded = summary.Load(arrays);
    DumpHistory(item, prefix != nullptr ? prefix : L"", summary);
    if (isLoaded)
        summary.Store(arrays);
}

}  // namespace tuvo::benchmark
