#include "platform/Guard.h"
#include "platform/Platform.h"
#include "platform/windows/Native.h"

#include <array>
#include <cerrno>

void platform::SetOutOfMemory() noexcept
{
    errno = ENOMEM;
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
}

int platform::LastNativeError() noexcept
{
    return static_cast<int>(GetLastError());
}

std::wstring platform::NativeErrorText(int code)
{
    std::array<wchar_t, 1024> buffer;
    constexpr DWORD flags = FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS;
    const DWORD languages[] = {MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US), 0};
    for (const DWORD language : languages) {
        const DWORD length = FormatMessageW(flags, nullptr, static_cast<DWORD>(code), language, buffer.data(),
                                            static_cast<DWORD>(buffer.size()), nullptr);
        const std::wstring_view text(buffer.data(), length);
        const std::size_t end = text.find_last_not_of(L" \r\n");
        if (end != text.npos)
            return std::wstring(text.substr(0, end + 1));
    }
    return L"Unknown error " + std::to_wstring(code);
}
