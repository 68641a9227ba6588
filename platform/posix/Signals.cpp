#include "platform/Platform.h"

#include <csignal>

namespace {

// Room for a handler that writes a call stack.
constinit unsigned char g_stack[256 * 1024];

// A thread that has such a stack keeps it.
void UseOwnStack()
{
    stack_t present = {};
    if (sigaltstack(nullptr, &present) != 0 || (present.ss_flags & SS_DISABLE) == 0)
        return;
    stack_t stack = {};
    stack.ss_sp = g_stack;
    stack.ss_size = sizeof g_stack;
    sigaltstack(&stack, nullptr);
}

}  // namespace

bool platform::HandleSignal(int number, void (*handler)(int)) noexcept
{
    UseOwnStack();
    struct sigaction action = {};
    action.sa_handler = handler != nullptr ? handler : SIG_DFL;
    action.sa_flags = SA_ONSTACK | SA_RESTART;
    sigemptyset(&action.sa_mask);
    return sigaction(number, &action, nullptr) == 0;
}
