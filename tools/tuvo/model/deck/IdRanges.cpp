#include "tools/tuvo/model/deck/IdRanges.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <span>
#include <tuple>

namespace tool {
namespace {

constexpr std::size_t SmallList = 1024;

void MakeRising(std::vector<std::int32_t>& ids)
{
    if (std::adjacent_find(ids.begin(), ids.end(), std::greater_equal<>()) == ids.end())
        return;
    std::sort(ids.begin(), ids.end());
    ids.erase(std::unique(ids.begin(), ids.end()), ids.end());
}

// Notes which ids of a range are not among those that exist in it.
void CountMissing(std::int64_t first, std::int64_t last, std::span<const std::int32_t> existing,
                  IdRanges::Missing& missing)
{
    const auto count = static_cast<std::uint64_t>(last - first + 1) - existing.size();
    if (count == 0)
        return;
    if (missing.count == 0) {
        std::size_t place = 0;
        while (place < existing.size() && existing[place] == first + static_cast<std::int64_t>(place))
            ++place;
        missing.first = static_cast<std::int32_t>(first + static_cast<std::int64_t>(place));
    }
    missing.count += count;
}

// Appends those of the ids first, first + step, ... that exist. Gaps are jumped over from either side.
void AppendSteps(std::int64_t first, std::int64_t step, std::span<const std::int32_t> existing,
                 std::vector<std::int32_t>& ids)
{
    std::int64_t wanted = first;
    for (std::size_t at = 0; at < existing.size();) {
        // Ids rise strictly: the wanted one is no further away than its distance.
        const auto reach = static_cast<std::size_t>(std::max<std::int64_t>(wanted - existing[at], 0));
        const auto last = existing.begin() + static_cast<std::ptrdiff_t>(std::min(existing.size(), at + reach + 1));
        const auto found = std::lower_bound(existing.begin() + static_cast<std::ptrdiff_t>(at), last, wanted);
        at = static_cast<std::size_t>(found - existing.begin());
        if (at == existing.size())
            return;
        if (existing[at] == wanted)
            ids.push_back(existing[at++]);
        wanted = at < existing.size() ? first + (existing[at] - first + step - 1) / step * step : wanted;
    }
}

}  // namespace

void IdRanges::Append(const Range& range)
{
    // Lists that name each other again and again would double with every line.
    if (m_ranges.size() >= 2 * m_compacted + SmallList)
        Compact();
    m_ranges.push_back(range);
}

void IdRanges::Add(std::int32_t id)
{
    if (!m_ranges.empty()) {
        Range& range = m_ranges.back();
        if (!range.isGenerated && std::int64_t{id} - range.last == 1) {
            range.last = id;
            return;
        }
    }
    Append({id, id, 1, false});
}

void IdRanges::AddGenerated(std::int32_t first, std::int32_t last, std::int32_t step)
{
    if (first <= last)
        Append({first, last, step, true});
}

void IdRanges::Add(const IdRanges& other)
{
    if (&other == this)
        return;
    for (const Range& range : other.m_ranges)
        Append(range);
}

// Joins ranges that lie in or beside one another; what is named itself stays apart from what is generated.
void IdRanges::Compact()
{
    const auto kind = [](const Range& range) {
        return std::tuple(range.isGenerated, range.step, range.first % range.step, range.first, range.last);
    };
    std::sort(m_ranges.begin(), m_ranges.end(),
              [&](const Range& left, const Range& right) { return kind(left) < kind(right); });
    std::vector<Range> joined;
    for (const Range& range : m_ranges) {
        Range* const before = joined.empty() ? nullptr : &joined.back();
        const bool isSame = before != nullptr && before->isGenerated == range.isGenerated &&
                            before->step == range.step && before->first % range.step == range.first % range.step;
        if (isSame && range.first <= std::int64_t{before->last} + range.step)
            before->last = std::max(before->last, range.last);
        else
            joined.push_back(range);
    }
    m_ranges = std::move(joined);
    m_compacted = m_ranges.size();
}

std::vector<std::int32_t> IdRanges::Expand(const std::vector<std::int32_t>& existing, Missing& missing)
{
    const auto outOfOrder = [](const Range& left, const Range& right) { return left.last >= right.first; };
    if (std::adjacent_find(m_ranges.begin(), m_ranges.end(), outOfOrder) != m_ranges.end())
        Compact();
    std::vector<std::int32_t> ids;
    for (const Range& range : m_ranges) {
        const auto first = std::lower_bound(existing.begin(), existing.end(), range.first);
        const auto last = std::upper_bound(first, existing.end(), range.last);
        if (range.step == 1)
            ids.insert(ids.end(), first, last);
        else
            AppendSteps(range.first, range.step, {first, last}, ids);
        if (!range.isGenerated)
            CountMissing(range.first, range.last, {first, last}, missing);
        if (ids.size() > 2 * existing.size() + SmallList)
            MakeRising(ids);
    }
    MakeRising(ids);
    return ids;
}

}  // namespace tool
