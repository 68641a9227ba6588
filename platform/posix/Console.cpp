#include "platform/Platform.h"

#include <unistd.h>

void platform::WriteDebugOutput(const wchar_t*) noexcept {}

bool platform::IsTerminal(int stream) noexcept
{
    return stream >= 0 && stream <= 2 && isatty(stream) == 1;
}
