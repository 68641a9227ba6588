#include "platform/Platform.h"

#include <TuvoUtil/StringClean.h>

#include <algorithm>
#include <climits>
#include <cstdarg>

namespace {

// No text can be longer. The C library of Windows keeps sizes as int.
constexpr std::size_t LargestSize = INT_MAX;

int Print(char* target, std::size_t size, const char* format, va_list arguments)
{
    size = target != nullptr ? std::min(size, LargestSize) : 0;
    const int length = platform::PrintInCLocale(target, size, format != nullptr ? format : "", arguments);
    if (length < 0 && size != 0)
        *target = '\0';
    return length;
}

}  // namespace

int UtlSprintf(char* target, const char* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    const int length = Print(target, LargestSize, format, arguments);
    va_end(arguments);
    return length;
}

int UtlSnprintf(char* target, std::size_t size, const char* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    const int length = Print(target, size, format, arguments);
    va_end(arguments);
    return length;
}
