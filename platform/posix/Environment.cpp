#include "platform/Guard.h"
#include "platform/Platform.h"

#include <unistd.h>

#include <cstdlib>

std::optional<std::wstring> platform::EnvironmentValue(const wchar_t* name)
{
    const char* const value = name == nullptr ? nullptr : std::getenv(Narrow(name).c_str());
    if (value == nullptr)
        return std::nullopt;
    return Widen(value);
}

bool platform::SetEnvironmentValue(const wchar_t* name, const std::optional<std::wstring>& value) noexcept
{
    return Guarded(false, [&] {
        const std::string native = Narrow(name == nullptr ? L"" : name);
        const int result = value ? setenv(native.c_str(), Narrow(*value).c_str(), 1) : unsetenv(native.c_str());
        return result == 0;
    });
}

unsigned int platform::ProcessId() noexcept
{
    return static_cast<unsigned int>(getpid());
}
