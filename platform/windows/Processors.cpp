#include "platform/Guard.h"
#include "platform/Platform.h"
#include "platform/windows/Native.h"

#include <algorithm>
#include <bit>

namespace {

using NativeRecord = SYSTEM_LOGICAL_PROCESSOR_INFORMATION;
static_assert(sizeof(NativeRecord) == sizeof(platform::ProcessorRecord));

// Empty when the system does not tell.
std::vector<NativeRecord> ReadNativeRecords()
{
    DWORD size = 0;
    GetLogicalProcessorInformation(nullptr, &size);
    std::vector<NativeRecord> records(size / sizeof(NativeRecord));
    if (records.empty() || !GetLogicalProcessorInformation(records.data(), &size))
        return {};
    return records;
}

}  // namespace

bool platform::ReadProcessorRecords(std::vector<ProcessorRecord>& records) noexcept
{
    records.clear();
    const bool isRead = Guarded(false, [&] {
        for (const NativeRecord& native : ReadNativeRecords())
            if (native.Relationship == RelationProcessorCore || native.Relationship == RelationProcessorPackage)
                records.push_back(std::bit_cast<ProcessorRecord>(native));
        return !records.empty();
    });
    if (!isRead)
        records.clear();
    return isRead;
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
