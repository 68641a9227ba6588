#include "CallStack/FunctionName.h"

#include <basutl/BuCharacter.h>

#include <algorithm>
#include <cstddef>

namespace {

constexpr std::string_view Unnamed = "(anonymous namespace)";
constexpr std::string_view Operator = "operator";

bool IsNameCharacter(char character)
{
    return BuIsLetter(character) || BuIsDigit(character) || character == '_';
}

bool EndsWithName(std::string_view text, std::string_view name)
{
    return text.size() >= name.size() && text.substr(text.size() - name.size()) == name &&
           (text.size() == name.size() || !IsNameCharacter(text[text.size() - name.size() - 1]));
}

// Reads a demangled name from left to right.
class NameReader
{
public:
    explicit NameReader(std::string_view text) : m_rest(text) {}

    std::string Read()
    {
        while (!m_rest.empty())
            if (!TakeUnnamed() && !TakeOperator() && !TakeCharacter())
                break;
        return m_name;
    }

private:
    void Keep(std::size_t count)
    {
        m_name.append(m_rest.substr(0, count));
        m_rest.remove_prefix(count);
    }

    bool TakeUnnamed()
    {
        if (m_rest.substr(0, Unnamed.size()) != Unnamed)
            return false;
        m_name += "{anonymous}";
        m_rest.remove_prefix(Unnamed.size());
        return true;
    }

    // The signs of an operator are no brackets.
    bool TakeOperator()
    {
        if (!EndsWithName(m_name, Operator) || IsNameCharacter(m_rest[0]) || m_rest[0] == ' ')
            return false;
        const std::size_t end = m_rest[0] == '(' ? 2 : m_rest.find_first_of(" (");
        Keep(std::min(end, m_rest.size()));
        return true;
    }

    // False at the parameters, which end the name.
    bool TakeCharacter()
    {
        const char character = m_rest[0];
        if (character == ' ')
            TakeBlank();
        else if (character == '(' && m_depth == 0)
            return false;
        else
            Keep(1);
        if (character == '<' || character == '{' || character == '(')
            ++m_depth;
        else if ((character == '>' || character == '}' || character == ')') && m_depth > 0)
            --m_depth;
        return true;
    }

    void TakeBlank()
    {
        m_rest.remove_prefix(1);
        if (!m_rest.empty() && m_rest[0] == '<')
            return;  // of a template, kept apart from the sign of an operator
        if (m_depth == 0 && !EndsWithName(m_name, Operator))
            m_name.clear();  // it was the type of the result
        else if (!m_name.empty() && !m_rest.empty() && IsNameCharacter(m_name.back()) && IsNameCharacter(m_rest[0]))
            m_name += '_';
    }

    std::string_view m_rest;
    std::string m_name;
    int m_depth = 0;
};

}  // namespace

std::string PlainFunctionName(std::string_view demangled)
{
    return NameReader(demangled).Read();
}

std::string PlainFileName(std::string_view path)
{
    std::string name(path.substr(path.find_last_of("/\\") + 1));
    std::replace_if(
        name.begin(), name.end(), [](char character) { return BuIsSpace(character); }, '_');
    return name;
}
