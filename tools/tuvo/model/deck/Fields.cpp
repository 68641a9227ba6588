#include "tools/tuvo/model/deck/Fields.h"

#include "tools/tuvo/Console.h"

#include <basutl/BuNumber.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace tool {
namespace {

bool IsExponentLetter(char c)
{
    return c == 'd' || c == 'D';
}

bool IsSign(char c)
{
    return c == '-' || c == '+';
}

// A number whose exponent C does not know, written anew with the letter that C knows. Gives the place behind it.
const char* ReadFortranExponent(const char* first, const char* mantissaEnd, const char* last, double& value)
{
    const char* next = mantissaEnd + (IsExponentLetter(*mantissaEnd) ? 1 : 0);
    const char* const exponent = next;
    if (next != last && IsSign(*next))
        ++next;
    const char* const digits = next;
    while (next != last && BuIsDigit(*next))
        ++next;
    if (next == digits)
        return nullptr;
    const std::string text = std::string(first, mantissaEnd) + 'e' + std::string(exponent, next);
    value = BuReadDouble(text.c_str());
    return next;
}

// Whether a text begins as a decimal number does, and not as "inf", "nan" or "0x1".
bool LooksDecimal(const char* first, const char* last)
{
    if (first != last && IsSign(*first))
        ++first;
    if (first == last || !(BuIsDigit(*first) || *first == '.'))
        return false;
    return *first != '0' || last - first < 2 || BuToLower(first[1]) != 'x';
}

}  // namespace

Got ReadId(std::string_view text, std::int32_t& id)
{
    Fields fields(text);
    const Got got = fields.Id(id);
    return got == Got::Other || fields.AtEnd() ? got : Got::Other;
}

Got ReadReal(std::string_view text, double& value)
{
    Fields fields(text);
    const Got got = fields.Real(value);
    return got == Got::Other || fields.AtEnd() ? got : Got::Other;
}

Got Fields::AnyId(std::int32_t& id)
{
    constexpr std::int64_t Largest = std::numeric_limits<std::int32_t>::max();
    const bool isSigned = m_at != m_end && IsSign(*m_at);
    const char* const digits = m_at + (isSigned ? 1 : 0);
    const char* next = digits;
    std::int64_t value = 0;
    for (; next != m_end && BuIsDigit(*next); ++next)
        value = std::min(value * 10 + (*next - '0'), Largest + 1);
    if (next == digits)
        return !isSigned && EndField(next) ? Got::Nothing : Got::Other;
    const bool isNegative = isSigned && *m_at == '-';
    if (value > Largest || !EndField(next))
        return Got::Other;
    id = static_cast<std::int32_t>(isNegative ? -value : value);
    return Got::Value;
}

Got Fields::Real(double& value)
{
    SkipBlanks();
    if (!LooksDecimal(m_at, m_end))
        return EndField(m_at) ? Got::Nothing : Got::Other;
    const char* end = m_at;
    double read = BuReadDouble(m_at, m_end, &end);
    if (end == m_at)
        return Got::Other;
    if (end != m_end && (IsExponentLetter(*end) || IsSign(*end)))
        end = ReadFortranExponent(m_at, end, m_end, read);
    if (end == nullptr || !std::isfinite(read) || !EndField(end))
        return Got::Other;
    value = read;
    return Got::Value;
}

std::string_view Fields::Text()
{
    SkipBlanks();
    const char* const first = m_at;
    const char* end = std::find(first, m_end, ',');
    m_at = end != m_end ? end + 1 : end;
    while (end != first && (end[-1] == ' ' || end[-1] == '\t'))
        --end;
    return {first, static_cast<std::size_t>(end - first)};
}

std::string NoId(std::string_view text)
{
    const bool isWhole = !text.empty() && std::all_of(text.begin(), text.end(), [](char c) { return BuIsDigit(c); });
    return Quoted(text) + (isWhole ? " is above 2147483647, the largest id" : " is no id");
}

std::string NoReal(std::string_view text)
{
    return Quoted(text) + " is no number";
}

}  // namespace tool
