#include "tools/tuvo/model/deck/IdRanges.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <span>
#include <tuple>
#include <unordered_map>

namespace tool {
namespace {

constexpr std::size_t SmallList = 64;

using Range = IdRanges::Range;

// Positions among the ids that exist: few of them as a list, many as a mark at each.
class Positions
{
public:
    explicit Positions(std::size_t count) : m_count(count) {}

    void Add(std::size_t position)
    {
        if (m_list.size() <= m_count / 32 + SmallList)
            m_list.push_back(position);
        else
            Mark(position);
    }
    void Add(std::size_t first, std::size_t last)
    {
        while (first < last)
            Add(first++);
    }
    bool AreAll() const { return m_marked == m_count; }

    // The ids at these positions, rising strictly. Nothing is added afterwards.
    std::vector<std::int32_t> TakeIds(const std::vector<std::int32_t>& existing)
    {
        std::vector<std::int32_t> ids;
        if (m_marks.empty()) {
            std::sort(m_list.begin(), m_list.end());
            m_list.erase(std::unique(m_list.begin(), m_list.end()), m_list.end());
            ids.reserve(m_list.size());
            for (const std::size_t position : m_list)
                ids.push_back(existing[position]);
            return ids;
        }
        ids.reserve(m_marked);
        for (std::size_t position = 0; position < m_count; ++position)
            if (m_marks[position])
                ids.push_back(existing[position]);
        return ids;
    }

private:
    void Mark(std::size_t position)
    {
        if (m_marks.empty()) {
            m_marks.resize(m_count);
            for (const std::size_t listed : m_list)
                Mark(listed);
        }
        m_marked += m_marks[position] ? 0 : 1;
        m_marks[position] = true;
    }

    std::size_t m_count;
    std::size_t m_marked = 0;
    std::vector<std::size_t> m_list;
    std::vector<bool> m_marks;
};

// The positions from `first` on of ids that exist in a range.
struct Span
{
    Span(const std::vector<std::int32_t>& existing, std::int32_t firstId, std::int32_t lastId)
    {
        const auto from = std::lower_bound(existing.begin(), existing.end(), firstId);
        const auto to = std::upper_bound(from, existing.end(), lastId);
        first = static_cast<std::size_t>(from - existing.begin());
        last = static_cast<std::size_t>(to - existing.begin());
    }
    std::size_t Count() const { return last - first; }
    std::span<const std::int32_t> Of(const std::vector<std::int32_t>& existing) const
    {
        return std::span(existing).subspan(first, Count());
    }

    std::size_t first;
    std::size_t last;
};

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

// Finds those of the ids first, first + step, ... that exist. Gaps are jumped over from either side.
void FindSteps(std::int64_t first, std::int64_t step, std::span<const std::int32_t> existing, auto found)
{
    std::int64_t wanted = first;
    for (std::size_t at = 0; at < existing.size();) {
        // Ids rise strictly: the wanted one is no further away than its distance.
        const auto reach = static_cast<std::size_t>(std::max<std::int64_t>(wanted - existing[at], 0));
        const auto last = existing.begin() + static_cast<std::ptrdiff_t>(std::min(existing.size(), at + reach + 1));
        const auto next = std::lower_bound(existing.begin() + static_cast<std::ptrdiff_t>(at), last, wanted);
        at = static_cast<std::size_t>(next - existing.begin());
        if (at == existing.size())
            return;
        if (existing[at] == wanted)
            found(at++);
        wanted = at < existing.size() ? first + (existing[at] - first + step - 1) / step * step : wanted;
    }
}

void FindRange(const Range& range, const std::vector<std::int32_t>& existing, Positions& positions)
{
    const Span span(existing, range.first, range.last);
    if (range.step == 1)
        return positions.Add(span.first, span.last);
    FindSteps(range.first, range.step, span.Of(existing),
              [&](std::size_t position) { positions.Add(span.first + position); });
}

// Asks of each id whether a range of one step meets it. The ranges are disjoint, and sorted by remainder, then by their
// first ids.
void Sweep(std::span<const Range> ranges, const Span& span, const std::vector<std::int32_t>& existing,
           Positions& positions)
{
    const std::int32_t step = ranges.front().step;
    std::unordered_map<std::int32_t, std::size_t> nextOf;  // by remainder: the first range that is not yet passed
    for (std::size_t i = 0; i < ranges.size(); ++i)
        nextOf.try_emplace(ranges[i].first % step, i);
    for (std::size_t position = span.first; position < span.last; ++position) {
        const std::int32_t id = existing[position];
        const auto next = nextOf.find(id % step);
        if (next == nextOf.end())
            continue;
        std::size_t& at = next->second;
        while (at < ranges.size() && ranges[at].first % step == id % step && ranges[at].last < id)
            ++at;
        if (at < ranges.size() && ranges[at].first % step == id % step && ranges[at].first <= id)
            positions.Add(position);
    }
}

// Finds the ids of ranges of one step, sorted as for Sweep, in whichever way looks at fewer of them.
void FindRanges(std::span<const Range> ranges, const std::vector<std::int32_t>& existing, Positions& positions)
{
    std::int32_t first = ranges.front().first;
    std::int32_t last = ranges.front().last;
    std::uint64_t looks = 0;
    for (const Range& range : ranges) {
        first = std::min(first, range.first);
        last = std::max(last, range.last);
        const std::int64_t steps = (std::int64_t{range.last} - range.first) / range.step + 1;
        looks += std::min(Span(existing, range.first, range.last).Count(), static_cast<std::size_t>(steps));
    }
    const Span span(existing, first, last);
    if (looks > span.Count() && ranges.front().step > 1)
        return Sweep(ranges, span, existing, positions);
    for (const Range& range : ranges)
        FindRange(range, existing, positions);
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

bool IdRanges::AreInOrder() const
{
    const auto outOfOrder = [](const Range& left, const Range& right) { return left.last >= right.first; };
    return std::adjacent_find(m_ranges.begin(), m_ranges.end(), outOfOrder) == m_ranges.end();
}

std::vector<std::int32_t> IdRanges::Expand(const std::vector<std::int32_t>& existing, Missing& missing)
{
    if (!AreInOrder())
        Compact();
    for (const Range& range : m_ranges)
        if (!range.isGenerated)
            CountMissing(range.first, range.last, Span(existing, range.first, range.last).Of(existing), missing);
    if (AreInOrder()) {
        std::vector<std::int32_t> ids;
        for (const Range& range : m_ranges) {
            const auto span = Span(existing, range.first, range.last).Of(existing);
            if (range.step == 1)
                ids.insert(ids.end(), span.begin(), span.end());
            else
                FindSteps(range.first, range.step, span, [&](std::size_t position) { ids.push_back(span[position]); });
        }
        return ids;
    }
    Positions positions(existing.size());
    for (auto range = m_ranges.begin(); range != m_ranges.end() && !positions.AreAll();) {
        const auto behind =
            std::find_if(range, m_ranges.end(), [&](const Range& other) { return other.step != range->step; });
        FindRanges({range, behind}, existing, positions);
        range = behind;
    }
    return positions.TakeIds(existing);
}

}  // namespace tool
