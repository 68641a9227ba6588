// The size classes of the block heap and how its region is divided among them, all known when this is compiled.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <numeric>

namespace vxheap {

struct SizeClass
{
    unsigned int blockSize;  // bytes
    unsigned int blocksPerPage;
    unsigned int pages;
};

// In the order of their blocks in the region.
inline constexpr std::array<SizeClass, 8> sizeClasses = {{
    {8, 50000, 6},
    {16, 50000, 2},
    {32, 50000, 6},
    {40, 50000, 2},
    {48, 20000, 2},
    {64, 20000, 2},
    {96, 10000, 1},
    {128, 10000, 1},
}};

inline constexpr std::size_t ClassCount = sizeClasses.size();
inline constexpr std::size_t NoClass = ClassCount;  // of sizes that no class holds
inline constexpr std::size_t LargestBlock = sizeClasses.back().blockSize;

inline constexpr std::size_t PageCount = [] {
    std::size_t count = 0;
    for (const SizeClass& row : sizeClasses)
        count += row.pages;
    return count;
}();

// Sizes differ to the heap only by grains of 8 bytes, of which every block is a whole number.
inline constexpr std::size_t Grain = 8;

constexpr std::size_t GrainsOf(std::size_t size)
{
    return (size + Grain - 1) / Grain;
}

// The first class whose blocks hold a size up to LargestBlock, which is given in grains; no class holds 0.
inline constexpr auto classOfGrains = [] {
    std::array<std::uint8_t, LargestBlock / Grain + 1> classes{NoClass};
    std::uint8_t number = 0;
    for (std::size_t grains = 1; grains < classes.size(); ++grains) {
        number = static_cast<std::uint8_t>(number + (grains * Grain > sizeClasses[number].blockSize));
        classes[grains] = number;
    }
    return classes;
}();
static_assert(std::all_of(sizeClasses.begin(), sizeClasses.end(),
                          [](const SizeClass& row) { return row.blockSize % Grain == 0; }));

constexpr std::size_t PageBytes(const SizeClass& row)
{
    return std::size_t{row.blockSize} * row.blocksPerPage;
}

inline constexpr std::size_t RegionSize = [] {
    std::size_t bytes = 0;
    for (const SizeClass& row : sizeClasses)
        bytes += row.pages * PageBytes(row);
    return bytes;
}();
static_assert(RegionSize == 24'320'000);

// Every page is a whole number of steps, so the step of an address, which costs a multiplication, tells its page.
inline constexpr std::size_t StepBytes = [] {
    std::size_t bytes = 0;
    for (const SizeClass& row : sizeClasses)
        bytes = std::gcd(bytes, PageBytes(row));
    return bytes;
}();

// The number of the page that each step belongs to.
inline constexpr auto pageOfStep = [] {
    std::array<std::uint8_t, RegionSize / StepBytes> pages{};
    std::size_t step = 0;
    std::uint8_t page = 0;
    for (const SizeClass& row : sizeClasses)
        for (unsigned int i = 0; i < row.pages; ++i, ++page)
            for (std::size_t end = step + PageBytes(row) / StepBytes; step < end; ++step)
                pages[step] = page;
    return pages;
}();

// offset / StepBytes for an offset below RegionSize, as a multiplication by a number of less than 32 bits.
constexpr std::size_t StepOf(std::size_t offset)
{
    constexpr unsigned int Shift = 43;
    constexpr std::size_t Reciprocal = (std::size_t{1} << Shift) / StepBytes + 1;
    return offset * Reciprocal >> Shift;
}
static_assert([] {
    for (std::size_t step = 0; step < RegionSize / StepBytes; ++step)
        if (StepOf(step * StepBytes) != step || StepOf((step + 1) * StepBytes - 1) != step)
            return false;
    return true;
}());

}  // namespace vxheap
