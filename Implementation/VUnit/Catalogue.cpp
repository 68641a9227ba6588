#include "VUnit/Catalogue.h"

#include "TuvoMemory/FirstMatchIndex.h"
#include "TuvoMemory/ModuleNames.h"

#include <TuvoUtil/Memory.h>
#include <basutl/BuCharacter.h>

#include <algorithm>
#include <cstring>
#include <new>
#include <type_traits>

namespace catalogue {
namespace {

// ---- Keys ----------------------------------------------------------------------------------------------------------

template <typename RecordType>
struct ById
{
    using Record = RecordType;
    using Key = std::int32_t;
    static bool IsListed(const Record&) { return true; }
    static Key KeyOf(const Record& record) { return record.id; }
    static std::uint32_t HashOf(Key key) { return HashOfNumber(key); }
    static bool AreEqual(Key left, Key right) { return left == right; }
};

// By the text that a member of the record holds or points to.
template <typename RecordType, auto Member>
struct ByText
{
    using Record = RecordType;
    using Key = const char*;
    static bool IsListed(const Record&) { return true; }
    static Key KeyOf(const Record& record) { return record.*Member; }
    static std::uint32_t HashOf(Key key) { return HashOfTextNoCase(key); }
    static bool AreEqual(Key left, Key right) { return BuCompareNoCase(left, right) == 0; }
};

template <typename Four>
std::uint32_t HashOfFour(const Four& key)
{
    return HashOfNumber(key.heat, HashOfNumber(key.time, HashOfNumber(key.mass, HashOfNumber(key.length))));
}

struct ByUnits
{
    using Record = _UnitSystemStr;
    using Key = SystemUnits;
    static bool IsListed(const Record&) { return true; }
    static Key KeyOf(const Record& record) { return UnitsOf(record); }
    static std::uint32_t HashOf(const Key& key) { return HashOfFour(key); }
    static bool AreEqual(const Key& left, const Key& right) { return left == right; }
};

struct ByExponents
{
    using Record = _UnitDataTypeStr;
    using Key = Exponents;
    static bool IsListed(const Record& record) { return record.hasMultiplier == 0; }
    static Key KeyOf(const Record& record) { return ExponentsOf(record); }
    static std::uint32_t HashOf(const Key& key) { return HashOfFour(key); }
    static bool AreEqual(const Key& left, const Key& right) { return left == right; }
};

// ---- State ---------------------------------------------------------------------------------------------------------

struct Catalogue
{
    VUnit records;
    FirstMatchIndex<ById<_UnitBaseTypeStr>> unitsById{modules::VUnit};
    FirstMatchIndex<ByText<_UnitBaseTypeStr, &_UnitBaseTypeStr::abbreviation>> unitsByAbbreviation{modules::VUnit};
    FirstMatchIndex<ById<_UnitSystemStr>> systemsById{modules::VUnit};
    FirstMatchIndex<ByUnits> systemsByUnits{modules::VUnit};
    FirstMatchIndex<ByText<_UnitSystemStr, &_UnitSystemStr::displayName>> systemsByDisplayName{modules::VUnit};
    FirstMatchIndex<ById<_UnitDataTypeStr>> typesById{modules::VUnit};
    FirstMatchIndex<ByText<_UnitDataTypeStr, &_UnitDataTypeStr::name>> typesByName{modules::VUnit};
    FirstMatchIndex<ByText<_UnitDataTypeStr, &_UnitDataTypeStr::viewerName>> typesByViewerName{modules::VUnit};
    FirstMatchIndex<ByExponents> typesByExponents{modules::VUnit};
};

struct State
{
    alignas(Catalogue) std::byte storage[sizeof(Catalogue)];  // never destroyed: hosts may ask until the process ends
    Catalogue* catalogue;                                     // in `storage`; null until it is made
    char* directory;
    std::int32_t emptySystemId;
};
constinit State g_state = {};

Catalogue& Made()
{
    if (g_state.catalogue == nullptr)
        g_state.catalogue = ::new (g_state.storage) Catalogue;
    return *g_state.catalogue;
}

// One of the three lists of the catalogue.
template <typename Record>
struct List
{
    Record*& records;
    std::int32_t& count;
};

List<_UnitBaseTypeStr> ListOf(VUnit& all, const _UnitBaseTypeStr*)
{
    return {all.m_baseUnits, all.m_baseUnitCount};
}

List<_UnitSystemStr> ListOf(VUnit& all, const _UnitSystemStr*)
{
    return {all.m_systems, all.m_systemCount};
}

List<_UnitDataTypeStr> ListOf(VUnit& all, const _UnitDataTypeStr*)
{
    return {all.m_dataTypes, all.m_dataTypeCount};
}

template <typename Record>
List<Record> ListOf(VUnit& all)
{
    return ListOf(all, static_cast<const Record*>(nullptr));
}

template <typename Traits>
const typename Traits::Record* Find(FirstMatchIndex<Traits> Catalogue::*index, typename Traits::Key key)
{
    Catalogue& made = Made();
    if constexpr (std::is_pointer_v<typename Traits::Key>)
        if (key == nullptr)
            return nullptr;
    const auto list = ListOf<typename Traits::Record>(made.records);
    const std::int32_t position = (made.*index).Find(list.records, list.count, key);
    return position < 0 ? nullptr : list.records + position;
}

// The capacity of a list follows from its length: the next power of two, at least 8. So it moves when that is reached.
template <typename Record>
Record* Append()
{
    constexpr std::int32_t least = 8;
    const auto [records, count] = ListOf<Record>(Get());
    if (count == 0 || (count >= least && (count & (count - 1)) == 0)) {
        const std::size_t capacity = std::max<std::size_t>(least, 2 * static_cast<std::size_t>(count));
        void* const moved = VBuRealloc(records, capacity * sizeof(Record), modules::VUnit, __LINE__);
        if (moved == nullptr)
            return nullptr;
        records = static_cast<Record*>(moved);
    }
    ++g_generation;
    Record* const appended = records + count++;
    std::memset(appended, 0, sizeof(Record));
    return appended;
}

void Release(_UnitBaseTypeStr& unit)
{
    VBU_FREE(unit.name, modules::VUnit, __LINE__);
    VBU_FREE(unit.abbreviation, modules::VUnit, __LINE__);
}

void Release(_UnitSystemStr&) {}

void Release(_UnitDataTypeStr& type)
{
    VBU_FREE(type.name, modules::VUnit, __LINE__);
    VBU_FREE(type.displayUnits, modules::VUnit, __LINE__);
}

template <typename Record>
void CutBack(VUnit& all, std::int32_t length)
{
    const List<Record> list = ListOf<Record>(all);
    for (; list.count > length; --list.count)
        Release(list.records[list.count - 1]);
}

void CutBack(VUnit& all, const Lengths& lengths)
{
    CutBack<_UnitBaseTypeStr>(all, lengths.units);
    CutBack<_UnitSystemStr>(all, lengths.systems);
    CutBack<_UnitDataTypeStr>(all, lengths.dataTypes);
}

}  // namespace

// ---- The one catalogue ---------------------------------------------------------------------------------------------

constinit std::uint32_t g_generation = 1;

bool Exists()
{
    return g_state.catalogue != nullptr;
}

VUnit& Get()
{
    return Made().records;
}

const char* Directory()
{
    return g_state.directory;
}

void SetDirectory(char* directory)
{
    g_state.directory = directory;
}

std::int32_t EmptySystemId()
{
    Made();
    return g_state.emptySystemId;
}

void SetEmptySystemId(std::int32_t id)
{
    g_state.emptySystemId = id;
}

void ResetForTests()
{
    if (Exists())
        g_state.catalogue->~Catalogue();
    VBU_FREE(g_state.directory, modules::VUnit, __LINE__);
    g_state.catalogue = nullptr;
    g_state.emptySystemId = 0;
    ++g_generation;
}

// ---- Finding -------------------------------------------------------------------------------------------------------

const _UnitBaseTypeStr* FindUnit(std::int32_t id)
{
    return Find(&Catalogue::unitsById, id);
}

const _UnitBaseTypeStr* FindUnit(const char* abbreviation)
{
    return Find(&Catalogue::unitsByAbbreviation, abbreviation);
}

const _UnitSystemStr* FindSystem(std::int32_t id)
{
    return Find(&Catalogue::systemsById, id);
}

const _UnitSystemStr* FindSystem(const SystemUnits& units)
{
    return Find(&Catalogue::systemsByUnits, units);
}

const _UnitSystemStr* FindSystemByDisplayName(const char* displayName)
{
    return Find(&Catalogue::systemsByDisplayName, displayName);
}

const _UnitDataTypeStr* FindDataType(std::int32_t id)
{
    return Find(&Catalogue::typesById, id);
}

const _UnitDataTypeStr* FindDataType(const char* name)
{
    return Find(&Catalogue::typesByName, name);
}

const _UnitDataTypeStr* FindDataTypeByViewerName(const char* viewerName)
{
    return Find(&Catalogue::typesByViewerName, viewerName);
}

const _UnitDataTypeStr* FindDataType(const Exponents& exponents)
{
    return Find(&Catalogue::typesByExponents, exponents);
}

const _UnitDataTypeStr* FindLastDataType(std::int32_t id)
{
    const _UnitDataTypeStr* const first = FindDataType(id);
    const Catalogue& made = Made();
    if (first == nullptr || made.typesById.KeysAreUnique(made.records.m_dataTypeCount))
        return first;
    const _UnitDataTypeStr* const end = made.records.m_dataTypes + made.records.m_dataTypeCount;
    const _UnitDataTypeStr* last = first;
    for (const _UnitDataTypeStr* type = first; type != end; ++type)
        last = type->id == id ? type : last;
    return last;
}

// ---- Appending -----------------------------------------------------------------------------------------------------

_UnitBaseTypeStr* AppendUnit()
{
    return Append<_UnitBaseTypeStr>();
}

_UnitSystemStr* AppendSystem()
{
    return Append<_UnitSystemStr>();
}

_UnitDataTypeStr* AppendDataType()
{
    return Append<_UnitDataTypeStr>();
}

Lengths CurrentLengths()
{
    const VUnit& records = Get();
    return {records.m_baseUnitCount, records.m_systemCount, records.m_dataTypeCount};
}

void CutBackTo(const Lengths& lengths)
{
    CutBack(Get(), lengths);
}

void CopyCut(char* target, std::size_t size, std::string_view text)
{
    const std::size_t kept = std::min(text.size(), size - 1);
    std::memmove(target, text.data(), kept);
    target[kept] = '\0';
}

}  // namespace catalogue

VUnit::~VUnit()
{
    catalogue::CutBack(*this, {0, 0, 0});
    VBU_FREE(m_baseUnits, modules::VUnit, __LINE__);
    VBU_FREE(m_systems, modules::VUnit, __LINE__);
    VBU_FREE(m_dataTypes, modules::VUnit, __LINE__);
}
