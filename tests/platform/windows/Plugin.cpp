#define NOMINMAX
#define WIN32_LEAN_AND_MEAN
#include "support/Plugin.h"

#include <windows.h>

#include <string>

Plugin::Plugin(const char* name)
{
    m_module = LoadLibraryA((std::string(name) + ".dll").c_str());
}

Plugin::~Plugin()
{
    if (m_module != nullptr)
        FreeLibrary(static_cast<HMODULE>(m_module));
}

void* Plugin::Find(const char* function) const
{
    return m_module == nullptr ? nullptr
                               : reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(m_module), function));
}
