// Lists of floating-point values.
#include <TuvoUtil/IdList.h>

#include "TuvoMemory/ScratchBuffer.h"
#include "VUtlStr/IdListArray.h"
#include "VUtlStr/IdListFields.h"
#include "VUtlStr/Trim.h"

#include <basutl/BuCharacter.h>
#include <basutl/BuNumber.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace {

double ValueOf(std::string_view text)
{
    return BuReadDouble(text.data(), text.data() + text.size(), nullptr);
}

std::int64_t CountFields(std::string_view text, char separator)
{
    const auto separators = std::count(text.begin(), text.end(), separator);
    return separators + (!text.empty() && text.back() != separator);
}

// ---- Checked values ------------------------------------------------------------------------------------------------

using Values = ScratchBuffer<double, 64>;

constexpr char OutOfMemory[] = "Memory is exhausted!";

const char* WrongCharacter(char c, const char* otherwise)
{
    return BuIsLetter(c) ? "Alpha value is entered!" : otherwise;
}

// What is wrong with a number that is not empty; null when it is right.
const char* Problem(std::string_view number)
{
    if (CountFields(number, '-') > 2)
        return "The '-' sign is specified twice for the same number!";
    if (CountFields(number, '.') > 2)
        return "A value can have only one decimal point!";
    const auto isOfNumber = [](char c) { return BuIsDigit(c) || c == '.'; };
    if (!isOfNumber(number.front()) && number.front() != '-')
        return WrongCharacter(number.front(), "Non numeric value is entered!");
    const auto wrong = std::find_if_not(number.begin() + 1, number.end(), isOfNumber);
    if (wrong != number.end())
        return WrongCharacter(*wrong, "Invalid value!");
    return std::abs(ValueOf(number)) < 1e-7 ? "Enter non zero values!" : nullptr;
}

// Reads all numbers of a text; gives what is wrong with the first that is, else null.
const char* ReadValues(std::string_view text, Values& values)
{
    idlist::Fields items(text, ',');
    for (std::string_view item; items.Next(item);) {
        idlist::Fields parts(item, ' ');
        for (std::string_view part; parts.Next(part);) {
            const std::string_view number = strings::WithoutSpaceAtEnds(part);
            if (number.empty())
                continue;
            if (const char* const problem = Problem(number))
                return problem;
            if (!values.Append(ValueOf(number)))
                return OutOfMemory;
        }
    }
    return nullptr;
}

// Removes the white space around a text in place.
std::string_view TrimInPlace(char* text)
{
    const std::string_view trimmed = strings::WithoutSpaceAtEnds(text);
    std::memmove(text, trimmed.data(), trimmed.size());
    text[trimmed.size()] = '\0';
    return {text, trimmed.size()};
}

const char* ReadCheckedValues(char* text, int& count, double*& values)
{
    if (text == nullptr || *text == '\0')
        return "No values found!";
    Values read(modules::VUtlStr);
    if (const char* const problem = ReadValues(TrimInPlace(text), read))
        return problem;
    if (read.IsEmpty())
        return nullptr;
    const std::size_t size = read.Size();
    values = size <= INT_MAX ? read.Release() : nullptr;
    if (values == nullptr)
        return OutOfMemory;
    count = static_cast<int>(size);
    return nullptr;
}

}  // namespace

int UtlGetFloatListFromString(const char* text, float** values, const char* separator)
{
    if (text == nullptr || values == nullptr)
        return 0;
    const char divider = idlist::SeparatorOf(separator, ',');
    const std::int64_t count = CountFields(text, divider);
    float* next = idlist::NewArray<float>(count);
    if (next == nullptr)
        return 0;
    *values = next;
    idlist::Fields fields(text, divider);
    for (std::string_view field; fields.Next(field);)
        *next++ = static_cast<float>(ValueOf(field));
    return static_cast<int>(count);
}

int UtlGetTvCoordValuesFromString(char* text, int* count, double** values, char*, char* message)
{
    if (count == nullptr || values == nullptr)
        return 1;
    *count = 0;
    *values = nullptr;
    const char* const problem = ReadCheckedValues(text, *count, *values);
    if (problem == nullptr)
        return 0;
    if (message != nullptr)
        std::memcpy(message, problem, std::strlen(problem) + 1);
    return 1;
}
