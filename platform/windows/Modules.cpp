#include "platform/Platform.h"
#include "platform/windows/Native.h"

namespace {

HMODULE FindModule(const void* address, DWORD flags)
{
    HMODULE module = nullptr;
    if (address != nullptr)  // the call would take null for the program
        GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | flags, static_cast<const wchar_t*>(address),
                           &module);
    return module;
}

}  // namespace

std::wstring platform::ModuleFile(const void* address)
{
    const HMODULE module = FindModule(address, GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT);
    if (module == nullptr)
        return {};
    return WholeText([&](wchar_t* buffer, DWORD capacity) { return GetModuleFileNameW(module, buffer, capacity); });
}

bool platform::PinModule(const void* address) noexcept
{
    return FindModule(address, GET_MODULE_HANDLE_EX_FLAG_PIN) != nullptr;
}
