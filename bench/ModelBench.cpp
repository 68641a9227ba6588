// Decks of finite-element models from disk, against reading their numbers alone.

#include "tools/tuvo/model/ModelFile.h"

#include <basutl/BuCharacter.h>

#include <benchmark/benchmark.h>

#include <array>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace {

// A file that goes with the program.
struct TemporaryDeck
{
    std::filesystem::path path;

    TemporaryDeck(const std::string& name, const std::string& text)
        : path(std::filesystem::temp_directory_path() / name)
    {
        std::ofstream(path, std::ios::binary) << text;
    }
    TemporaryDeck(TemporaryDeck&& other) noexcept : path(std::move(other.path)) { other.path.clear(); }
    ~TemporaryDeck()
    {
        if (!path.empty())
            std::filesystem::remove(path);
    }
};

// A plate of so many hexahedra along x and y and ten along z. A hexahedron takes about 105 bytes with its node.
std::string Plate(int along)
{
    constexpr int Layers = 10;
    const int row = along + 1;
    std::string text = "*NODE, NSET=Nall\n";
    std::array<char, 200> line;
    for (int i = 0; i < row * row * (Layers + 1); ++i) {
        const int size = std::snprintf(line.data(), line.size(), "%d, %.7g, %.7g, %.7g\n", i + 1, i % row * 0.731234,
                                       i / row % row * 0.291571, i / row / row * 1.5);
        text.append(line.data(), static_cast<std::size_t>(size));
    }
    text += "*ELEMENT, TYPE=C3D8, ELSET=Eall\n";
    int id = 0;
    for (int z = 0; z < Layers; ++z)
        for (int y = 0; y < along; ++y)
            for (int x = 0; x < along; ++x) {
                const int a = z * row * row + y * row + x + 1;
                const int b = a + row * row;
                const int size = std::snprintf(line.data(), line.size(), "%d, %d, %d, %d, %d, %d, %d, %d, %d\n", ++id,
                                               a, a + 1, a + 1 + row, a + row, b, b + 1, b + 1 + row, b + row);
                text.append(line.data(), static_cast<std::size_t>(size));
            }
    return text;
}

// ---- Ours and the peer ---------------------------------------------------------------------------------------------

// What both have to agree on: the sum of all coordinates, and of all ids.
struct Sums
{
    double coordinates = 0.0;
    std::int64_t ids = 0;

    bool operator==(const Sums&) const = default;
};

Sums SumsOf(const tool::Model& model)
{
    Sums sums;
    for (std::size_t i = 0; i < model.nodes.Count(); ++i) {
        sums.ids += model.nodes.ids[i];
        for (const double coordinate : model.nodes.coordinates[i])
            sums.coordinates += coordinate;
    }
    const tool::ElementBlock& block = model.blocks.front();
    for (const std::int32_t id : block.ids)
        sums.ids += id;
    for (const std::int32_t node : block.nodes)
        sums.ids += model.nodes.ids[static_cast<std::size_t>(node)];
    return sums;
}

// The numbers of a deck, at places that are known.
class FromChars
{
public:
    explicit FromChars(const std::string& text) : m_text(text)
    {
        bool isNode = false;
        for (std::size_t at = 0; at < text.size();) {
            const std::size_t end = text.find('\n', at);
            if (text[at] == '*')
                isNode = text[at + 1] == 'N';
            else
                AddLine(at, end, isNode);
            at = end + 1;
        }
    }

    Sums operator()() const
    {
        Sums sums;
        const char* const last = m_text.data() + m_text.size();
        for (const char* const number : m_ids) {
            int id = 0;
            std::from_chars(number, last, id);
            sums.ids += id;
        }
        for (const char* const number : m_coordinates) {
            double coordinate = 0.0;
            std::from_chars(number, last, coordinate);
            sums.coordinates += coordinate;
        }
        return sums;
    }

private:
    void AddLine(std::size_t at, std::size_t end, bool isNode)
    {
        for (bool isFirst = true; at < end; isFirst = false) {
            at = m_text.find_first_not_of(", ", at);
            (isNode && !isFirst ? m_coordinates : m_ids).push_back(m_text.data() + at);
            at = std::min(m_text.find(',', at), end);
        }
    }

    const std::string& m_text;
    std::vector<const char*> m_ids;
    std::vector<const char*> m_coordinates;
};

void Read(benchmark::State& state, const std::string& path)
{
    for (auto iteration : state)
        benchmark::DoNotOptimize(tool::ReadModel(path).ElementCount());
}

void Register()
{
    static const std::string text = Plate(309);  // 100 MB
    static const TemporaryDeck deck("tuvo_bench.inp", text);
    static const FromChars numbers(text);
    if (!(SumsOf(tool::ReadModel(deck.path.string())) == numbers()))
        std::abort();
    benchmark::RegisterBenchmark("Model/100 MB/ours", Read, deck.path.string())->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("Model/100 MB/from_chars", [](benchmark::State& state) {
        for (auto iteration : state)
            benchmark::DoNotOptimize(numbers());
    })->Unit(benchmark::kMillisecond);

    static std::vector<TemporaryDeck> decks;
    for (const auto& [times, along] : {std::pair(1, 34), std::pair(10, 102), std::pair(100, 309)}) {  // MB
        const std::string size = std::to_string(times) + 'x';
        decks.emplace_back("tuvo_bench_" + size + ".inp", Plate(along));
        benchmark::RegisterBenchmark(("Model/reading/" + size).c_str(), Read, decks.back().path.string())
            ->Unit(benchmark::kMillisecond);
    }
}

}  // namespace

// Not before main: the readers have tables of their own, which have to stand.
int main(int argumentCount, char** arguments)
{
    Register();
    benchmark::Initialize(&argumentCount, arguments);
    benchmark::RunSpecifiedBenchmarks();
}
