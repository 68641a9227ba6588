#include "platform/Guard.h"
#include "platform/Platform.h"
#include "platform/windows/Native.h"

#include <cstdlib>
#include <cwchar>

std::optional<std::wstring> platform::EnvironmentValue(const wchar_t* name)
{
    if (name == nullptr)
        return std::nullopt;
    SetLastError(ERROR_SUCCESS);
    std::wstring value =
        WholeText([&](wchar_t* buffer, DWORD capacity) { return GetEnvironmentVariableW(name, buffer, capacity); });
    if (value.empty() && GetLastError() != ERROR_SUCCESS)
        return std::nullopt;
    return value;
}

bool platform::SetEnvironmentValue(const wchar_t* name, const std::optional<std::wstring>& value) noexcept
{
    if (name == nullptr || *name == L'\0' || std::wcschr(name, L'=') != nullptr)
        return false;
    // The C library keeps a table of its own, which the system's call does not reach.
    const bool isRemoved = !value || value->empty();
    if (_wputenv_s(name, isRemoved ? L"" : value->c_str()) != 0)
        return false;
    return SetEnvironmentVariableW(name, isRemoved ? nullptr : value->c_str()) != 0 ||
           (isRemoved && GetLastError() == ERROR_ENVVAR_NOT_FOUND);
}

unsigned int platform::ProcessId() noexcept
{
    return GetCurrentProcessId();
}
