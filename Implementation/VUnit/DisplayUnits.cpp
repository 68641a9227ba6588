#include "VUnit/DisplayUnits.h"

#include "Kernels/DelimiterScan.h"
#include "TuvoMemory/ModuleNames.h"
#include "TuvoMemory/ScratchBuffer.h"
#include "VUnit/Catalogue.h"
#include "VUnit/FieldWalker.h"

#include <TuvoUtil/Memory.h>
#include <basutl/BuCharacter.h>
#include <basutl/BuNumber.h>

#include <cstddef>
#include <cstdint>
#include <iterator>

namespace {

// The system 7 and the unit name "N" of "7:N".
struct Entry
{
    std::string_view name;
    int systemId;
};
using Entries = ScratchBuffer<Entry, 64>;

std::size_t Count(std::string_view text, char c)
{
    std::size_t count = 0;
    kernels::ForEachChunk(text.data(), text.size(), kernels::DelimiterSet(c),
                          [&](const kernels::Chunk& chunk) { count += kernels::CountBits(chunk.masks, chunk.blocks); });
    return count;
}

bool EndsName(char c)
{
    return c <= ';' && (c == ';' || c == ':' || c == '\0');  // most are letters, which lie above
}

// Copies the name that `text` starts with and gives its end: the next divider or the end of the list.
const char* ReadName(const char* text, char (&field)[sizeof(_UnitDisplayUnitStr::unitName)])
{
    char* name = field;
    char* const last = std::end(field) - 1;
    for (; !EndsName(*text); ++text)
        if (name != last)
            *name++ = *text;
    *name = '\0';
    return text;
}

// Reads one entry of the form "7:N", blanks before it skipped, and gives its end; null when it has another form.
const char* ReadPlainEntry(const char* text, _UnitDisplayUnitStr& unit)
{
    while (BuIsSpace(*text))
        ++text;
    const char* const digits = text;
    std::int32_t systemId = 0;
    for (; BuIsDigit(*text) && text - digits < 9; ++text)
        systemId = systemId * 10 + (*text - '0');
    if (text == digits || *text != ':')
        return nullptr;
    unit.systemId = systemId;
    const char* const name = text + 1;
    text = ReadName(name, unit.unitName);
    return text != name && *text != ':' ? text : nullptr;
}

_UnitDisplayUnitStr* NewDisplayUnits(std::size_t count)
{
    return static_cast<_UnitDisplayUnitStr*>(
        VBuMalloc(count * sizeof(_UnitDisplayUnitStr), modules::VUnit, __LINE__, 0));
}

// Reads a list of such entries with single dividers, as nearly all are, in one go. False, with the type unchanged, for
// any other list, and when memory is exhausted.
bool ReadPlainList(std::string_view list, _UnitDataTypeStr& type)
{
    if (list.empty())
        return false;
    const std::size_t count = Count(list, ';') + (list.back() != ';' ? 1 : 0);
    _UnitDisplayUnitStr* units = NewDisplayUnits(count);
    if (units == nullptr)
        return false;
    const char* text = list.data();
    for (std::size_t i = 0; i < count && text != nullptr; ++i) {
        text = ReadPlainEntry(text, units[i]);
        text += text != nullptr && *text == ';' ? 1 : 0;
    }
    if (text == nullptr) {
        VBU_FREE(units, modules::VUnit, __LINE__);
        return false;
    }
    type.displayUnits = units;
    type.displayUnitCount = static_cast<std::int32_t>(count);
    return true;
}

// Reads any list by the rules of the splitter. An entry that has not two parts counts, with nothing in it.
bool ReadAnyList(std::string_view list, _UnitDataTypeStr& type)
{
    Entries entries(modules::VUnit);
    std::string_view text;
    for (FieldWalker texts(list, ';'); texts.Next(text);) {
        FieldWalker parts(text, ':');
        std::string_view id, name, further;
        const bool hasTwoParts = parts.Next(id) && parts.Next(name) && !parts.Next(further);
        // The number ends at the divider at the latest.
        if (!entries.Append(hasTwoParts ? Entry{name, BuReadInt(id.data())} : Entry{"", 0}))
            return false;
    }
    type.displayUnits = NewDisplayUnits(entries.Size());
    if (type.displayUnits == nullptr)
        return false;
    for (const Entry& entry : entries) {
        _UnitDisplayUnitStr& unit = type.displayUnits[type.displayUnitCount++];
        if (entry.name.empty())
            unit = {};
        catalogue::CopyCut(unit.unitName, sizeof unit.unitName, entry.name);
        unit.systemId = entry.systemId;
    }
    return true;
}

}  // namespace

bool ReadDisplayUnits(std::string_view list, _UnitDataTypeStr& type)
{
    return ReadPlainList(list, type) || ReadAnyList(list, type);
}
