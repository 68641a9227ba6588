// The keyword lines of a CalculiX deck: "*ELEMENT, TYPE=C3D8, ELSET=Eall".
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tool {

struct KeywordCard
{
    struct Parameter
    {
        std::string name;   // in capitals, without blanks
        std::string value;  // as it stands, without blanks around it; empty when there is none
    };

    std::string keyword;  // in capitals, without blanks and the '*'
    std::vector<Parameter> parameters;

    bool Has(std::string_view name) const { return Find(name) != nullptr; }
    const Parameter* Find(std::string_view name) const;  // null: the card has none
    std::string Name(std::string_view name) const;  // its value without blanks and quotes; empty when there is none
};

KeywordCard ReadKeywordCard(std::string_view line);

}  // namespace tool
