// Loading a unit file, against parsing and walking it, and lookups in catalogues of different length. A process has one
// catalogue, which only grows: this program links the archive, and gives the catalogue back between loads.

#include <TuvoUtil/FixedHeap.h>
#include <TuvoUtil/Units.h>

#include "VUnit/Catalogue.h"

#include <benchmark/benchmark.h>
#include <pugixml.hpp>

#include <malloc.h>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace {

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

// The shipped file without its last data types, so that 53 KB remain. Each display unit, some fifteen characters of it,
// becomes a record of 260 bytes: about half a megabyte.
void WriteShortFile(std::ostream& file)
{
    std::stringstream shipped;
    shipped << std::ifstream(TUVO_SOURCE_DIR "/data/unit.xml").rdbuf();
    const std::string text = shipped.str();
    file << text.substr(0, text.rfind("/>", 53 * 1024) + 2) << "\n</UNITS>\n";
}

// Reads the names and values of all elements and attributes.
std::size_t Walk(const pugi::xml_node& parent)
{
    std::size_t length = 0;
    for (pugi::xml_node node = parent.first_child(); node; node = node.next_sibling()) {
        length += std::strlen(node.name());
        for (pugi::xml_attribute attribute = node.first_attribute(); attribute; attribute = attribute.next_attribute())
            length += std::strlen(attribute.name()) + std::strlen(attribute.value());
        length += Walk(node);
    }
    return length;
}

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

// Timed by hand: what the benchmark library takes to stop its clocks would count.
void LoadOurs(benchmark::State& state, const char* file)
{
    for (auto _ : state) {
        catalogue::ResetForTests();
        const auto start = std::chrono::steady_clock::now();
        if (!Load(file))
            state.SkipWithError("the file was refused");
        state.SetIterationTime(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
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
        benchmark::DoNotOptimize(Walk(document));
    }
}

template <void (*LoadFile)(benchmark::State&, const char*)>
void LoadShort(benchmark::State& state)
{
    TemporaryFile file("unitbench.xml");
    WriteShortFile(file.Stream());
    LoadFile(state, file.Path().c_str());
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

BENCHMARK(LoadShort<LoadOurs>)->Name("UnitCatalogue/load/ours")->UseManualTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(LoadShort<LoadPugixml>)->Name("UnitCatalogue/load/pugixml")->Unit(benchmark::kMicrosecond);
BENCHMARK(LoadLarge)->Name("UnitCatalogue/loadLarge/1x")->Arg(100)->UseManualTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(LoadLarge)->Name("UnitCatalogue/loadLarge/100x")->UseManualTime()->Arg(10'000)->Unit(benchmark::kMicrosecond);
BENCHMARK(Lookups)->Name("UnitCatalogue/lookups/1x")->Arg(100)->Unit(benchmark::kMicrosecond);
BENCHMARK(Lookups)->Name("UnitCatalogue/lookups/10x")->Arg(1'000)->Unit(benchmark::kMicrosecond);
BENCHMARK(Lookups)->Name("UnitCatalogue/lookups/100x")->Arg(10'000)->Unit(benchmark::kMicrosecond);

}  // namespace

int main(int argumentCount, char** arguments)
{
    mallopt(M_TRIM_THRESHOLD, 1 << 30);  // what the process heap does with freed memory is not measured here
    mallopt(M_MMAP_THRESHOLD, 1 << 30);
    InitVxHeap();  // as applications do
    benchmark::Initialize(&argumentCount, arguments);
    if (benchmark::ReportUnrecognizedArguments(argumentCount, arguments))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
}
