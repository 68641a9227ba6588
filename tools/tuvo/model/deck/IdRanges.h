// Ids as a deck names them: one by one, by ranges, in any order and again and again.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace tool {

class IdRanges
{
public:
    // An id that is named itself: it should exist.
    void Add(std::int32_t id);

    // From `first` to at most `last` in steps above 0; of these only those count that exist.
    void AddGenerated(std::int32_t first, std::int32_t last, std::int32_t step);

    // All of another list, or of this one.
    void Add(const IdRanges& other);

    // Ids that are named themselves and do not exist.
    struct Missing
    {
        std::uint64_t count = 0;
        std::int32_t first = 0;  // one of them
    };

    // The ids that exist, rising strictly. `existing` rises strictly too. However ranges overlap, each step among them
    // costs one walk over the ids at most.
    std::vector<std::int32_t> Expand(const std::vector<std::int32_t>& existing, Missing& missing);

    struct Range
    {
        std::int32_t first;
        std::int32_t last;
        std::int32_t step;
        bool isGenerated;
    };

private:
    void Append(const Range& range);
    void Compact();
    bool AreInOrder() const;

    std::vector<Range> m_ranges;
    std::size_t m_compacted = 0;  // ranges that Compact left the last time
};

}  // namespace tool
