#include "VUnit/DisplayUnits.h"

#include "TuvoMemory/ModuleNames.h"
#include "TuvoMemory/ScratchBuffer.h"
#include "VUnit/Catalogue.h"
#include "VUnit/FieldWalker.h"

#include <TuvoUtil/Memory.h>
#include <basutl/BuCharacter.h>
#include <basutl/BuNumber.h>

#include <cstddef>

namespace {

// The system 7 and the unit name "N" of "7:N".
struct Entry
{
    std::string_view name;
    int systemId;
};
using Entries = ScratchBuffer<Entry, 64>;

bool EndsName(char c)
{
    return c <= ';' && (c == ';' || c == ':' || c == '\0');  // most are letters, which lie above
}

// Reads one entry of the form "7:N", blanks before it skipped, and gives its end; null when it has another form.
const char* ReadPlainEntry(const char* text, Entry& entry)
{
    while (BuIsSpace(*text))
        ++text;
    const char* const digits = text;
    entry.systemId = 0;
    for (; BuIsDigit(*text) && text - digits < 9; ++text)
        entry.systemId = entry.systemId * 10 + (*text - '0');
    if (text == digits || *text != ':')
        return nullptr;
    const char* const name = ++text;
    while (!EndsName(*text))
        ++text;
    entry.name = std::string_view(name, static_cast<std::size_t>(text - name));
    return text != name && (*text == ';' || *text == '\0') ? text : nullptr;
}

// Reads a list of such entries with single dividers, as nearly all are, in one go. False for any other list, and when
// memory is exhausted.
bool ReadPlainList(const char* text, Entries& entries)
{
    while (*text != '\0') {
        Entry entry = {};
        text = ReadPlainEntry(text, entry);
        if (text == nullptr || !entries.Append(entry))
            return false;
        text += *text == ';' ? 1 : 0;
    }
    return !entries.IsEmpty();
}

// Reads any list by the rules of the splitter. An entry that has not two parts counts, with nothing in it.
bool ReadAnyList(std::string_view list, Entries& entries)
{
    entries.Clear();
    std::string_view text;
    for (FieldWalker texts(list, ';'); texts.Next(text);) {
        FieldWalker parts(text, ':');
        std::string_view id, name, further;
        const bool hasTwoParts = parts.Next(id) && parts.Next(name) && !parts.Next(further);
        // The number ends at the divider at the latest.
        if (!entries.Append(hasTwoParts ? Entry{name, BuReadInt(id.data())} : Entry{"", 0}))
            return false;
    }
    return true;
}

}  // namespace

bool ReadDisplayUnits(std::string_view list, _UnitDataTypeStr& type)
{
    Entries entries(modules::VUnit);
    if (!ReadPlainList(list.data(), entries) && !ReadAnyList(list, entries))
        return false;
    type.displayUnits = static_cast<_UnitDisplayUnitStr*>(
        VBuMalloc(entries.Size() * sizeof(_UnitDisplayUnitStr), modules::VUnit, __LINE__, 0));
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
