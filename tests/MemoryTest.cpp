#include <TuvoUtil/Memory.h>

#include "platform/Platform.h"
#include "support/ReportScope.h"

#include <basutl/BuLocalize.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstring>
#include <cwchar>
#include <functional>
#include <optional>
#include <random>
#include <string>
#include <vector>

namespace {

using Lines = std::vector<std::string>;

constexpr char File[] = "MemoryTest";

void* Allocate(std::size_t size)
{
    return VBuMalloc(size, File, __LINE__, 0);
}

// ---- Blocks --------------------------------------------------------------------------------------------------------

TEST(Blocks, KeepTheirContentWhenResized)
{
    std::string expected;
    void* block = nullptr;
    for (const std::size_t size : {10u, 100u, 5000u, 129u, 128u, 33u, 40u, 1u}) {
        block = VBuRealloc(block, size, File, __LINE__);
        EXPECT_EQ(std::memcmp(block, expected.data(), std::min(size, expected.size())), 0) << size;
        expected.assign(size, static_cast<char>('a' + size % 26));
        std::memcpy(block, expected.data(), size);
    }
    VBuFree(block, File, __LINE__);
}

TEST(Blocks, AreFreedWithTheirVariable)
{
    EXPECT_EQ(__VxFreeLoopCount__, 0);
    void* blocks[] = {nullptr, Allocate(1), Allocate(1)};
    for (int left = 3; left > 0;)
        VBU_FREE(blocks[--left], File, __LINE__);
    EXPECT_EQ(std::count(blocks, blocks + 3, nullptr), 3);
}

TEST(Blocks, AreZeroedAndCopied)
{
    auto* zeroed = static_cast<unsigned char*>(VBuCalloc(7, 9, File, __LINE__));
    EXPECT_EQ(std::count(zeroed, zeroed + 63, 0), 63);
    VBU_FREE(zeroed, File, __LINE__);
    for (const std::string text : {"", "bolt"}) {
        char* copy = VBuStrDup(text.c_str(), File, __LINE__);
        EXPECT_EQ(copy, text);
        VBU_FREE(copy, File, __LINE__);
    }
    EXPECT_EQ(VBuStrDup(nullptr, File, __LINE__), nullptr);
}

TEST(Blocks, OfNoBytesAreRefused)
{
    ReportScope reports;
    EXPECT_EQ(Allocate(0), nullptr);
    EXPECT_EQ(VBuCalloc(0, 8, File, __LINE__), nullptr);
    EXPECT_EQ(VBuRealloc(nullptr, 0, File, __LINE__), nullptr);
    EXPECT_EQ(reports.TakePosted(), Lines(3, "2:Memory allocation Error <VxMalloc>: 0 Bytes\n"));
    EXPECT_EQ(VBuRealloc(Allocate(8), 0, File, __LINE__), nullptr);
    EXPECT_EQ(reports.TakePosted(),
              (Lines{"2:Memory allocation Error <VxRealloc>: 0 Bytes\n", "2:VxRealloc: Memory allocation error"}));
}

TEST(Blocks, ThatCannotBeHadAreReported)
{
    ReportScope reports;
    BuSetTranslator([](const wchar_t* text, int) {
        return std::wcscmp(text, L"Memory allocation Error <VxMalloc>: Null returned\n") == 0 ? L"Kein Speicher"
                                                                                              : nullptr;
    });
    const auto expectReport = [&](void* block) {
        EXPECT_EQ(block, nullptr);
        EXPECT_EQ(reports.TakeErrors(),
                  "Memory allocation Error <VxMalloc>: Null returned\nVxMalloc : Memory allocation error\n");
        EXPECT_EQ(reports.TakePosted(), (Lines{"2:Kein Speicher", "2:VxMalloc : Memory allocation error"}));
    };
    for (const std::size_t size : {SIZE_MAX, SIZE_MAX - 15, std::size_t{PTRDIFF_MAX}}) {
        expectReport(Allocate(size));
        expectReport(VBuCalloc(size / 2, 3, File, __LINE__));
    }
    BuSetTranslator(nullptr);

    char* text = VBuStrDup("kept", File, __LINE__);
    EXPECT_EQ(VBuRealloc(text, SIZE_MAX, File, __LINE__), nullptr);
    EXPECT_EQ(reports.TakePosted(), Lines{"2:VxRealloc: Memory allocation error"});
    EXPECT_STREQ(text, "kept");
    VBU_FREE(text, File, __LINE__);
}

// ---- Growing arrays ------------------------------------------------------------------------------------------------

// The rule in words: up to the next number of one digit and zeros.
int CapacityByDigits(int count)
{
    int unit = 1;
    for (std::size_t digits = std::to_string(count).size(); digits > 1; --digits)
        unit *= 10;
    return (count + unit - 1) / unit * unit;
}

TEST(GrowingArrays, AreReallocatedWhenTheCapacityChanges)
{
    for (int newCount = 1; newCount <= 12345; ++newCount) {
        void** array = nullptr;
        int count = 0;
        ASSERT_EQ(UtlBlockReallocArray(&count, &array, 2, newCount, 0), 2 * CapacityByDigits(newCount)) << newCount;
        ASSERT_EQ(count, 0);
        VBU_FREE(array, File, __LINE__);
    }
    const struct
    {
        int count, newCount, initialCount, elements, countAfter;
    } rows[] = {
        {37, 39, 0, 0, 39},    {37, 45, 0, 50, 37}, {40, 41, 0, 50, 40},     {45, 37, 0, 40, 45},
        {5, 200, 250, 0, 200}, {200, 5, 250, 0, 5}, {49, 250, 250, 300, 49}, {100, 301, 250, 400, 100},
        {7, 0, 0, -1, 7},      {7, -3, 0, -1, 7},   {0, 99, 100, 0, 99},
    };
    for (const auto& row : rows) {
        int count = row.count;
        auto** array = count == 0 ? nullptr : static_cast<void**>(Allocate(8));
        EXPECT_EQ(UtlBlockReallocArray(&count, &array, 1, row.newCount, row.initialCount), row.elements) << &row - rows;
        EXPECT_EQ(count, row.countAfter) << &row - rows;
        EXPECT_EQ(array == nullptr, row.count == 0) << &row - rows;  // callers make the first block themselves
        VBU_FREE(array, File, __LINE__);
    }
}

TEST(GrowingArrays, MakeRoomForAnAppend)
{
    const struct
    {
        int count, addCount, initialCount, grownElements;
    } rows[] = {
        {0, 1, 250, 300},   {0, 251, 250, 300}, {0, 301, 250, 400}, {250, 1, 250, 0},
        {300, 1, 250, 100}, {99, 1, 250, 0},    {37, 1, 0, 0},      {37, 3, 0, 0},
        {37, 4, 0, 13},     {40, 1, 0, 10},     {7, 1, 0, 1},       {0, 37, 0, 40},
        {0, 0, 0, 0},       {37, -1, 0, 0},     {-1, 1, 0, 0},      {40, 210, 250, 0},
    };
    for (const auto& row : rows) {
        int count = row.count;
        auto** array = row.count == 0 ? nullptr : static_cast<void**>(Allocate(8));
        EXPECT_EQ(VBuBlockAllocAndAppend(&count, &array, 1, row.addCount, nullptr, row.initialCount, File, __LINE__),
                  row.grownElements)
            << &row - rows;
        EXPECT_EQ(count, row.count) << &row - rows;  // nothing was copied
        VBU_FREE(array, File, __LINE__);
    }
}

TEST(GrowingArrays, HoldWhatWasAppended)
{
    std::mt19937 random(12);
    for (const int initialCount : {0, 1, 15, 250}) {
        std::vector<std::uintptr_t> expected;
        void** array = nullptr;
        void* exact = nullptr;
        int count = 0;
        int exactCount = 0;
        while (expected.size() < 3000) {
            std::vector<std::uintptr_t> added(1 + random() % (expected.size() % 7 == 0 ? 90 : 3));
            std::generate(added.begin(), added.end(), std::ref(random));
            const int addCount = static_cast<int>(added.size());
            if (count > 0) {  // room only
                ASSERT_EQ(VBuAllocAndCopy(exactCount, exact, 8, addCount, nullptr, File, __LINE__), 0);
            }
            ASSERT_EQ(VBuAllocAndCopy(exactCount, exact, 8, addCount, added.data(), File, __LINE__), 0);
            ASSERT_EQ(VBuBlockAllocAndAppend(&count, &array, 8, addCount, reinterpret_cast<void**>(added.data()),
                                             initialCount, File, __LINE__),
                      addCount * 8);
            expected.insert(expected.end(), added.begin(), added.end());
            ASSERT_EQ(count, static_cast<int>(expected.size()));
            ASSERT_EQ(exactCount, count);
        }
        EXPECT_EQ(std::memcmp(array, expected.data(), expected.size() * 8), 0) << initialCount;
        EXPECT_EQ(std::memcmp(exact, expected.data(), expected.size() * 8), 0);
        VBU_FREE(array, File, __LINE__);
        VBU_FREE(exact, File, __LINE__);
    }
}

TEST(GrowingArrays, ThatDoNotFitBecomeNull)
{
    ReportScope reports;
    char source[8] = {};
    const struct
    {
        int count, addCount;
        std::size_t elementSize;
    } rows[] = {{0, 3, SIZE_MAX / 2}, {2, 3, SIZE_MAX / 2}, {INT_MAX, 1, 1}, {INT_MAX, INT_MAX, 8}};
    for (const auto& row : rows) {
        void* const before = row.count == 0 ? nullptr : Allocate(8);
        void* array = before;
        auto** blockArray = static_cast<void**>(before);
        int count = row.count;
        EXPECT_EQ(VBuAllocAndCopy(count, array, row.elementSize, row.addCount, source, File, __LINE__), 1);
        VBuBlockAllocAndAppend(&count, &blockArray, row.elementSize, row.addCount, nullptr, 0, File, __LINE__);
        EXPECT_TRUE(array == nullptr && blockArray == nullptr && count == row.count) << &row - rows;
        VBuFree(before, File, __LINE__);
    }
    int count = 0;
    void** array = nullptr;
    EXPECT_EQ(UtlBlockReallocArray(&count, &array, SIZE_MAX / 1000, INT_MAX, 0), INT_MAX);
    EXPECT_EQ(array, nullptr);
    void* none = nullptr;
    for (const int addCount : {0, -1})
        EXPECT_EQ(VBuAllocAndCopy(count, none, 1, addCount, source, File, __LINE__), -1);
}

// ---- Memory mode ---------------------------------------------------------------------------------------------------

TEST(MemoryMode, IsSetAndWarnsOfUnstableChecking)
{
    ReportScope reports;
    const std::string warning =
        "1:Warning: Env variable MOVRA_MEM_DEBUG is not set! Good to set this variable and run for stable leak "
        "checking. If you want to do that, please keep the following 2 lines in the script which runs Quenda then "
        "run\n      set DISABLE_VX_HEAP=1\n      set MOVRA_MEM_DEBUG=1\n";
    const struct
    {
        int before, mode, result, after;
        bool warns;
    } rows[] = {
        {2, 0, 2, 0, false}, {0, 1, 0, 1, false}, {1, 3, 1, 3, true},   {3, 4, 3, 4, false}, {4, 0, 1, 4, false},
        {4, 2, 4, 2, true},  {2, 7, 2, 2, false}, {2, -3, 2, 0, false}, {0, 2, 0, 2, true},
    };
    for (const bool isSet : {false, true}) {
        platform::SetEnvironmentValue(L"MOVRA_MEM_DEBUG", isSet ? std::optional<std::wstring>(L"0") : std::nullopt);
        for (const auto& row : rows) {
            ASSERT_EQ(VMemoryGetMode(), row.before) << &row - rows;
            EXPECT_EQ(VMemorySetMode(row.mode, 0), row.result) << &row - rows;
            EXPECT_EQ(VMemoryGetMode(), row.after) << &row - rows;
            EXPECT_EQ(reports.TakePosted(), Lines(row.warns && !isSet ? 1 : 0, warning)) << &row - rows;
        }
    }
    platform::SetEnvironmentValue(L"MOVRA_MEM_DEBUG", std::nullopt);
}

TEST(Checking, IsOffAtFirst)
{
    ReportScope reports;
    char memory[32] = {0x39, 0x30};  // what a header begins with
    void* block = memory + 16;
    std::size_t size = 5;
    EXPECT_EQ(MovraIsMemCheckActive(), 0);
    VBuAddPointer(block, 16, File, __LINE__, 1);
    VBuDeletePointer(block, File, __LINE__);
    EXPECT_EQ(MovraMemChkGetActualPtr(&block, &size), 1);
    EXPECT_EQ(MovraMemChkGetAllocInfo(block, &size), 1);
    EXPECT_EQ(MovraMemChkGetClientPtr(&block), 0);
    EXPECT_EQ(MovraMemChkGetInitialCount(block), -1);
    EXPECT_EQ(MovraMemChkSetInitialCount(block, 3), 1);
    EXPECT_TRUE(block == memory + 16 && size == 5);
    for (const std::size_t asked : {std::size_t{100}, SIZE_MAX - 16, SIZE_MAX - 15}) {
        MovraMemChkGetActualSize(asked, &size);  // asks for the mode alone
        EXPECT_EQ(size, asked < SIZE_MAX - 16 ? asked + 16 : SIZE_MAX);
    }
    EXPECT_EQ(reports.TakeErrors(), "");
    VBuDeletePointer(nullptr, File, __LINE__);
    EXPECT_EQ(reports.TakePosted(), Lines{"2:Memory error : Free null pointer"});
    EXPECT_EQ(reports.TakeErrors(), "Memory error : Free null pointer\n");
}

TEST(CallStackProvider, CapturesAndResolves)
{
    static char* captured[1];
    static char* resolved[1];
    char** frames = nullptr;
    EXPECT_EQ(VMemoryGetCallStack(&frames), 0);
    EXPECT_EQ(VMemoryResolveCallStack(5, &frames), 5);
    EXPECT_EQ(VMemSetGetFuncInfoPtr([](int* depth, char*** stack) {
                  const bool captures = *depth == -1;
                  EXPECT_TRUE(captures || (*depth == 3 && *stack == captured));
                  *depth = captures ? 3 : 2;
                  *stack = captures ? captured : resolved;
                  return 99;
              }),
              0);
    EXPECT_EQ(VMemoryGetCallStack(&frames), 3);
    EXPECT_EQ(frames, captured);
    EXPECT_EQ(VMemoryResolveCallStack(0, &frames), 0);
    EXPECT_EQ(VMemoryResolveCallStack(3, &frames), 2);
    EXPECT_EQ(frames, resolved);
    VMemSetGetFuncInfoPtr(nullptr);
}

}  // namespace
