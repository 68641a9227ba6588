// The step from a processor topology to records, apart from the machine, for the sake of machines that are not at hand.
#pragma once

#include "platform/Platform.h"

#include <hwloc.h>

namespace platform {

// The cores and packages of a loaded topology, each kind in the order of the topology. Where it knows no cores every
// processing unit counts as one, and where it knows no packages the machine does. A record holds at most 64 units.
std::size_t CountProcessorRecords(hwloc_topology_t topology);
void StoreProcessorRecords(hwloc_topology_t topology, ProcessorRecord* records);

}  // namespace platform
