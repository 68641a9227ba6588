// Saving integers and doubles, one call each, against fwrite, fwrite without its lock and blocks gathered by hand.
#include <TuvoUtil/WriteStream.h>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace {

// Saves an int and a double of each number from 0 to count - 1.
using Save = void (*)(const std::string& path, int count);

double RealOf(int number)
{
    return number * 0.37;
}

void SaveOurs(const std::string& path, int count)
{
    const std::unique_ptr<IWriteStream> stream(CreateBinaryFileWriter(path.c_str(), 1, nullptr, 0));
    for (int i = 0; i < count; ++i) {
        stream->WriteInt(i);
        stream->WriteDouble(RealOf(i));
    }
}

template <auto Write>
void SaveByCalls(const std::string& path, int count)
{
    std::FILE* const file = std::fopen(path.c_str(), "wb");
    std::setvbuf(file, nullptr, _IOFBF, 1 << 16);
    std::size_t written = 0;
    for (int i = 0; i < count; ++i) {
        const double real = RealOf(i);
        written += Write(&i, sizeof i, 1, file);
        written += Write(&real, sizeof real, 1, file);
    }
    benchmark::DoNotOptimize(written);
    std::fclose(file);
}

void SaveBlocks(const std::string& path, int count)
{
    std::FILE* const file = std::fopen(path.c_str(), "wb");
    std::vector<char> block(1 << 16);
    std::size_t size = 0, written = 0;
    for (int i = 0; i < count; ++i) {
        const double real = RealOf(i);
        if (block.size() - size < sizeof i + sizeof real) {
            written += std::fwrite(block.data(), 1, size, file);
            size = 0;
        }
        std::memcpy(&block[size], &i, sizeof i);
        std::memcpy(&block[size + sizeof i], &real, sizeof real);
        size += sizeof i + sizeof real;
    }
    written += std::fwrite(block.data(), 1, size, file);
    benchmark::DoNotOptimize(written);
    std::fclose(file);
}

std::string SavedBy(Save save, int count)
{
    const std::string path =
        (std::filesystem::temp_directory_path() / ("tuvo-bench-" + std::to_string(std::random_device{}()))).string();
    save(path, count);
    std::ifstream file(path, std::ios::binary);
    std::string bytes{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    std::remove(path.c_str());
    return bytes;
}

// Outputs are compared as files; timed is what it takes to make them, not the disk.
void Run(benchmark::State& state, Save save, int count)
{
    if (SavedBy(save, 100'000) != SavedBy(SaveBlocks, 100'000))
        state.SkipWithError("not what the peer saves");
    for (auto _ : state)
        save("/dev/null", count);
}

void RunChecksum(benchmark::State& state, int count)
{
    for (auto _ : state) {
        const std::unique_ptr<IWriteStreamBasedChecksum> stream(CreateWriteStreamBasedChecksum());
        for (int i = 0; i < count; ++i) {
            stream->WriteInt(i);
            stream->WriteDouble(RealOf(i));
        }
        benchmark::DoNotOptimize(stream->GetChecksum());
    }
}

[[maybe_unused]] const bool g_registered = [] {
    constexpr int count = 5'000'000;
    const struct
    {
        const char *work, *peer;
        Save save;
    } peers[] = {{"one call each", "fwrite_unlocked", SaveByCalls<fwrite_unlocked>},
                 {"calls that lock", "fwrite", SaveByCalls<fwrite>},
                 {"gathered by hand", "blocks", SaveBlocks}};
    for (const auto& [work, peer, save] : peers) {
        const std::string name = std::string("WriteStream/") + work + '/';
        benchmark::RegisterBenchmark((name + "ours").c_str(), Run, SaveOurs, count);
        benchmark::RegisterBenchmark((name + peer).c_str(), Run, save, count);
    }
    for (const int times : {1, 10, 100}) {
        const std::string size = '/' + std::to_string(times) + 'x';
        benchmark::RegisterBenchmark(("WriteStream/longer files" + size).c_str(), Run, SaveOurs, times * 100'000);
        benchmark::RegisterBenchmark(("WriteStream/longer checksums" + size).c_str(), RunChecksum, times * 10'000);
    }
    return true;
}();

}  // namespace
