#include "tools/tuvo/Catalogue.h"

#include "platform/Platform.h"
#include "tools/tuvo/Command.h"
#include "tools/tuvo/Console.h"
#include "tools/tuvo/Suggest.h"
#include "tools/tuvo/UnitSystems.h"

#include <TuvoUtil/Units.h>
#include <basutl/BuCharacter.h>
#include <basutl/BuPath.h>

#include <optional>

namespace tool {
namespace {

constexpr wchar_t FileName[] = L"unit.xml";

bool IsDirectory(const std::wstring& path)
{
    platform::FileStatus status;
    return platform::Status(path.c_str(), status) && status.kind == platform::FileKind::Directory;
}

std::wstring InDirectory(BuString directory, const std::wstring& name)
{
    BuPathAddSeparatorW(directory);
    return directory.GetText() + name;
}

// The file that a user means by a path.
std::wstring FileOf(const std::wstring& path)
{
    return IsDirectory(path) ? InDirectory(path.c_str(), FileName) : path;
}

// The places where the catalogue of this program stands: in the build folder beside it, installed in share.
std::vector<std::wstring> UsualPlaces()
{
    static const char anchor = 0;
    const std::wstring module = platform::ModuleFile(&anchor);
    const std::wstring resolved = platform::CanonicalPath(module.c_str());
    BuString folder = (resolved.empty() ? module : resolved).c_str();
    BuPathRemoveFileSpecW(folder);
    std::vector<std::wstring> places = {InDirectory(folder, FileName)};
    BuPathRemoveFileSpecW(folder);
    places.push_back(InDirectory(InDirectory(InDirectory(folder, L"share").c_str(), L"tuvoutil").c_str(), FileName));
    return places;
}

// A file under the name that the library looks for, for as long as the object lives.
class TemporaryCopy
{
public:
    explicit TemporaryCopy(const std::wstring& file)
    {
        const std::wstring start = platform::TemporaryDirectory() + L"tuvo" + std::to_wstring(platform::ProcessId());
        platform::FileStatus status;
        m_folder = start;
        for (int i = 1; platform::Status(m_folder.c_str(), status); ++i)
            m_folder = start + L'_' + std::to_wstring(i);
        if (platform::CreateOneDirectory(m_folder.c_str()) && platform::CopyOneFile(file.c_str(), File().c_str()))
            return;
        platform::RemoveEmptyDirectory(m_folder.c_str());
        throw Failure("cannot copy the unit catalogue to " + platform::Narrow(m_folder));
    }
    ~TemporaryCopy()
    {
        platform::RemoveOneFile(File().c_str());
        platform::RemoveEmptyDirectory(m_folder.c_str());
    }
    TemporaryCopy(const TemporaryCopy&) = delete;
    TemporaryCopy& operator=(const TemporaryCopy&) = delete;

    const std::wstring& Folder() const { return m_folder; }

private:
    std::wstring File() const { return InDirectory(m_folder.c_str(), FileName); }

    std::wstring m_folder;
};

// Makes the library's catalogue from a file. What is loaded through the folder knows the system without units.
void LoadIntoLibrary(const std::wstring& file)
{
    const std::size_t divide = file.find_last_of(L"/\\");
    std::wstring folder = divide == std::wstring::npos ? L"." : file.substr(0, divide);
    std::optional<TemporaryCopy> copy;
    if (file.substr(divide + 1) != FileName)
        folder = copy.emplace(file).Folder();
    VUnitUtlMain(platform::Narrow(folder).c_str());
}

// The first data type with a name, else the first one with an id; null when there is none.
const DataType* FindTypeByText(const CatalogueFile& catalogue, const std::string& text)
{
    for (const DataType& type : catalogue.types)
        if (BuCompareNoCase(type.name.c_str(), text.c_str()) == 0)
            return &type;
    for (const DataType& type : catalogue.types)
        if (std::to_string(type.id) == text)
            return &type;
    return nullptr;
}

// The first system of the catalogue in which a data type has the same unit as in the given one: a system that was made
// for the user has no display units, but the unit of a force is the same whatever the temperatures are in.
int LabellingSystem(const CatalogueFile& catalogue, const DataType& type, int unitSystem)
{
    const FourUnits wanted = UnitsOfSystem(unitSystem);
    for (const UnitSystem& system : catalogue.systems) {
        const FourUnits units = UnitsOfSystem(system.id);
        bool equal = units != FourUnits{};
        for (std::size_t i = 0; i < units.size(); ++i)
            equal = equal && (type.exponents[i] == 0 || units[i] == wanted[i]);
        if (equal)
            return system.id;
    }
    return unitSystem;
}

}  // namespace

void AddCatalogueOption(CLI::App& command, std::string& given)
{
    command.add_option("--catalogue", given, "Unit catalogue to use: a file, or a directory that holds unit.xml")
        ->check(NotEmpty())
        ->type_name("PATH");
}

std::string FindCatalogue(const std::string& given)
{
    if (!given.empty())
        return platform::Narrow(FileOf(platform::Widen(given)));
    if (const std::wstring named = platform::EnvironmentValue(L"TUVO_CATALOGUE").value_or(L""); !named.empty())
        return platform::Narrow(FileOf(named));

    std::string looked;
    for (const std::wstring& place : UsualPlaces()) {
        if (platform::Access(place.c_str(), 0) == 0)
            return platform::Narrow(place);
        looked += (looked.empty() ? "" : " and ") + platform::Narrow(place);
    }
    throw Failure("there is no unit catalogue at " + looked +
                  "; name one with --catalogue or the variable TUVO_CATALOGUE");
}

CatalogueFile LoadCatalogue(const std::string& given)
{
    CatalogueFile catalogue = ReadCatalogueFile(FindCatalogue(given));
    LoadIntoLibrary(platform::Widen(catalogue.path));
    _UnitSystemStr* systems = nullptr;
    if (VUnitUtlGetUnitSystems(&systems) < static_cast<int>(catalogue.systems.size()))
        throw Failure("cannot load the unit catalogue " + catalogue.path);
    return catalogue;
}

const DataType& FindDataType(const CatalogueFile& catalogue, const std::string& text)
{
    if (const DataType* const type = FindTypeByText(catalogue, text)) {
        const DataType* const converted = FindType(catalogue, type->id);
        if (converted == type)
            return *type;
        throw Failure("the catalogue gives the id " + std::to_string(type->id) + " of the data type " + Quoted(text) +
                      " to " + Quoted(converted->name) + " too");
    }

    std::vector<std::string> names;
    for (const DataType& type : catalogue.types)
        names.push_back(type.name);
    throw Failure("there is no data type " + Quoted(text) + DidYouMean(text, names) + " (tuvo units --type lists all)");
}

std::string UnitLabel(const CatalogueFile& catalogue, const DataType& type, int unitSystem)
{
    if (type.multiplier) {
        const BaseUnit* const constant = FindUnit(catalogue, type.constantId);
        return constant != nullptr ? constant->abbreviation : "";
    }
    char text[256];
    const _UnitDataStr quantity = {type.id, LabellingSystem(catalogue, type, unitSystem)};
    VUnitUtlGetUnitString(&quantity, text);
    return text;
}

}  // namespace tool
