#include "TuvoMemory/LeakSuppressions.h"

#include <basutl/BuCharacter.h>
#include <basutl/BuNumber.h>

#include <algorithm>
#include <utility>

namespace {

constexpr std::size_t LongestLine = 200;
constexpr std::size_t LongestField = 32;
constexpr std::string_view GroupStart = "BEGIN";

// How a report prints a frame without a line.
constexpr std::string_view NoInformation = "NO_INFO";

// Takes the next field off the front of a line; empty when there is none.
std::string_view TakeField(std::string_view& line)
{
    const auto isBlank = [](char character) { return BuIsSpace(character); };
    const auto* const begin = std::find_if_not(line.begin(), line.end(), isBlank);
    const auto* const end = std::find_if(begin, line.end(), isBlank);
    const std::string_view field(begin, static_cast<std::size_t>(end - begin));
    line = std::string_view(end, static_cast<std::size_t>(line.end() - end));
    return field.substr(0, LongestField);
}

int LineOfField(std::string_view field)
{
    return field == NoInformation ? leaks::UnknownLine : BuReadInt(std::string(field).c_str());
}

std::string_view FieldOfText(const char* text, std::size_t capacity)
{
    const std::size_t limit = std::min(capacity, LongestField);
    return {text, static_cast<std::size_t>(std::find(text, text + limit, '\0') - text)};
}

void AppendFrame(std::string& group, std::string_view function, int line, std::string_view file)
{
    group.append(function).append(1, '\t').append(std::to_string(line)).append(1, '\t').append(file).append(1, '\n');
}

}  // namespace

leaks::Suppressions::Suppressions(std::string_view text)
{
    while (!text.empty()) {
        const std::string_view line = text.substr(0, std::min(text.find('\n'), LongestLine));
        TakeLine(line);
        text.remove_prefix(line.size());
        if (line.size() < LongestLine && !text.empty())
            text.remove_prefix(1);
    }
    EndGroup();
}

void leaks::Suppressions::TakeLine(std::string_view line)
{
    if (line.substr(0, GroupStart.size()) == GroupStart) {
        EndGroup();
        m_isInGroup = true;
        return;
    }
    const std::string_view function = TakeField(line);
    if (function.empty() || !m_isInGroup)
        return;
    TakeField(line);
    const int number = LineOfField(TakeField(line));
    TakeField(line);
    AppendFrame(m_group, function, number, TakeField(line));
}

void leaks::Suppressions::EndGroup()
{
    if (!m_group.empty())
        ++m_groups[std::exchange(m_group, {})];
}

bool leaks::Suppressions::Take(const CallStack& stack)
{
    if (stack.depth == 0 || m_groups.empty())
        return false;
    std::string group;
    for (std::size_t i = 0; i < stack.depth; ++i)
        AppendFrame(group, FieldOfText(stack[i].function, sizeof stack[i].function), stack[i].line,
                    FieldOfText(stack[i].file, sizeof stack[i].file));
    const auto found = m_groups.find(group);
    if (found == m_groups.end() || found->second == 0)
        return false;
    --found->second;
    return true;
}

std::size_t leaks::Suppressions::GroupCount() const noexcept
{
    std::size_t count = 0;
    for (const auto& [frames, groups] : m_groups)
        count += groups;
    return count;
}
