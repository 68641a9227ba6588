#include "platform/Platform.h"
#include "platform/windows/Native.h"

#include <algorithm>
#include <bit>
#include <cstddef>

namespace {

// The records are those of the system, seen through a type that every system has.
using NativeRecord = SYSTEM_LOGICAL_PROCESSOR_INFORMATION;
static_assert(sizeof(NativeRecord) == sizeof(platform::ProcessorRecord));
static_assert(offsetof(NativeRecord, ProcessorMask) == offsetof(platform::ProcessorRecord, processorMask));
static_assert(offsetof(NativeRecord, Relationship) == offsetof(platform::ProcessorRecord, relation));
static_assert(RelationProcessorCore == static_cast<int>(platform::ProcessorRelation::Core));
static_assert(RelationProcessorPackage == static_cast<int>(platform::ProcessorRelation::Package));

}  // namespace

platform::ProcessorRecord* platform::ReadProcessorRecords(void* (*allocate)(std::size_t size),
                                                          std::size_t& count) noexcept
{
    count = 0;
    DWORD size = 0;
    GetLogicalProcessorInformation(nullptr, &size);
    if (size == 0)
        return nullptr;
    auto* const records = static_cast<ProcessorRecord*>(allocate(size));
    // After a failure, which a processor added meanwhile would cause, the block stands without records.
    if (records != nullptr && GetLogicalProcessorInformation(reinterpret_cast<NativeRecord*>(records), &size))
        count = size / sizeof(NativeRecord);
    return records;
}

unsigned int platform::UsableProcessors() noexcept
{
    DWORD_PTR process = 0;
    DWORD_PTR system = 0;
    GetProcessAffinityMask(GetCurrentProcess(), &process, &system);
    if (process == 0)  // the process runs in several processor groups
        return std::max<unsigned int>(GetActiveProcessorCount(ALL_PROCESSOR_GROUPS), 1);
    return static_cast<unsigned int>(std::popcount(process));
}
