#include "platform/posix/Processors.h"

#include "platform/Guard.h"

#include <sched.h>

#include <algorithm>
#include <memory>

namespace {

using platform::ProcessorRecord;
using platform::ProcessorRelation;

struct TopologyDestroyer
{
    void operator()(hwloc_topology_t topology) const { hwloc_topology_destroy(topology); }
};
using Topology = std::unique_ptr<hwloc_topology, TopologyDestroyer>;

// A mask of that many bits.
std::uint64_t MaskOf(int count)
{
    return count <= 0 ? 0 : ~std::uint64_t{0} >> (64 - std::min(count, 64));
}

void AppendRecords(hwloc_topology_t topology, hwloc_obj_type_t type, ProcessorRelation relation,
                   std::vector<ProcessorRecord>& records)
{
    for (hwloc_obj_t object = nullptr; (object = hwloc_get_next_obj_by_type(topology, type, object)) != nullptr;) {
        ProcessorRecord record;
        record.processorMask = MaskOf(hwloc_bitmap_weight(object->cpuset));
        record.relation = relation;
        records.push_back(record);
    }
}

bool Has(hwloc_topology_t topology, hwloc_obj_type_t type)
{
    return hwloc_get_nbobjs_by_type(topology, type) > 0;
}

// Only what the records need is looked for: caches and devices would take most of the time.
Topology LoadTopology()
{
    hwloc_topology_t native = nullptr;
    if (hwloc_topology_init(&native) != 0)
        return nullptr;
    Topology topology(native);
    const bool isLoaded = hwloc_topology_set_all_types_filter(native, HWLOC_TYPE_FILTER_KEEP_NONE) == 0 &&
                          hwloc_topology_set_type_filter(native, HWLOC_OBJ_CORE, HWLOC_TYPE_FILTER_KEEP_ALL) == 0 &&
                          hwloc_topology_set_type_filter(native, HWLOC_OBJ_PACKAGE, HWLOC_TYPE_FILTER_KEEP_ALL) == 0 &&
                          hwloc_topology_set_flags(native, HWLOC_TOPOLOGY_FLAG_INCLUDE_DISALLOWED) == 0 &&
                          hwloc_topology_load(native) == 0;
    return isLoaded ? std::move(topology) : nullptr;
}

}  // namespace

std::vector<ProcessorRecord> platform::ProcessorRecords(hwloc_topology_t topology)
{
    std::vector<ProcessorRecord> records;
    AppendRecords(topology, Has(topology, HWLOC_OBJ_CORE) ? HWLOC_OBJ_CORE : HWLOC_OBJ_PU, ProcessorRelation::Core,
                  records);
    AppendRecords(topology, Has(topology, HWLOC_OBJ_PACKAGE) ? HWLOC_OBJ_PACKAGE : HWLOC_OBJ_MACHINE,
                  ProcessorRelation::Package, records);
    return records;
}

bool platform::ReadProcessorRecords(std::vector<ProcessorRecord>& records) noexcept
{
    records.clear();
    return Guarded(false, [&] {
        const Topology topology = LoadTopology();
        if (topology != nullptr)
            records = ProcessorRecords(topology.get());
        return topology != nullptr;
    });
}

unsigned int platform::UsableProcessors() noexcept
{
    cpu_set_t usable[8] = {};  // room for the 8192 processors that a kernel can be built for
    if (sched_getaffinity(0, sizeof usable, usable) != 0)
        return 1;
    return static_cast<unsigned int>(std::max(CPU_COUNT_S(sizeof usable, usable), 1));
}
