// What the tests of text functions share.
#pragma once

#include <TuvoUtil/Memory.h>

#include <cstddef>
#include <string>

// Visits all texts over `alphabet` of up to `length` characters.
template <typename Visit>
void ForEachText(const std::string& alphabet, std::size_t length, Visit visit, const std::string& prefix = {})
{
    visit(prefix);
    if (prefix.size() < length)
        for (const char c : alphabet)
            ForEachText(alphabet, length, visit, prefix + c);
}

// Frees a text that the library gave.
inline std::string Taken(char* text)
{
    const std::string copy = text != nullptr ? text : "(null)";
    VBuFree(text, __FILE__, __LINE__);
    return copy;
}
