#include "Benchmark/Summary.h"

#include "Benchmark/Log.h"
#include "platform/Guard.h"

#include <utility>

namespace tuvo::benchmark {
namespace {

// Kept: which of several equal times comes first is what this sort leaves, with these gaps and exchanges.
void SortByTime(BuArrayTempl<int>& indices, const BuArrayTempl<float>& times) noexcept
{
    const int count = indices.GetCount();
    for (int gap = count / 2; gap > 0; gap /= 2)
        for (int i = gap; i < count; ++i)
            for (int j = i - gap; j >= 0 && times[indices[j]] > times[indices[j + gap]]; j -= gap)
                std::swap(indices[j], indices[j + gap]);
}

}  // namespace

bool Summary::Add(BuString key, float seconds, unsigned long long count) noexcept
{
    return platform::Guarded(false, [&] {
        Entry& entry = m_entries[std::move(key)];
        entry.seconds = entry.count == 0 ? seconds : entry.seconds + seconds;
        entry.count += count;
        return true;
    });
}

bool Summary::Load(const SummaryArrays& arrays) noexcept
{
    for (int i = 0; i < arrays.names.GetCount(); ++i) {
        BuString name(arrays.names[i]);
        if (name != arrays.names[i] || !Add(std::move(name), arrays.times[i], arrays.counts[i]))
            return false;
    }
    return true;
}

void Summary::Store(const SummaryArrays& arrays) noexcept
{
    const int count = static_cast<int>(m_entries.size());
    if (!arrays.names.Reserve(count) || !arrays.times.Reserve(count) || !arrays.counts.Reserve(count))
        return;
    arrays.names.RemoveAll();
    arrays.times.RemoveAll();
    arrays.counts.RemoveAll();
    while (!m_entries.empty()) {
        auto first = m_entries.extract(m_entries.begin());
        arrays.names.Add(std::move(first.key()));
        arrays.times.Add(first.mapped().seconds);
        arrays.counts.Add(first.mapped().count);
    }
}

void LogSummary(const SummaryArrays& arrays) noexcept
{
    BuArrayTempl<int> indices;
    const int count = arrays.names.GetCount();
    if (count == 0 || !indices.Reserve(count))
        return;
    for (int i = 0; i < count; ++i)
        indices.Add(i);
    SortByTime(indices, arrays.times);
    LogHeading(L"Benchmark summary:\n");
    for (int i = count - 1; i >= 0; --i)
        BuLogger::GetInstance().Log(
            LogReport, L"%5.3fs : %d calls of %s%s\n", static_cast<double>(arrays.times[indices[i]]),
            static_cast<int>(arrays.counts[indices[i]]), Indentation, arrays.names[indices[i]].GetText());
}

}  // namespace tuvo::benchmark
