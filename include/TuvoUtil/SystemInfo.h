// The processors of the machine, and what this library says of itself.
//
//   TuvoGetSystemCPUCount();        // 2: one package, counted from 1
//   TuvoGetSystemPhysicalCores();   // 8
//   TuvoGetSystemLogicalCores();    // 16
//   TuvoUtil_get_module_info(1);    // "24.0.0.000"
//
// Each of the three counts asks the system anew, which takes some milliseconds: keep the result. On Linux they are those
// of the machine, however few of its processors this process may use; on Windows those of the processor group that the
// process runs in, of up to 64 logical processors. When the system does not tell, or memory is exhausted, they are 1, 0
// and 0. They take tracked memory while they run; otherwise functions may be called from any thread.
#pragma once

#include <TuvoUtil/Export.h>

// One more than the number of processor packages (sockets).
TUVOUTIL_API int TuvoGetSystemCPUCount();

// The number of processor cores of all kinds.
TUVOUTIL_API int TuvoGetSystemPhysicalCores();

// The number of logical processors: what the cores can run at once. A core counts for at most 64.
TUVOUTIL_API int TuvoGetSystemLogicalCores();

// A text of the library about itself, which is never null: "Dynamic linked library" for selector 0, the version for 1,
// name, version, date and time of the build for any other.
extern "C" TUVOUTIL_API const char* TuvoUtil_get_module_info(int selector);
