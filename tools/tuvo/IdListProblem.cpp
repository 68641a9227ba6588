#include "tools/tuvo/IdListProblem.h"

#include "tools/tuvo/Console.h"
#include "tools/tuvo/Pointer.h"

#include <algorithm>
#include <string_view>

namespace tool {
namespace {

constexpr char Separators[] = " ,\n\r";
constexpr std::size_t LongestBound = 9;

struct Problem
{
    std::size_t place = 0;
    std::string reason;  // empty: there is none
};

// The character at a place, with all its bytes where they are UTF-8.
std::string_view CharacterAt(std::string_view text, std::size_t place)
{
    const auto isPartOf = [](char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; };
    std::size_t end = place + 1;
    if (static_cast<unsigned char>(text[place]) >= 0xC0)
        while (end < text.size() && isPartOf(text[end]))
            ++end;
    return text.substr(place, end - place);
}

// A bound that begins at `place` of an item and ends before one of `ends`, or with the item.
Problem CheckBound(std::string_view item, std::size_t place, const char* ends)
{
    const std::string_view bound = item.substr(place, item.find_first_of(ends, place) - place);
    if (bound.size() <= LongestBound)
        return {};
    return {place, Quoted(bound) + " has more than " + std::to_string(LongestBound) + " digits"};
}

Problem CheckItem(std::string_view item)
{
    const std::size_t foreign = item.find_first_not_of("0123456789-:");
    if (foreign != item.npos)
        return {foreign, Quoted(CharacterAt(item, foreign)) + " does not belong in a list of ids"};
    const std::size_t sign = item.find_first_of("-:");
    if (sign == 0)
        return {0, "there is no id in front of " + Quoted(item.substr(0, 1))};
    Problem problem = CheckBound(item, 0, "-:");
    if (problem.reason.empty() && sign != item.npos)
        problem = CheckBound(item, sign + 1, item[sign] == ':' ? "-" : "");
    const std::size_t second = sign != item.npos && item[sign] == ':' ? item.find('-', sign) : item.npos;
    if (problem.reason.empty() && second != item.npos)
        problem = CheckBound(item, second + 1, "");
    return problem;
}

std::string Message(std::string_view text, std::size_t item, const Problem& problem)
{
    const std::size_t lineEnd = text.find_last_of('\n', problem.place);
    const std::size_t lineStart = lineEnd != text.npos ? lineEnd + 1 : 0;
    const std::string_view line = text.substr(lineStart, text.find_first_of("\r\n", lineStart) - lineStart);
    const std::size_t column = problem.place - lineStart;
    const auto number = 1 + std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(lineStart), '\n');
    const std::string where = text.find('\n') != text.npos ? "line " + std::to_string(number) + ": " : "";
    return where + "item " + std::to_string(item) + " at character " + std::to_string(CharacterNumber(line, column)) +
           ": " + problem.reason + PointerTo(line, column);
}

}  // namespace

std::string IdListProblem(const std::string& text)
{
    std::size_t item = 0;
    for (std::size_t place = 0; (place = text.find_first_not_of(Separators, place)) != text.npos;) {
        const std::size_t end = std::min(text.find_first_of(Separators, place), text.size());
        Problem problem = CheckItem(std::string_view(text).substr(place, end - place));
        ++item;
        if (!problem.reason.empty()) {
            problem.place += place;
            return Message(text, item, problem);
        }
        place = end;
    }
    if (item == 0)
        return "there is no id in the list";
    if (const std::size_t comma = text.find_first_not_of(" \r\n"); text[comma] == ',')
        return Message(text, 1, {comma, "there are too many commas in front of the first id"});
    return {};
}

}  // namespace tool
