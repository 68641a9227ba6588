#include "platform/Platform.h"

#include <csignal>

bool platform::HandleSignal(int number, void (*handler)(int)) noexcept
{
    return std::signal(number, handler != nullptr ? handler : SIG_DFL) != SIG_ERR;
}
