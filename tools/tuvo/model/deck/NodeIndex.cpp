#include "tools/tuvo/model/deck/NodeIndex.h"

#include "tools/tuvo/model/Model.h"

namespace tool {

NodeIndex::NodeIndex(const std::vector<std::int32_t>& ids) : m_ids(ids)
{
    constexpr std::int64_t MostPlacesForAnId = 4;
    if (ids.empty())
        return;
    const auto count = static_cast<std::int64_t>(ids.size());
    m_first = ids.front();
    m_range = std::int64_t{ids.back()} - m_first + 1;
    m_isDense = m_range == count;
    if (m_isDense || m_range > MostPlacesForAnId * count)
        return;
    m_table.assign(static_cast<std::size_t>(m_range), -1);
    for (std::size_t i = 0; i < ids.size(); ++i)
        m_table[static_cast<std::size_t>(ids[i] - m_first)] = static_cast<std::int32_t>(i);
}

std::int32_t NodeIndex::Search(std::int32_t id) const
{
    return static_cast<std::int32_t>(FindId(m_ids, id));
}

}  // namespace tool
