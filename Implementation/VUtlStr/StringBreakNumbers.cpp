// Numbers divided by white space.
#include <TuvoUtil/StringBreak.h>

#include "TuvoMemory/ModuleNames.h"
#include "VUtlStr/FieldCut.h"

#include <TuvoUtil/Memory.h>
#include <basutl/BuCharacter.h>
#include <basutl/BuNumber.h>

#include <climits>
#include <cstring>

namespace {

enum NumberType : int
{
    Int = 0,
    Float = 1,
    Double = 2
};

// The block of the process that holds the values of the last call, and is never freed.
struct SharedValues
{
    void* block;
    std::size_t size;  // bytes
};
constinit SharedValues g_values = {nullptr, 0};

bool ReserveValues(std::size_t count, int type)
{
    constexpr std::size_t firstSize = 1024;
    static_assert(sizeof(int) == sizeof(float));
    const std::size_t needed = std::max(count * (type == Double ? sizeof(double) : sizeof(int)), firstSize);
    if (needed <= g_values.size)
        return true;
    void* const block = VBuRealloc(g_values.block, needed, modules::VUtlStr, __LINE__);
    if (block == nullptr)
        return false;
    g_values = {block, needed};
    return true;
}

void Store(int type, std::size_t index, const char* number)
{
    switch (type) {
        case Int:
            static_cast<int*>(g_values.block)[index] = BuReadInt(number);
            break;
        case Float:
            static_cast<float*>(g_values.block)[index] = static_cast<float>(BuReadDouble(number));
            break;
        case Double:
            static_cast<double*>(g_values.block)[index] = BuReadDouble(number);
            break;
        default:
            break;
    }
}

// Writes a NUL over the blank behind the field at the start of a text, and gives the start of the next one.
char* CutField(char* field)
{
    while (*field != ' ' && *field != '\0')
        ++field;
    if (*field != '\0')
        *field++ = '\0';
    while (*field == ' ')
        ++field;
    return field;
}

}  // namespace

int UtlBreakStringToGivenDataType(char* text, void** values, int type)
{
    if (values == nullptr)
        return 0;
    *values = nullptr;
    if (text == nullptr)
        return 0;
    const kernels::DelimiterSet whiteSpace(" \t\n\v\f\r");
    const std::size_t count = fieldcut::CountTokens(text, std::strlen(text), whiteSpace);
    if (count > INT_MAX || !ReserveValues(count, type))
        return 0;
    for (char* at = text; *at != '\0'; ++at)
        if (BuIsSpace(*at))
            *at = ' ';
    while (*text == ' ')
        ++text;
    for (std::size_t i = 0; i < count; ++i) {
        const char* const field = text;
        text = CutField(text);
        Store(type, i, field);
    }
    *values = g_values.block;
    return static_cast<int>(count);
}
