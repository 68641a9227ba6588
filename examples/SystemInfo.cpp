// Chooses how many threads a solver starts: one for each core, since the two halves of a core share its arithmetic.
#include <TuvoUtil/SystemInfo.h>

#include <algorithm>
#include <cstdio>

int main()
{
    const int packages = TuvoGetSystemCPUCount() - 1;
    const int cores = TuvoGetSystemPhysicalCores();  // 0 when the system does not tell
    const int threads = std::max(cores, 1);
    std::printf("at least one package: %s\n", packages >= 1 ? "yes" : "no");
    std::printf("a thread for each core: %s\n", threads <= TuvoGetSystemLogicalCores() ? "yes" : "no");
    std::printf("%s, version %s\n", TuvoUtil_get_module_info(0), TuvoUtil_get_module_info(1));
}
