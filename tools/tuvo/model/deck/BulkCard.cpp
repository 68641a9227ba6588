#include "tools/tuvo/model/deck/BulkCard.h"

namespace tool {

void BulkCard::Clear()
{
    name.clear();
    m_text.clear();
    m_fields.clear();
}

void BulkCard::AddField(std::string_view field)
{
    m_fields.push_back({m_text.size(), field.size()});
    m_text += field;
}

void BulkCard::DropEmptyEnd()
{
    while (!m_fields.empty() && m_fields.back().size == 0)
        m_fields.pop_back();
}

}  // namespace tool
