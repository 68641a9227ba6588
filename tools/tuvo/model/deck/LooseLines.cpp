#include "tools/tuvo/model/deck/LooseLines.h"

#include "tools/tuvo/NumberText.h"
#include "tools/tuvo/model/deck/ModelBuilder.h"

#include <utility>

namespace tool {
namespace {

// Takes what waits under a marker out of a map; false when nothing does.
template <typename Waiting>
bool Take(std::map<std::string, Waiting>& map, const std::string& marker, Waiting& taken)
{
    auto entry = map.extract(marker);
    if (entry.empty())
        return false;
    taken = std::move(entry.mapped());
    return true;
}

}  // namespace

std::string LooseLines::Marker(std::string_view field)
{
    const std::string_view text = Trimmed(field);
    if (text.size() < 2 || (text.front() != '+' && text.front() != '*'))
        return {};
    return UpperCase(Trimmed(text.substr(1)));
}

bool LooseLines::Wait(const std::string& marker, const BulkCard& card)
{
    return m_cards.size() < Most && m_cards.try_emplace(marker, card).second;
}

bool LooseLines::TakeCard(const std::string& marker, BulkCard& card)
{
    return Take(m_cards, marker, card);
}

bool LooseLines::TakeAny(BulkCard& card)
{
    return !m_cards.empty() && TakeCard(std::string(m_cards.begin()->first), card);
}

bool LooseLines::Keep(const std::string& marker, const LooseLine& line)
{
    return m_lines.size() < Most && m_lines.try_emplace(marker, line).second;
}

bool LooseLines::TakeLine(const std::string& marker, LooseLine& line)
{
    return Take(m_lines, marker, line);
}

}  // namespace tool
