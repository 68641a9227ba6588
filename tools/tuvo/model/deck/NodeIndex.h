// Positions of node ids, found in a step or two.
#pragma once

#include <cstdint>
#include <vector>

namespace tool {

class NodeIndex
{
public:
    // `ids` rises strictly and outlives the index. Ids that leave few gaps are looked up in a table of their own size.
    explicit NodeIndex(const std::vector<std::int32_t>& ids);

    // -1 for an id that is not there.
    std::int32_t Find(std::int32_t id) const
    {
        const std::int64_t place = std::int64_t{id} - m_first;
        if (place < 0 || place >= m_range)
            return -1;
        if (m_isDense)
            return static_cast<std::int32_t>(place);
        return m_table.empty() ? Search(id) : m_table[static_cast<std::size_t>(place)];
    }

private:
    std::int32_t Search(std::int32_t id) const;

    const std::vector<std::int32_t>& m_ids;
    std::int64_t m_first = 0;
    std::int64_t m_range = 0;  // from the first id to the last
    bool m_isDense = false;
    std::vector<std::int32_t> m_table;
};

}  // namespace tool
