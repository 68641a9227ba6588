// What a host shows when it crashes: the signal and the call stack.
#include <TuvoUtil/CallStack.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

// Its stack has lines that differ from machine to machine; only the first ones are shown here.
void OnSignal(int signal)
{
    std::string text;
    tuvo::utl::GetCallStack(text, signal);
    std::printf("%s", text.substr(0, text.find('\n') + 1).c_str());
    std::printf("raised in SolveModel: %s\n", std::strstr(text.c_str(), "SolveModel") != nullptr ? "yes" : "unknown");
    std::fflush(stdout);
    std::_Exit(0);
}

// Kept apart from its caller, so that an optimised build names it as well.
[[gnu::noinline]] int SolveModel()
{
    std::raise(SIGFPE);  // what a division by zero does
    return 1;
}

}  // namespace

int main()
{
    tuvo::utl::AddSIgnalHandler(OnSignal);
    return SolveModel();
}
