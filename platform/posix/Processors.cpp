#include "platform/posix/Processors.h"

#include <sched.h>
#include <unistd.h>

#include <algorithm>
#include <memory>
#include <utility>

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

// The types of object that stand for cores and for packages.
hwloc_obj_type_t CoreType(hwloc_topology_t topology)
{
    return hwloc_get_nbobjs_by_type(topology, HWLOC_OBJ_CORE) > 0 ? HWLOC_OBJ_CORE : HWLOC_OBJ_PU;
}

hwloc_obj_type_t PackageType(hwloc_topology_t topology)
{
    return hwloc_get_nbobjs_by_type(topology, HWLOC_OBJ_PACKAGE) > 0 ? HWLOC_OBJ_PACKAGE : HWLOC_OBJ_MACHINE;
}

// Stores a record for each object of a type and gives the place behind the last.
ProcessorRecord* StoreRecords(hwloc_topology_t topology, hwloc_obj_type_t type, ProcessorRelation relation,
                              ProcessorRecord* records)
{
    for (hwloc_obj_t object = nullptr; (object = hwloc_get_next_obj_by_type(topology, type, object)) != nullptr;) {
        ProcessorRecord record;
        record.processorMask = MaskOf(hwloc_bitmap_weight(object->cpuset));
        record.relation = relation;
        *records++ = record;
    }
    return records;
}

// Without these folders, as in a container that has no /sys, hwloc would say so on standard error. It asks the processors
// themselves then, with or without its part for Linux.
bool KernelShowsProcessors()
{
    return access("/sys/bus/cpu/devices/cpu0/topology", R_OK) == 0 ||
           access("/sys/devices/system/cpu/cpu0/topology", R_OK) == 0;
}

bool LeaveOutLinux(hwloc_topology_t topology)
{
    return hwloc_topology_set_components(topology, HWLOC_TOPOLOGY_COMPONENTS_FLAG_BLACKLIST, "linux") == 0;
}

// Only what the records need is looked for: caches and devices would take most of the time.
Topology LoadTopology()
{
    hwloc_topology_t native = nullptr;
    if (hwloc_topology_init(&native) != 0)
        return nullptr;
    Topology topology(native);
    const bool isLoaded = (KernelShowsProcessors() || LeaveOutLinux(native)) &&
                          hwloc_topology_set_all_types_filter(native, HWLOC_TYPE_FILTER_KEEP_NONE) == 0 &&
                          hwloc_topology_set_type_filter(native, HWLOC_OBJ_CORE, HWLOC_TYPE_FILTER_KEEP_ALL) == 0 &&
                          hwloc_topology_set_type_filter(native, HWLOC_OBJ_PACKAGE, HWLOC_TYPE_FILTER_KEEP_ALL) == 0 &&
                          hwloc_topology_set_flags(native, HWLOC_TOPOLOGY_FLAG_INCLUDE_DISALLOWED) == 0 &&
                          hwloc_topology_load(native) == 0;
    return isLoaded ? std::move(topology) : nullptr;
}

}  // namespace

std::size_t platform::CountProcessorRecords(hwloc_topology_t topology)
{
    // Never negative: all objects of these types are at one depth.
    return static_cast<std::size_t>(hwloc_get_nbobjs_by_type(topology, CoreType(topology))) +
           static_cast<std::size_t>(hwloc_get_nbobjs_by_type(topology, PackageType(topology)));
}

void platform::StoreProcessorRecords(hwloc_topology_t topology, ProcessorRecord* records)
{
    records = StoreRecords(topology, CoreType(topology), ProcessorRelation::Core, records);
    StoreRecords(topology, PackageType(topology), ProcessorRelation::Package, records);
}

platform::ProcessorRecord* platform::ReadProcessorRecords(void* (*allocate)(std::size_t size),
                                                          std::size_t& count) noexcept
{
    count = 0;
    const Topology topology = LoadTopology();
    if (topology == nullptr)
        return nullptr;
    const std::size_t known = CountProcessorRecords(topology.get());
    auto* const records = static_cast<ProcessorRecord*>(allocate(known * sizeof(ProcessorRecord)));
    if (records == nullptr)
        return nullptr;
    StoreProcessorRecords(topology.get(), records);
    count = known;
    return records;
}

unsigned int platform::UsableProcessors() noexcept
{
    cpu_set_t usable[8] = {};  // room for the 8192 processors that a kernel can be built for
    if (sched_getaffinity(0, sizeof usable, usable) != 0)
        return 1;
    return static_cast<unsigned int>(std::max(CPU_COUNT_S(sizeof usable, usable), 1));
}
