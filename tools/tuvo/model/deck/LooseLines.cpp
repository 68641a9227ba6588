#include "tools/tuvo/model/deck/LooseLines.h"

#include "tools/tuvo/NumberText.h"
#include "tools/tuvo/model/deck/ModelBuilder.h"

#include <utility>

namespace tool {

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
    auto entry = m_cards.extract(marker);
    if (entry.empty())
        return false;
    card = std::move(entry.mapped());
    return true;
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
    auto entry = m_lines.extract(marker);
    if (entry.empty())
        return false;
    line = std::move(entry.mapped());
    return true;
}

}  // namespace tool
