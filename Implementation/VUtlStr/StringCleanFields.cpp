// Fields at fixed columns of a line.

#include "VUtlStr/NewText.h"
#include "VUtlStr/Trim.h"

#include <TuvoUtil/StringClean.h>
#include <basutl/BuNumber.h>

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <system_error>

namespace {

constexpr int Done = 0;
constexpr int Empty = 1;
constexpr int NoNumber = 2;
constexpr int OutOfMemory = -1;

// What a field holds apart from white space at its ends. The columns are wider than an int, so that fields can be
// counted on from one another.
std::string_view Field(const char* text, std::int64_t column, std::int64_t width)
{
    if (text == nullptr || column < 1 || width < 1)
        return {};
    const std::string_view reached(text, ::strnlen(text, static_cast<std::size_t>(column - 1 + width)));
    const std::string_view line = reached.substr(0, reached.find_first_of("\r\n"));
    return strings::WithoutSpaceAtEnds(line.substr(std::min(static_cast<std::size_t>(column - 1), line.size())));
}

int ReadInteger(std::string_view field, int& value)
{
    if (field.empty())
        return Empty;
    const char* const last = field.data() + field.size();
    const bool hasPlus = field.front() == '+';
    if (hasPlus && field.substr(1, 1) == "-")
        return NoNumber;
    const char* const first = field.data() + hasPlus;  // what follows knows a minus sign only
    int read = 0;
    const auto [end, error] = std::from_chars(first, last, read);
    if (error != std::errc() || end != last)
        return NoNumber;
    value = read;
    return Done;
}

int ReadCoordinate(std::string_view field, double& value)
{
    value = 0.0;
    if (field.empty())
        return Empty;
    const char* const last = field.data() + field.size();
    const char* end = nullptr;
    const double read = BuReadDouble(field.data(), last, &end);
    if (end != last)
        return NoNumber;
    value = read;
    return Done;
}

}  // namespace

int UtlReadInt(const char* text, int column, int width, int* value)
{
    int read = 0;
    const int result = ReadInteger(Field(text, column, width), read);
    if (value != nullptr)
        *value = read;
    return result;
}

int VStrUtlReadInt(const char* text, int column, int width, int* value)
{
    return UtlReadInt(text, column, width, value);
}

int UtlReadPoint3(const char* text, int column, int width, _TvPoint3Str* point)
{
    _TvPoint3Str read = {};
    double* const coordinates[] = {&read.x, &read.y, &read.z};
    int result = Done;
    std::int64_t next = column;
    for (double* const coordinate : coordinates) {
        result = std::max(result, ReadCoordinate(Field(text, column < 1 ? 0 : next, width), *coordinate));
        next += width;
    }
    if (point != nullptr)
        *point = read;
    return result;
}

int UtlReadString(const char* text, int column, int width, char* target)
{
    const std::string_view field = Field(text, column, width);
    if (target != nullptr) {
        if (!field.empty())
            std::memmove(target, field.data(), field.size());
        target[field.size()] = '\0';
    }
    return field.empty() ? Empty : Done;
}

int VStrUtlReadString(const char* text, int column, int width, char** value)
{
    const std::string_view field = Field(text, column, width);
    if (value == nullptr)
        return field.empty() ? Empty : Done;
    *value = field.empty() ? nullptr : strings::NewCopy(field);
    if (field.empty())
        return Empty;
    return *value != nullptr ? Done : OutOfMemory;
}
