// The lexer that hands delimiters back as tokens.
#include <TuvoUtil/StringBreak.h>

#include "Kernels/DelimiterScan.h"
#include "VUtlStr/NewText.h"

char* UtlTokenize(char** cursor, char* delimiters)
{
    if (cursor == nullptr || *cursor == nullptr)
        return nullptr;
    const kernels::DelimiterSet set(delimiters);
    char* start = *cursor;
    while ((*start == ' ' || *start == '\t') && set.Contains(*start))
        ++start;
    if (*start == '\0') {
        *cursor = start;
        return nullptr;
    }
    char* end = start;
    while (*end != '\0' && !set.Contains(*end))
        ++end;
    if (end == start)
        ++end;  // a delimiter
    char* const token = strings::NewCopy({start, static_cast<std::size_t>(end - start)});
    if (token != nullptr)
        *cursor = end;
    return token;
}
