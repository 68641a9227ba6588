// Machines that are not at hand, and a machine that cannot be asked.

#include <TuvoUtil/SystemInfo.h>

#include "VSysInfoUtl/ProcessorCounts.h"
#include "support/AllocationControl.h"
#include "support/ReportScope.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using platform::ProcessorRecord;
using platform::ProcessorRelation;
using Records = std::vector<ProcessorRecord>;

void Add(Records& records, int count, ProcessorRelation relation, std::uint64_t mask)
{
    ProcessorRecord record;
    record.relation = relation;
    record.processorMask = mask;
    records.insert(records.end(), static_cast<std::size_t>(count), record);
}

TEST(SystemInfoCounts, AddUpPackagesCoresAndTheirProcessors)
{
    constexpr ProcessorRelation Numa{1}, Cache{2}, Group{4};
    const struct
    {
        const char* machine;
        int packages, cores, coresOfOne;  // cores of two logical processors, and of one
        sysinfo::ProcessorCounts counts;
    } rows[] = {
        {"one socket, hyper-threading", 1, 8, 0, {1, 8, 16}},
        {"two sockets", 2, 0, 12, {2, 12, 12}},
        {"hybrid cores", 1, 8, 16, {1, 24, 32}},
        {"128 threads", 2, 64, 0, {2, 64, 128}},
        {"nothing known", 0, 0, 0, {0, 0, 0}},
    };
    for (const auto& row : rows) {
        Records records;
        Add(records, 3, Cache, 0xFFFF);
        Add(records, row.cores, ProcessorRelation::Core, std::uint64_t{3} << 62);
        Add(records, 1, Numa, ~std::uint64_t{0});
        Add(records, row.coresOfOne, ProcessorRelation::Core, 0x100);
        Add(records, row.packages, ProcessorRelation::Package, ~std::uint64_t{0});
        Add(records, 1, Group, ~std::uint64_t{0});
        const sysinfo::ProcessorCounts counts = sysinfo::CountProcessors(records);
        EXPECT_EQ(counts.packages, row.counts.packages) << row.machine;
        EXPECT_EQ(counts.cores, row.counts.cores) << row.machine;
        EXPECT_EQ(counts.logicalProcessors, row.counts.logicalProcessors) << row.machine;
    }
}

TEST(SystemInfoCounts, AreThoseOfAnEmptyAnswerWithoutMemory)
{
    const ReportScope reports;
    const struct
    {
        int (*count)();
        int ofNothing;
    } rows[] = {{TuvoGetSystemCPUCount, 1}, {TuvoGetSystemPhysicalCores, 0}, {TuvoGetSystemLogicalCores, 0}};
    for (const auto& row : rows) {
        const int known = row.count();
        bool isRefused = false;
        allocation::ForEachFailure([&] {
            const int result = row.count();
            EXPECT_TRUE(result == known || result == row.ofNothing) << result;
            isRefused = isRefused || result == row.ofNothing;
        });
        EXPECT_TRUE(isRefused);
    }
}

}  // namespace
