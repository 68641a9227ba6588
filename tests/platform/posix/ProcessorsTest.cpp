#include "platform/posix/Processors.h"

#include <gtest/gtest.h>

#include <bit>
#include <vector>

namespace {

using platform::ProcessorRecord;
using platform::ProcessorRelation;

std::vector<ProcessorRecord> Synthetic(const char* description)
{
    hwloc_topology_t topology = nullptr;
    EXPECT_EQ(hwloc_topology_init(&topology), 0);
    EXPECT_EQ(hwloc_topology_set_synthetic(topology, description), 0);
    EXPECT_EQ(hwloc_topology_load(topology), 0);
    std::vector<ProcessorRecord> records(platform::CountProcessorRecords(topology));
    platform::StoreProcessorRecords(topology, records.data());
    hwloc_topology_destroy(topology);
    return records;
}

struct Row
{
    const char* description;
    int cores, processorsPerCore, packages, processorsPerPackage;
};

TEST(Processors, RecordsFollowTheTopology)
{
    const Row rows[] = {
        {"package:2 core:4 pu:2", 8, 2, 2, 8},
        {"package:1 core:8 pu:2", 8, 2, 1, 16},
        {"core:3 pu:1", 3, 1, 1, 3},  // no package is known: the machine is one
        {"package:2 pu:5", 10, 1, 2, 5},
        {"pu:1", 1, 1, 1, 1},
        {"package:1 core:64 pu:1", 64, 1, 1, 64},
        {"package:2 core:48 pu:2", 96, 2, 2, 64},  // a mask ends at 64
        {"package:4 l3:2 core:3 pu:4", 24, 4, 4, 24},
    };
    for (const Row& row : rows) {
        int counts[4] = {};
        for (const ProcessorRecord& record : Synthetic(row.description)) {
            const bool isCore = record.relation == ProcessorRelation::Core;
            ++counts[static_cast<int>(record.relation)];
            EXPECT_EQ(std::popcount(record.processorMask), isCore ? row.processorsPerCore : row.processorsPerPackage)
                << row.description;
        }
        EXPECT_EQ(counts[0], row.cores) << row.description;
        EXPECT_EQ(counts[3], row.packages) << row.description;
    }
}

}  // namespace
