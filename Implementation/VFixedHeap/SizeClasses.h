// The size classes of the block heap and how its region is divided among them, all known when this is compiled.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

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

// The first class whose blocks hold `size` bytes, for 0 to LargestBlock; no class holds 0.
inline constexpr auto classOfSize = [] {
    std::array<std::uint8_t, LargestBlock + 1> classes{NoClass};
    std::uint8_t number = 0;
    for (std::size_t size = 1; size <= LargestBlock; ++size) {
        number = static_cast<std::uint8_t>(number + (size > sizeClasses[number].blockSize));
        classes[size] = number;
    }
    return classes;
}();

// The offset in the region at which each page ends.
inline constexpr auto pageEnds = [] {
    std::array<std::uint32_t, PageCount> ends{};
    std::uint32_t end = 0;
    std::size_t page = 0;
    for (const SizeClass& row : sizeClasses)
        for (unsigned int i = 0; i < row.pages; ++i)
            ends[page++] = end += row.blockSize * row.blocksPerPage;
    return ends;
}();

inline constexpr std::size_t RegionSize = pageEnds.back();
static_assert(RegionSize == 24'320'000);

// The page of an offset is that of the start of its step, or the next one: no page is shorter than a step.
inline constexpr std::size_t StepBytes = 1U << 18;

inline constexpr auto pageOfStep = [] {
    std::array<std::uint8_t, RegionSize / StepBytes + 1> pages{};
    std::uint8_t page = 0;
    for (std::size_t step = 0; step < pages.size(); ++step) {
        while (step * StepBytes >= pageEnds[page])
            ++page;
        pages[step] = page;
    }
    return pages;
}();

static_assert([] {
    for (const SizeClass& row : sizeClasses)
        if (std::size_t{row.blockSize} * row.blocksPerPage < StepBytes)
            return false;
    return true;
}());

// The number of the page that holds an offset below RegionSize.
constexpr std::size_t PageOfOffset(std::size_t offset)
{
    const std::size_t page = pageOfStep[offset / StepBytes];
    return page + (offset >= pageEnds[page]);
}

}  // namespace vxheap
