#include "VUtlStr/NewText.h"
#include "VUtlStr/Trim.h"

#include <TuvoUtil/NumberText.h>
#include <basutl/BuCharacter.h>
#include <basutl/BuNumber.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <exception>
#include <string_view>
#include <system_error>
#include <utility>

namespace {

// Whether a text without white space at its ends has the characters of a number alone.
bool HasNumberCharacters(std::string_view text)
{
    if (text.empty() || BuToLower(text.front()) == 'e')
        return false;
    return std::all_of(text.begin(), text.end(),
                       [](char c) { return BuIsDigit(c) || c == '+' || c == '-' || c == '.' || c == 'e' || c == 'E'; });
}

// ---- One decimal number --------------------------------------------------------------------------------------------

std::string_view WithoutSign(std::string_view text)
{
    const bool hasSign = !text.empty() && (text.front() == '+' || text.front() == '-');
    return text.substr(hasSign ? 1 : 0);
}

// Takes the digits off the front of a text and tells how many there were.
std::size_t SkipDigits(std::string_view& text)
{
    const auto end = std::find_if_not(text.begin(), text.end(), BuIsDigit<char>);
    const auto count = static_cast<std::size_t>(end - text.begin());
    text.remove_prefix(count);
    return count;
}

// Whether a text is digits, a point among or beside them or not, and perhaps an exponent.
bool IsUnsignedDecimal(std::string_view text)
{
    std::size_t digits = SkipDigits(text);
    if (!text.empty() && text.front() == '.') {
        text.remove_prefix(1);
        digits += SkipDigits(text);
    }
    if (digits == 0)
        return false;
    if (text.empty())
        return true;
    if (BuToLower(text.front()) != 'e')
        return false;
    text = WithoutSign(text.substr(1));
    return SkipDigits(text) > 0 && text.empty();
}

// Whether a number rounds to one that a float can hold. What is too small rounds to zero.
bool FitsFloat(std::string_view number)
{
    float value = 0.0F;
    const auto result = std::from_chars(number.data(), number.data() + number.size(), value);
    return result.ec == std::errc() || BuReadDouble(number.data(), number.data() + number.size(), nullptr) < 1.0;
}

// ---- The layout of a number ----------------------------------------------------------------------------------------

constexpr char DefaultFormat[] = "%10.6e";
constexpr long long MostDecimals = 14;

struct Layout
{
    long long integerDigits = 0;
    long long fractionDigits = 0;
    long long zeros = 0;  // after the point, behind the last other digit
    bool hasPoint = false;
    char style = 'f';
};

// Counts the digits of a number text group by group: a sign, a point, the exponent or the end ends a group, and of
// several groups on the same side of the point the last one counts.
class LayoutScan
{
public:
    explicit LayoutScan(std::string_view text)
    {
        for (const char c : text)
            if (!Take(c)) {
                EndExponent(c);
                return;
            }
        if (m_group != 0)
            EndGroup();
    }

    const Layout& Result() const { return m_layout; }

private:
    // False for the letter of an exponent, which ends the scan.
    bool Take(char c)
    {
        if (BuIsDigit(c)) {
            ++m_group;
            m_layout.zeros = c == '0' && m_layout.hasPoint ? m_layout.zeros + 1 : 0;
        } else if (c == '.') {
            m_layout.integerDigits = std::exchange(m_group, 0);
            m_layout.hasPoint = true;
        } else if (c == '+' || c == '-') {
            // Kept: a sign anywhere ends a group, an empty one too: "1.5+-" has no decimals.
            EndGroup();
        } else {
            return false;
        }
        return true;
    }

    void EndGroup()
    {
        (m_layout.hasPoint ? m_layout.fractionDigits : m_layout.integerDigits) = std::exchange(m_group, 0);
    }

    // Several digits before the point are one digit and decimals in the notation with an exponent.
    void EndExponent(char letter)
    {
        EndGroup();
        m_layout.style = letter;
        if (m_layout.integerDigits > 1) {
            m_layout.fractionDigits += m_layout.integerDigits - 1;
            m_layout.integerDigits = 0;
        }
    }

