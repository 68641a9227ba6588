#include "tools/tuvo/model/deck/Replication.h"

#include "tools/tuvo/Console.h"
#include "tools/tuvo/NumberText.h"
#include "tools/tuvo/model/deck/Fields.h"

#include <algorithm>
#include <utility>

namespace tool {
namespace {

constexpr int ExactDigits = 17;
constexpr std::size_t LineFields = 8;

std::string_view WithoutParentheses(std::string_view text)
{
    return text.size() > 2 && text.front() == '(' && text.back() == ')' ? text.substr(1, text.size() - 2) : text;
}

// How many images a name asks for; 0 when that is not clear.
std::int32_t CountOf(std::string_view name)
{
    std::int32_t count = 1;
    const bool isClear = name == "=" || ReadId(WithoutParentheses(name.substr(1)), count) == Got::Value;
    return isClear ? count : 0;
}

// A field with so many steps added to it; empty when one of the two is no number.
std::string Stepped(std::string_view field, std::string_view step, std::int64_t times)
{
    std::int32_t id = 0;
    std::int32_t idStep = 0;
    if (ReadId(field, id) == Got::Value && ReadId(step, idStep) == Got::Value)
        return std::to_string(id + idStep * times);
    double value = 0.0;
    double valueStep = 0.0;
    if (ReadReal(field, value) != Got::Value || ReadReal(step, valueStep) != Got::Value)
        return {};
    return NumberText(value + static_cast<double>(times) * valueStep, ExactDigits);
}

}  // namespace

bool Replication::HasReferenceForm(std::string_view field)
{
    double step = 0.0;
    return field == "=" || field == "==" ||
           (field.front() == '*' && ReadReal(WithoutParentheses(field.substr(1)), step) == Got::Value);
}

std::string Replication::Begin(const BulkCard& card, const BulkCard& previous)
{
    const bool goesOn = std::exchange(m_isImage, true) && card.FieldCount() == 0;
    if (previous.name.empty())
        return "there is no card in front of it that it could repeat";
    const std::int32_t count = IsReferenceName(card.name) ? CountOf(card.name) : 1;
    if (count < 1 || count > MostLines)
        return Quoted(card.name) + " asks for no number of images from 1 to " + std::to_string(MostLines);
    if (!goesOn) {
        m_base = previous;
        m_made = 0;
        TakePattern(card);
    }
    const std::int64_t lines = LinesOfImage() * count;
    if (lines > m_linesLeft)
        return "the images of this deck have more than " + std::to_string(MostLines) + " lines";
    if (!IsReferenceName(card.name))
        m_base.name = card.name;
    m_base.place = card.place;
    m_left = count;
    m_linesLeft -= lines;
    return {};
}

// How many lines of ordinary fields an image takes.
std::int64_t Replication::LinesOfImage() const
{
    constexpr std::size_t LongField = 64;  // bytes
    std::size_t fields = 0;
    for (std::size_t i = 0; i < m_pattern.size(); ++i)
        fields += 1 + std::max(m_pattern[i].size(), m_base.Field(i).size()) / LongField;
    return static_cast<std::int64_t>(std::max<std::size_t>(1, (fields + LineFields - 1) / LineFields));
}

void Replication::TakePattern(const BulkCard& card)
{
    const std::size_t count = card.FieldCount();
    m_pattern.assign(count > 0 ? count : m_base.FieldCount(), "=");
    for (std::size_t i = 0; i < count; ++i) {
        if (card.Field(i) != "==") {
            m_pattern[i] = card.Field(i);
            continue;
        }
        const std::size_t lineEnd = (i / LineFields + 1) * LineFields;
        if (lineEnd >= count)
            return m_pattern.resize(std::max(i, m_base.FieldCount()), "=");
        i = lineEnd - 1;
    }
}

std::string Replication::Next(BulkCard& image)
{
    ++m_made;
    --m_left;
    image.Clear();
    image.place = m_base.place;
    image.name = m_base.name;
    for (std::size_t i = 0; i < m_pattern.size(); ++i) {
        const std::string_view pattern = m_pattern[i];
        const std::string_view field = m_base.Field(i);
        if (pattern == "=") {
            image.AddField(field);
        } else if (!IsReference(pattern)) {
            image.AddField(pattern);
        } else {
            const std::string stepped = Stepped(field, WithoutParentheses(pattern.substr(1)), m_made);
            if (stepped.empty()) {
                m_left = 0;
                image.Clear();
                return Quoted(pattern) + " cannot be added to " + Quoted(field);
            }
            image.AddField(stepped);
        }
    }
    image.DropEmptyEnd();
    return {};
}

}  // namespace tool
