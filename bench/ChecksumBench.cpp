// CRC-32 against zlib, libdeflate and ISA-L: blocks from 8 bytes to 16 MiB, and a stream of doubles one by one.
#include <TuvoUtil/Checksum.h>

#include <benchmark/benchmark.h>
#include <isa-l/crc.h>
#include <libdeflate.h>
#include <zlib.h>

#include <algorithm>
#include <cstdint>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace {

// A CRC-32 with both inversions, from a CRC-32 so far.
using Crc = std::uint32_t (*)(std::uint32_t crc, const unsigned char* bytes, std::size_t size);

std::uint32_t CrcOfZlib(std::uint32_t crc, const unsigned char* bytes, std::size_t size)
{
    return static_cast<std::uint32_t>(crc32_z(crc, bytes, size));
}

std::uint32_t CrcOfLibdeflate(std::uint32_t crc, const unsigned char* bytes, std::size_t size)
{
    return libdeflate_crc32(crc, bytes, size);
}

std::uint32_t CrcOfIsal(std::uint32_t crc, const unsigned char* bytes, std::size_t size)
{
    return crc32_gzip_refl(crc, bytes, size);
}

constexpr std::pair<const char*, Crc> Peers[] = {
    {"zlib", CrcOfZlib}, {"libdeflate", CrcOfLibdeflate}, {"ISA-L", CrcOfIsal}};

std::vector<unsigned char> RandomBytes(std::size_t size)
{
    std::mt19937 random(1);
    std::vector<unsigned char> bytes(size);
    std::generate(bytes.begin(), bytes.end(), [&] { return static_cast<unsigned char>(random()); });
    return bytes;
}

void CompareWithPeers(benchmark::State& state, const VChecksum& ours, const unsigned char* bytes, std::size_t size)
{
    for (const auto& [name, crc] : Peers)
        if (crc(0, bytes, size) != ~ours.GetChecksum())
            state.SkipWithError("not the checksum of a peer");
}

// ---- Blocks --------------------------------------------------------------------------------------------------------

// Each checksum goes on from the one before, as checksums of streams do.
void RunOurBlocks(benchmark::State& state, std::size_t size)
{
    const std::vector<unsigned char> bytes = RandomBytes(size);
    VChecksum checksum;
    checksum.Compute(size, bytes.data());
    CompareWithPeers(state, checksum, bytes.data(), size);
    for (auto _ : state)
        checksum.Compute(size, bytes.data());
    benchmark::DoNotOptimize(checksum.GetChecksum());
    state.SetBytesProcessed(static_cast<std::int64_t>(size) * state.iterations());
}

void RunPeerBlocks(benchmark::State& state, Crc crc, std::size_t size)
{
    const std::vector<unsigned char> bytes = RandomBytes(size);
    std::uint32_t checksum = 0;
    for (auto _ : state)
        checksum = crc(checksum, bytes.data(), size);
    benchmark::DoNotOptimize(checksum);
    state.SetBytesProcessed(static_cast<std::int64_t>(size) * state.iterations());
}

// ---- Values --------------------------------------------------------------------------------------------------------

std::vector<double> RandomValues(std::size_t count)
{
    std::mt19937 random(1);
    std::vector<double> values(count);
    std::generate(values.begin(), values.end(), [&] { return static_cast<double>(random()) / 1e5; });
    return values;
}

void RunOurValues(benchmark::State& state, std::size_t count)
{
    const std::vector<double> values = RandomValues(count);
    VChecksum checksum;
    for (const double value : values)
        checksum.Compute(value);
    CompareWithPeers(state, checksum, reinterpret_cast<const unsigned char*>(values.data()), count * sizeof(double));
    for (auto _ : state)
        for (const double& value : values)
            checksum.Compute(value);
    benchmark::DoNotOptimize(checksum.GetChecksum());
}

void RunPeerValues(benchmark::State& state, Crc crc, std::size_t count)
{
    const std::vector<double> values = RandomValues(count);
    std::uint32_t checksum = 0;
    for (auto _ : state)
        for (const double& value : values)
            checksum = crc(checksum, reinterpret_cast<const unsigned char*>(&value), sizeof value);
    benchmark::DoNotOptimize(checksum);
}

[[maybe_unused]] const bool g_registered = [] {
    for (const auto& [name, size] :
         {std::pair("8 B", std::size_t{8}), std::pair("64 B", std::size_t{64}),
          std::pair("1 KiB", std::size_t{1} << 10), std::pair("64 KiB", std::size_t{1} << 16),
          std::pair("16 MiB", std::size_t{1} << 24)}) {
        const std::string work = std::string("Checksum/") + name + '/';
        benchmark::RegisterBenchmark((work + "ours").c_str(), RunOurBlocks, size);
        for (const auto& [peer, crc] : Peers)
            benchmark::RegisterBenchmark((work + peer).c_str(), RunPeerBlocks, crc, size);
    }
    constexpr std::size_t values = 100'000;
    benchmark::RegisterBenchmark("Checksum/doubles one by one/ours", RunOurValues, values);
    for (const auto& [peer, crc] : Peers)
        benchmark::RegisterBenchmark((std::string("Checksum/doubles one by one/") + peer).c_str(), RunPeerValues, crc,
                                     values);
    for (const std::size_t times : {1, 10, 100})
        benchmark::RegisterBenchmark(("Checksum/longer/" + std::to_string(times) + 'x').c_str(), RunOurBlocks,
                                     times << 16);
    return true;
}();

}  // namespace