    Layout m_layout;
    long long m_group = 0;
};

// The characters that a number takes besides blanks in front and decimals.
long long FixedWidth(const Layout& layout, long long decimals)
{
    const long long exponent = layout.style == 'f' ? 0 : 4;
    if (decimals == 0)
        return layout.integerDigits + exponent;
    if (layout.integerDigits != 0)
        return layout.integerDigits + 1 + exponent;
    // Kept: without digits before the point there is room for no exponent, and zeros at the end take some away.
    return 2 - layout.zeros;
}

struct FormatText
{
    char text[64];  // "%", two numbers of up to 20 characters, ".", a letter and "."
};

FormatText PrintFormat(const Layout& layout, long long lead)
{
    const long long decimals = std::min(layout.fractionDigits, MostDecimals);
    FormatText format = {};
    if (layout.integerDigits == 0 && decimals == 0) {
        std::memcpy(format.text, DefaultFormat, sizeof DefaultFormat);
        return format;
    }
    const bool endsWithPoint = decimals == 0 && layout.hasPoint && layout.style == 'f';
    std::snprintf(format.text, sizeof format.text, "%%%lld.%lld%c%s", FixedWidth(layout, decimals) + decimals + lead,
                  decimals, layout.style, endsWithPoint ? "." : "");
    return format;
}

// ---- Precision by magnitude ----------------------------------------------------------------------------------------

struct PrecisionRow
{
    double lower;
    double upper;
    int decimals;
};

constexpr PrecisionRow PrecisionRows[] = {
    {99.999, 10000.001, 3}, {0.999, 100.0, 4},    {0.099, 1.0, 5},      {0.0099, 0.1, 6},     {0.00099, 0.01, 7},
    {9.9e-05, 0.001, 8},    {9.9e-06, 0.0001, 9}, {9.9e-07, 1e-05, 10}, {9.9e-08, 1e-06, 11},
};

BuString FormatByMagnitude(double value, double magnitude)
{
    BuString text;
    if (magnitude >= 10000.0 || magnitude < 1e-8) {
        text.Format(L"%.g", value);
        return text;
    }
    // Kept: what lies between 1e-8 and the last row is in none, and prints nothing.
    for (const PrecisionRow& row : PrecisionRows)
        if (row.lower <= magnitude && magnitude <= row.upper)
            return BuString::FromDouble(value, row.decimals);
    return text;
}

}  // namespace

bool UtlIsValidNumber(char* text)
{
    if (text == nullptr)
        return false;
    const std::string_view number = strings::WithoutSpaceAtEnds(text);
    if (number.empty())
        return false;
    char& end = text[static_cast<std::size_t>(number.data() - text) + number.size()];
    if (end != '\0')  // a text that is not to be cut may be a literal
        end = '\0';
    return HasNumberCharacters(number);
}

int UtlIsFloatValue(char* text)
{
    if (text == nullptr)
        return 0;
    const std::string_view number = WithoutSign(text);
    return IsUnsignedDecimal(number) && FitsFloat(number) ? 0 : 1;
}

bool UtlIsStringHasAlphabet(char* text)
{
    const std::string_view whole(text != nullptr ? text : "");
    return std::any_of(whole.begin(), whole.end(), BuIsLetter<char>);
}

int UtlStrGetInt(int* value, char* text, int column, int width)
{
    if (value != nullptr)
        *value = 0;
    if (text == nullptr || column < 1 || width < 1)
        return 1;
    const std::size_t before = static_cast<std::size_t>(column) - 1;
    std::string_view field(text, ::strnlen(text, before + static_cast<std::size_t>(width)));
    if (field.size() <= before)
        return 1;
    field.remove_prefix(before);
    field.remove_prefix(std::min(field.find_first_not_of(' '), field.size()));

    std::uint32_t magnitude = 0;  // unsigned, so that it wraps
    bool isNegative = false;
    for (const char c : field.substr(0, field.find_first_of(" \r\n"))) {
        if (BuIsDigit(c))
            magnitude = magnitude * 10 + static_cast<std::uint32_t>(c - '0');
        else if (c == '+' || c == '-')
            isNegative = c == '-';
    }
    if (value != nullptr)
        *value = static_cast<int>(isNegative ? 0 - magnitude : magnitude);
    return 0;
}

char* UtlConstructFormat(int width, int rightAligned)
{
    char format[24];
    std::snprintf(format, sizeof format, rightAligned != 0 ? "%%%ds" : "%%-%ds", width);
    return strings::NewCopy(format);
}

void UtlGetFormatOfNumberWithSpace(const char* text, std::string& format)
{
    const std::string_view whole = strings::WithoutSpaceAtEnd(text != nullptr ? text : "");
    const std::string_view number = strings::WithoutSpaceAtFront(whole);
    const auto lead = static_cast<long long>(whole.size() - number.size());
    try {
        format = DefaultFormat;
        if (HasNumberCharacters(number))
            format = PrintFormat(LayoutScan(number).Result(), lead).text;
    } catch (const std::exception&) {
        // Exhausted memory: the default, which needs none, stands already.
    }
}

BuString TuvoUtilFormatDoubleValue(const double& value, double* reference)
{
    BuString text = FormatByMagnitude(value, std::fabs(reference != nullptr ? *reference : value));
    if (text.GetAt(0) == L'-' && value == 0.0)
        text.Format(L"%g", 0.0);
    return text;
}
