#include "platform/Platform.h"
#include "platform/windows/Native.h"

void platform::WriteDebugOutput(const wchar_t* text) noexcept
{
    OutputDebugStringW(text == nullptr ? L"" : text);
}

bool platform::IsTerminal(int stream) noexcept
{
    constexpr DWORD names[] = {STD_INPUT_HANDLE, STD_OUTPUT_HANDLE, STD_ERROR_HANDLE};
    DWORD mode = 0;
    return stream >= 0 && stream <= 2 && GetConsoleMode(GetStdHandle(names[stream]), &mode) != 0;
}
