// Loading a unit file, against parsing and walking it, and lookups in catalogues of different length. A process has one
// catalogue, which only grows: this program links the archive, and gives the catalogue back between loads.

#include <TuvoUtil/Units.h>

#include "VUnit/Catalogue.h"

#include <benchmark/benchmark.h>
#include <pugixml.hpp>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace {

// The file that is shipped, and one of 53 KB whose types have few display units. Each display unit, seven characters of
// the file, becomes a record of 260 bytes: the shipped file makes 0.8 MB of them.
constexpr char ShippedFile[] = TUVO_SOURCE_DIR "/data/unit.xml";

// A file that is removed at the end.
class TemporaryFile
{
public:
    explicit TemporaryFile(const char* name) : m_path(std::filesystem::temp_directory_path() / name), m_stream(m_path)
    {}
    ~TemporaryFile() { std::filesystem::remove(m_path); }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    std::ostream& Stream() { return m_stream; }
    std::string Path()
    {
        m_stream.close();
        return m_path.string();
    }

private:
    std::filesystem::path m_path;
    std::ofstream m_stream;
};

void WriteUsualFile(std::ostream& file)
{
    file << "<UNITS>\n";
    int id = 0;
    for (const char* const type : {"LENGTH", "MASS", "TIME", "HEAT", "CONSTANT"}) {
        file << "  <BASE_TYPE TYPE=\"" << type << "\">\n";
        for (int i = 0; i < 15; ++i, ++id)
            file << "    <BASE_UNIT ID=\"" << id << "\" NAME=\"Unit " << id << "\" ABBR=\"u" << id
                 << "\" CONV_VAL=\"39.370078740157480\"/>\n";
        file << "  </BASE_TYPE>\n";
    }
    for (int i = 0; i < 20; ++i)
        file << "  <UNIT_SYSTEM ID=\"" << i << "\" NAME=\"System " << i << "\" DISPLAY_NAME=\"System " << i
             << "\" LENGTH_UNIT=\"" << i % 15 << "\" MASS_UNIT=\"16\" TIME_UNIT=\"31\" HEAT_UNIT=\"46\"/>\n";
    for (int i = 0; i < 310; ++i)
        file << "  <DATA_TYPE ID=\"" << i << "\" NAME=\"Quantity of kind " << i << "\" NUM_L=\"" << i % 5 - 2
             << "\" NUM_M=\"1\" NUM_T=\"-2\" NUM_H=\"0\" ZAMVIEW_NAME=\"KIND" << i
             << (i % 2 == 0 ? "\"/>\n" : "\" DISPLAY_UNIT_ID_NAME=\"0:N/m^2;1:psi;2:Pa\"/>\n");
    file << "</UNITS>\n";
}

// Looks at all elements and attributes, names and values.
class Walk
{
public:
    void Visit(const pugi::xml_node& parent)
    {
        for (const pugi::xml_node node : parent.children()) {
            Take(node.name());
            for (const pugi::xml_attribute attribute : node.attributes()) {
                Take(attribute.name());
                Take(attribute.value());
            }
            Visit(node);
        }
    }

private:
    void Take(const char* text) { m_length += std::char_traits<char>::length(text); }

    std::size_t m_length = 0;
};

// Loads a file and has every index made.
bool Load(const char* file)
{
    if (VUnitUtlFillObject(file, nullptr) != 1)
        return false;
    benchmark::DoNotOptimize(VUnitUtlGetUnitSystemDisplayName("m", "kg", "sec", "kelvin", nullptr));
    benchmark::DoNotOptimize(VUnitUtlGetUnitSystemStrFromSystemId(1, nullptr, nullptr, nullptr));
    benchmark::DoNotOptimize(VUnitUtlGetBaseTypeFromId(1));
    benchmark::DoNotOptimize(VUnitUtlGetDataTypeId("Length"));
    benchmark::DoNotOptimize(VUnitUtlGetDataTypeNameFromId(1));
    benchmark::DoNotOptimize(VUnitUtlGetDataTypeName(1, 0, 0, 0, 0));
    return true;
}

bool HoldsWhatThePeerSees(const char* file)
{
    pugi::xml_document document;
    document.load_file(file);
    const pugi::xml_node root = document.document_element();
    const auto count = [](const pugi::xml_node& node, const char* name) {
        const auto children = node.children(name);
        return static_cast<int>(std::distance(children.begin(), children.end()));
    };
    int units = 0;
    for (const pugi::xml_node type : root.children("BASE_TYPE"))
        units += count(type, "BASE_UNIT");
    const catalogue::Lengths lengths = catalogue::CurrentLengths();
    return lengths.units == units && lengths.systems == count(root, "UNIT_SYSTEM") &&
           lengths.dataTypes == count(root, "DATA_TYPE") && units > 0;
}

