#include "platform/Guard.h"
#include "platform/Platform.h"

#include <cerrno>
#include <cstring>

void platform::SetOutOfMemory() noexcept
{
    errno = ENOMEM;
}

int platform::LastNativeError() noexcept
{
    return errno;
}

std::wstring platform::NativeErrorText(int code)
{
    const char* const text = strerrordesc_np(code);
    return text == nullptr ? L"Unknown error " + std::to_wstring(code) : Widen(text);
}
