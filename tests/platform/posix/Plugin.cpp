#include "support/Plugin.h"

#include "platform/Platform.h"

#include <dlfcn.h>

#include <string>

Plugin::Plugin(const char* name)
{
    static const char ours = 0;
    std::string path = platform::Narrow(platform::ModuleFile(&ours));
    path.replace(path.rfind('/') + 1, std::string::npos, name).append(".so");
    m_module = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
}

Plugin::~Plugin()
{
    if (m_module != nullptr)
        dlclose(m_module);
}

void* Plugin::Find(const char* function) const
{
    return m_module == nullptr ? nullptr : dlsym(m_module, function);
}