void LoadOurs(benchmark::State& state, const char* file)
{
    for (auto _ : state) {
        state.PauseTiming();
        catalogue::ResetForTests();
        state.ResumeTiming();
        if (!Load(file))
            state.SkipWithError("the file was refused");
    }
    if (!HoldsWhatThePeerSees(file))
        state.SkipWithError("the records differ");
}

void LoadPugixml(benchmark::State& state, const char* file)
{
    for (auto _ : state) {
        pugi::xml_document document;
        if (!document.load_file(file))
            state.SkipWithError("the file was refused");
        Walk walk;
        walk.Visit(document);
        benchmark::DoNotOptimize(walk);
    }
}

template <void (*LoadFile)(benchmark::State&, const char*)>
void LoadUsual(benchmark::State& state)
{
    TemporaryFile file("unitbench.xml");
    WriteUsualFile(file.Stream());
    LoadFile(state, file.Path().c_str());
}

template <void (*LoadFile)(benchmark::State&, const char*)>
void LoadShipped(benchmark::State& state)
{
    LoadFile(state, ShippedFile);
}

// A file of `count` units, systems and data types, each with its own keys.
void WriteLargeFile(std::ostream& file, int count)
{
    file << "<U><BASE_TYPE TYPE='LENGTH'>";
    for (int i = 0; i < count; ++i)
        file << "<BASE_UNIT NAME='Unit " << i << "' ABBR='u" << i << "' ID='" << i << "' CONV_VAL='2.5'/>";
    file << "</BASE_TYPE>";
    for (int i = 0; i < count; ++i)
        file << "<UNIT_SYSTEM NAME='s' ID='" << i << "' LENGTH_UNIT='" << i
             << "' MASS_UNIT='1' TIME_UNIT='2' HEAT_UNIT='3'/>";
    for (int i = 0; i < count; ++i)
        file << "<DATA_TYPE NAME='Type " << i << "' ID='" << i << "' NUM_L='" << i << "' ZAMVIEW_NAME='v" << i << "'/>";
    file << "</U>";
}

// As many lookups by each key as there are records, always of the last twenty: what they cost must not depend on what
// stands before them, and how far apart records lie in memory is not the matter here.
void Lookups(benchmark::State& state)
{
    constexpr int last = 20;
    const auto count = static_cast<int>(state.range(0));
    TemporaryFile file("unitbench.xml");
    WriteLargeFile(file.Stream(), count);
    catalogue::ResetForTests();
    if (!Load(file.Path().c_str()))
        state.SkipWithError("the file was refused");
    std::vector<std::string> abbreviations, names;
    for (int i = count - last; i < count; ++i) {
        abbreviations.push_back("U" + std::to_string(i));
        names.push_back("TYPE " + std::to_string(i));
    }
    for (auto _ : state)
        for (int n = 0; n < count; ++n) {
            const int id = count - last + n % last;
            const auto text = static_cast<std::size_t>(n % last);
            if (VUnitUtlGetUnitSystemId(abbreviations[text].c_str(), "u1", "u2", "u3") != id ||
                VUnitUtlGetDataTypeId(names[text].c_str()) != id || VUnitUtlGetBaseTypeFromId(id) != 0 ||
                *VUnitUtlGetDataTypeNameFromId(id) != 'T' || *VUnitUtlGetDataTypeName(id, 0, 0, 0, 0) != 'T')
                state.SkipWithError("a record was not found");
        }
}

void LoadLarge(benchmark::State& state)
{
    TemporaryFile file("unitbench.xml");
    WriteLargeFile(file.Stream(), static_cast<int>(state.range(0)));
    LoadOurs(state, file.Path().c_str());
}

BENCHMARK(LoadUsual<LoadOurs>)->Name("UnitCatalogue/load/ours")->Unit(benchmark::kMicrosecond);
BENCHMARK(LoadUsual<LoadPugixml>)->Name("UnitCatalogue/load/pugixml")->Unit(benchmark::kMicrosecond);
BENCHMARK(LoadShipped<LoadOurs>)->Name("UnitCatalogue/loadShipped/ours")->Unit(benchmark::kMicrosecond);
BENCHMARK(LoadShipped<LoadPugixml>)->Name("UnitCatalogue/loadShipped/pugixml")->Unit(benchmark::kMicrosecond);
BENCHMARK(LoadLarge)->Name("UnitCatalogue/loadLarge/1x")->Arg(100)->Unit(benchmark::kMicrosecond);
BENCHMARK(LoadLarge)->Name("UnitCatalogue/loadLarge/100x")->Arg(10'000)->Unit(benchmark::kMicrosecond);
BENCHMARK(Lookups)->Name("UnitCatalogue/lookups/1x")->Arg(100)->Unit(benchmark::kMicrosecond);
BENCHMARK(Lookups)->Name("UnitCatalogue/lookups/10x")->Arg(1'000)->Unit(benchmark::kMicrosecond);
BENCHMARK(Lookups)->Name("UnitCatalogue/lookups/100x")->Arg(10'000)->Unit(benchmark::kMicrosecond);

}  // namespace
