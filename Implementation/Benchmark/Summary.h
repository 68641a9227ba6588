// Where the time went: seconds and calls by key.
#pragma once

#include <basutl/BuArrayTempl.h>
#include <basutl/BuObjectArrayTempl.h>
#include <basutl/BuString.h>

#include <map>
#include <utility>

namespace tuvo::benchmark {

// The three arrays that hold a summary: keys in order, without duplicates, the other two by the index of the key.
struct SummaryArrays
{
    BuObjectArrayTempl<BuString>& names;
    BuArrayTempl<float>& times;
    BuArrayTempl<unsigned long long>& counts;
};

// A summary while it grows. Entries in sorted arrays would each move all that stand behind them.
class Summary
{
public:
    // Takes over what the arrays hold. False when memory is exhausted.
    bool Load(const SummaryArrays& arrays) noexcept;

    // Adds one call; left out when memory is exhausted.
    void Add(BuString key, float seconds) noexcept { Add(std::move(key), seconds, 1); }

    // Replaces what the arrays hold; they stay as they were when memory is exhausted.
    void Store(const SummaryArrays& arrays) noexcept;

private:
    struct Entry
    {
        float seconds = 0.0F;
        unsigned long long count = 0;
    };

    bool Add(BuString key, float seconds, unsigned long long count) noexcept;

    std::map<BuString, Entry> m_entries;
};

// Writes the summary to the log, the largest time first; nothing when it is empty or memory is exhausted.
void LogSummary(const SummaryArrays& arrays) noexcept;

}  // namespace tuvo::benchmark
