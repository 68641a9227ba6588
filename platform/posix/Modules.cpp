#include "platform/Platform.h"

#include <dlfcn.h>
#include <link.h>

#include <climits>
#include <cstdlib>

namespace {

// What the loader knows of the module that holds an address; null when none does. The program itself has an empty name.
const link_map* FindModule(const void* address)
{
    Dl_info info{};
    void* module = nullptr;
    if (dladdr1(address, &info, &module, RTLD_DL_LINKMAP) == 0)
        return nullptr;
    return static_cast<const link_map*>(module);
}

}  // namespace

std::wstring platform::ModuleFile(const void* address)
{
    const link_map* const module = FindModule(address);
    if (module == nullptr)
        return {};
    const char* const name = module->l_name[0] == '\0' ? "/proc/self/exe" : module->l_name;
    char resolved[PATH_MAX];
    return Widen(realpath(name, resolved) == nullptr ? name : resolved);
}

bool platform::PinModule(const void* address) noexcept
{
    const link_map* const module = FindModule(address);
    if (module == nullptr)
        return false;
    return module->l_name[0] == '\0' || dlopen(module->l_name, RTLD_NOW | RTLD_NOLOAD | RTLD_NODELETE) != nullptr;
}
