#include "Benchmark/History.h"

#include "Benchmark/Log.h"
#include "platform/Guard.h"

#include <climits>
#include <string>
#include <utility>

namespace tuvo::benchmark {
namespace {

using Chrono = Benchmark::Chrono;

constexpr std::size_t IndentationLength = std::size(Indentation) - 1;

float InternalTime(const Chrono& chrono) noexcept
{
    float internal = chrono.Total();
    for (const Step& step : chrono.steps)
        if (step.kind == StepKind::NestedSection)
            internal -= step.time;
    return internal;
}

// The time of a step without the nested sections right before it.
float InternalTime(const Chrono& chrono, int index) noexcept
{
    float internal = chrono.steps[index].time;
    for (int i = index - 1; i >= 0 && chrono.steps[i].kind == StepKind::NestedSection; --i)
        internal -= chrono.steps[i].time;
    return internal;
}

class HistoryDump
{
public:
    HistoryDump(const wchar_t* prefix, Summary& summary) : m_prefix(prefix), m_summary(summary) {}

    void Dump(ChronoItem& top) noexcept
    {
        Begin(top, m_prefix.size());
        while (!m_places.IsEmpty()) {
            Place& place = m_places[m_places.GetCount() - 1];
            if (ChronoItem* const child = NextChild(place))
                Begin(*child, place.childPrefix);
            else
                End(place);
        }
    }

private:
    // How far the dump of an item has come.
    struct Place
    {
        ChronoItem* item;
        ChronoItem::Node* nextChild;
        int step;                 // the next one to be written
        int accounted;            // the last one whose nested sections were dumped; -1 before the first
        int children;             // still to be dumped before the next step
        std::size_t prefix;       // lengths
        std::size_t childPrefix;  // of the children that come next
    };

    // Writes the header of an item and enters it; one below its threshold is freed at once.
    void Begin(ChronoItem& item, std::size_t prefix) noexcept
    {
        const Chrono* const chrono = item.GetData();
        const bool isShown = chrono == nullptr || chrono->IsShown();
        if (isShown && chrono != nullptr)
            WriteHeader(*chrono, prefix);
        const int children = chrono == nullptr ? INT_MAX : 0;
        if (!isShown || m_places.Add({&item, item.GetFirstChildNode(), 0, -1, children, prefix, prefix}) < 0)
            ReleaseItem(item);
    }

    void End(const Place& place) noexcept
    {
        ReleaseItem(*place.item);
        m_places.RemoveAt(m_places.GetCount() - 1);
    }

    // The next child to be dumped, with all steps written that come before it; null at the end.
    ChronoItem* NextChild(Place& place) noexcept
    {
        const Chrono* const chrono = place.item->GetData();
        while (place.children == 0 || place.nextChild == nullptr) {
            if (chrono == nullptr || place.step == chrono->steps.GetCount())
                return nullptr;
            WriteStep(*chrono, place);
        }
        --place.children;
        return std::exchange(place.nextChild, place.nextChild->next)->item;
    }

    void WriteHeader(const Chrono& chrono, std::size_t prefix) noexcept
    {
        const float internal = InternalTime(chrono);
        Log(prefix, chrono.Total(), internal, L"%s%gs: Chrono '%s'\n", L"%s%gs (internal: %gs): Chrono '%s'\n",
            chrono.Name());
        if (chrono.steps.IsEmpty())
            AddToSummary(internal, L"%s", chrono.Name(), L"");
    }

    void WriteStep(const Chrono& chrono, Place& place) noexcept
    {
        const int index = place.step++;
        const Step& step = chrono.steps[index];
        if (step.kind == StepKind::NestedSection)
            return;
        const std::size_t prefix = place.prefix + IndentationLength;
        place.childPrefix = prefix + IndentationLength;
        place.children = index - place.accounted - 1;
        if (step.kind == StepKind::End && place.accounted == -1) {
            // Kept: an end mark without a step before it is neither written nor counted.
            place.childPrefix = prefix;
            place.children = INT_MAX;
            return;
        }
        place.accounted = index;
        const float internal = InternalTime(chrono, index);
        Log(prefix, step.time, internal, L"%s%gs: %s\n", L"%s%gs (internal: %gs): '%s'\n", step.name);
        if (chrono.threshold <= internal)
            AddToSummary(internal, L"%s / %s", chrono.Name(), step.name);
    }

    void AddToSummary(float seconds, const wchar_t* format, const wchar_t* name, const wchar_t* step) noexcept
    {
        BuString key;
        if (key.Format(format, name, step) >= 0)
            m_summary.Add(std::move(key), seconds);
    }

    // Writes one of two lines, by whether all of the time is internal.
    void Log(std::size_t prefix, float seconds, float internal, const wchar_t* plain, const wchar_t* divided,
             const wchar_t* name) noexcept
    {
        if (!SetPrefix(prefix))
            return;
        BuLogger& logger = BuLogger::GetInstance();
        if (internal == seconds)
            logger.Log(LogReport, plain, m_prefix.c_str(), static_cast<double>(seconds), name);
        else
            logger.Log(LogReport, divided, m_prefix.c_str(), static_cast<double>(seconds),
                       static_cast<double>(internal), name);
    }

    // The prefix grows by blanks alone, so that one text serves all depths.
    bool SetPrefix(std::size_t length) noexcept
    {
        return platform::Guarded(false, [&] {
            m_prefix.resize(length, L' ');
            return true;
        });
    }

    std::wstring m_prefix;
    Summary& m_summary;
    BuArrayTempl<Place> m_places;  // from the top item to the one that is being dumped
};

}  // namespace

void ReleaseItem(ChronoItem& item) noexcept
{
    for (ChronoItem* current = &item;;) {
        if (const ChronoItem::Node* const child = current->GetFirstChildNode()) {
            current = child->item;
            continue;
        }
        if (Chrono* const chrono = current->GetData()) {
            current->SetData(nullptr);
            chrono->RemoveHolder();
        }
        if (current == &item)
            return;
        current = current->GetParent();
        current->RemoveChild(current->GetFirstChildNode());
    }
}

void DumpHistory(ChronoItem& item, const wchar_t* prefix, Summary& summary) noexcept
{
    const bool isDumped = platform::Guarded(false, [&] {
        HistoryDump(prefix, summary).Dump(item);
        return true;
    });
    if (!isDumped)
        ReleaseItem(item);
}

}  // namespace tuvo::benchmark
