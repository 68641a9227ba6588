#include "tools/tuvo/NumberText.h"

#include "tools/tuvo/Console.h"

#include <basutl/BuCharacter.h>
#include <basutl/BuNumber.h>

#include <algorithm>
#include <charconv>
#include <cmath>

namespace tool {
namespace {

bool HasDigit(std::string_view text)
{
    return std::any_of(text.begin(), text.end(), BuIsDigit<char>);
}

// Whether a number of ten digits and more has five and more of them for its size only.
bool EndsWithManyZeros(std::string_view text)
{
    return text.size() >= 10 && text.find_first_of(".e") == text.npos && text.substr(text.size() - 5) == "00000";
}

// Appends a whole number of at least ten digits with an exponent: 2.1e+11 for 210000000000.
void AppendScientific(std::string& out, std::string_view text)
{
    const std::size_t first = text.front() == '-' ? 2 : 1;
    const std::string exponent = std::to_string(text.size() - first);
    const std::string_view others = text.substr(first, text.find_last_not_of('0') + 1 - first);
    out.append(text.substr(0, first)).append(others.empty() ? "" : ".").append(others).append("e+");
    out.append(exponent.size() < 2 ? "0" : "").append(exponent);
}

}  // namespace

std::string_view Trimmed(std::string_view text)
{
    while (!text.empty() && BuIsSpace(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && BuIsSpace(text.back()))
        text.remove_suffix(1);
    return text;
}

std::string ReadNumber(std::string_view text, double& value)
{
    const std::string_view number = Trimmed(text);
    const char* const last = number.data() + number.size();
    const char* end = nullptr;
    value = BuReadDouble(number.data(), last, &end);
    if (end == number.data())
        return Quoted(number) + " is not a number";
    if (end != last)
        return Quoted(number) + " is not a number: " + Quoted({end, static_cast<std::size_t>(last - end)}) +
               " follows it";
    if (std::isfinite(value))
        return {};
    return Quoted(number) + (std::isinf(value) && HasDigit(number) ? " is too large" : " is not a finite number");
}

void AppendNumber(std::string& out, double value, int digits)
{
    char buffer[32];
    const double shown = value == 0 ? 0 : value;  // never "-0"
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, shown, std::chars_format::general, digits);
    const std::string_view text(buffer, static_cast<std::size_t>(result.ptr - buffer));
    if (EndsWithManyZeros(text))
        AppendScientific(out, text);
    else
        out.append(text);
}

std::string NumberText(double value, int digits)
{
    std::string text;
    AppendNumber(text, value, digits);
    return text;
}

std::string Plural(std::uint64_t count, const std::string& noun)
{
    return std::to_string(count) + ' ' + noun + (count == 1 ? "" : "s");
}

}  // namespace tool
