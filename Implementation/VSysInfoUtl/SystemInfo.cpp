#include <TuvoUtil/SystemInfo.h>

#include "TuvoMemory/ModuleNames.h"
#include "TuvoMemory/TrackedPtr.h"
#include "VSysInfoUtl/ProcessorCounts.h"

#include <bit>
#include <cstddef>

namespace {

using platform::ProcessorRecord;
using platform::ProcessorRelation;

void* Allocate(std::size_t size)
{
    return VBuMalloc(size, modules::VSysInfoUtl, __LINE__, 0);
}

sysinfo::ProcessorCounts CountsOfThisMachine()
{
    std::size_t count = 0;
    const TrackedPtr<ProcessorRecord> records(modules::VSysInfoUtl, platform::ReadProcessorRecords(Allocate, count));
    return sysinfo::CountProcessors({records.Get(), count});
}

}  // namespace

sysinfo::ProcessorCounts sysinfo::CountProcessors(std::span<const ProcessorRecord> records) noexcept
{
    ProcessorCounts counts;
    for (const ProcessorRecord& record : records) {
        if (record.relation == ProcessorRelation::Package) {
            ++counts.packages;
        } else if (record.relation == ProcessorRelation::Core) {
            ++counts.cores;
            counts.logicalProcessors += std::popcount(record.processorMask);
        }
    }
    return counts;
}

int TuvoGetSystemCPUCount()
{
    return 1 + CountsOfThisMachine().packages;  // Kept: hosts know that the count starts at 1, and one socket gives 2
}

int TuvoGetSystemPhysicalCores()
{
    return CountsOfThisMachine().cores;
}

int TuvoGetSystemLogicalCores()
{
    return CountsOfThisMachine().logicalProcessors;
}
