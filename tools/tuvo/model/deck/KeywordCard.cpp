#include "tools/tuvo/model/deck/KeywordCard.h"

#include "tools/tuvo/NumberText.h"
#include "tools/tuvo/model/deck/ModelBuilder.h"

#include <TuvoUtil/Memory.h>
#include <TuvoUtil/StringBreak.h>

#include <memory>
#include <new>

namespace tool {
namespace {

struct FreeTracked
{
    void operator()(char** fields) const { VBuFree(fields, "tuvo", __LINE__); }
};

KeywordCard::Parameter ReadParameter(std::string_view field)
{
    const std::size_t equals = field.find('=');
    if (equals == field.npos)
        return {UpperCase(PlainName(field)), {}};
    return {UpperCase(PlainName(field.substr(0, equals))), std::string(Trimmed(field.substr(equals + 1)))};
}

}  // namespace

const KeywordCard::Parameter* KeywordCard::Find(std::string_view name) const
{
    for (const Parameter& parameter : parameters)
        if (parameter.name == name)
            return &parameter;
    return nullptr;
}

std::string KeywordCard::Name(std::string_view name) const
{
    const Parameter* const parameter = Find(name);
    return parameter != nullptr ? PlainName(parameter->value) : std::string();
}

KeywordCard ReadKeywordCard(std::string_view line)
{
    std::string text(line.substr(1));
    char** list = nullptr;
    const int count = UtlStringTok(text.data(), &list, ",");
    const std::unique_ptr<char*[], FreeTracked> fields(list);
    if (list == nullptr)
        throw std::bad_alloc();
    KeywordCard card;
    card.keyword = UpperCase(PlainName(list[0]));
    for (int i = 1; i < count; ++i)
        card.parameters.push_back(ReadParameter(list[i]));
    return card;
}

}  // namespace tool
