#include "tools/tuvo/Interruption.h"

#include "platform/Platform.h"
#include "tools/tuvo/Failure.h"

#include <csignal>

namespace tool {
namespace {

volatile std::sig_atomic_t g_signal = 0;  // the last one that was noted

constexpr int Signals[] = {
    SIGINT,
    SIGTERM,
#ifdef SIGHUP
    SIGHUP,
#endif
};

int g_scopes = 0;

// As nohup and shells set it for programs that such a signal is not meant for.
bool IsIgnored(int number)
{
    const auto before = std::signal(number, SIG_IGN);
    if (before != SIG_IGN)
        std::signal(number, before);
    return before == SIG_IGN;
}

extern "C" void NoteSignal(int number)
{
    g_signal = number;
    std::signal(number, SIG_DFL);
}

}  // namespace

InterruptionScope::InterruptionScope()
{
    if (g_scopes++ > 0)
        return;
    for (const int number : Signals)
        if (!IsIgnored(number))
            platform::HandleSignal(number, NoteSignal);
}

InterruptionScope::~InterruptionScope()
{
    if (--g_scopes > 0)
        return;
    for (const int number : Signals)
        if (!IsIgnored(number))
            platform::HandleSignal(number, nullptr);
}

void ThrowIfInterrupted()
{
    if (const int number = g_signal; number != 0)
        throw Failure("interrupted", static_cast<ExitCode>(128 + number));
}

}  // namespace tool
