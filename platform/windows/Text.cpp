#include "platform/Platform.h"
#include "platform/windows/Native.h"

#include <climits>
#include <new>

namespace {

int Length(std::size_t size)
{
    if (size > INT_MAX)
        throw std::bad_alloc();
    return static_cast<int>(size);
}

}  // namespace

std::wstring platform::Widen(std::string_view narrow)
{
    const int length = Length(narrow.size());
    const int needed = MultiByteToWideChar(CP_ACP, 0, narrow.data(), length, nullptr, 0);
    std::wstring wide(static_cast<std::size_t>(needed), L'\0');
    MultiByteToWideChar(CP_ACP, 0, narrow.data(), length, wide.data(), needed);
    return wide;
}

std::string platform::Narrow(std::wstring_view wide)
{
    const int length = Length(wide.size());
    const int needed = WideCharToMultiByte(CP_ACP, 0, wide.data(), length, nullptr, 0, nullptr, nullptr);
    std::string narrow(static_cast<std::size_t>(needed), '\0');
    WideCharToMultiByte(CP_ACP, 0, wide.data(), length, narrow.data(), needed, nullptr, nullptr);
    return narrow;
}
