#include <TuvoUtil/CallStack.h>

#include "platform/Guard.h"
#include "platform/Platform.h"

#include <csignal>

namespace {

constexpr int LargestDepth = 1024;

// In the order in which handlers are installed.
constexpr struct
{
    int number;
    const char* name;
} Signals[] = {
    {SIGINT, "SIGINT"}, {SIGABRT, "SIGABRT"}, {SIGFPE, "SIGFPE"},
    {SIGILL, "SIGILL"}, {SIGSEGV, "SIGSEGV"}, {SIGTERM, "SIGTERM"},
};

// The number of SIGABRT on Windows, which is named on every system.
constexpr int WindowsAbort = 22;

const char* NameOfSignal(int number)
{
    for (const auto& signal : Signals)
        if (signal.number == number)
            return signal.name;
    return number == WindowsAbort ? "SIGABRT" : "";
}

// Kept: the address is decimal behind a prefix for hexadecimal numbers.
std::string AddressText(std::uint64_t address)
{
    return "0x" + std::to_string(address);
}

void AppendFrame(std::string& text, const void* address)
{
    platform::ResolvedAddress place;
    platform::ResolveAddress(address, place);
    if (place.line >= 0)
        text += "\tat " + place.function + " in " + place.file + ": line: " + std::to_string(place.line) +
                ": address: " + AddressText(place.start) + '\n';
    else
        text += "\tSymGetLineFromAddr64 returned error code " + std::to_string(place.lineError) + ".\n\tat " +
                place.function + ", address " + AddressText(place.start) + ".\n";
}

}  // namespace

void tuvo::utl::AddSIgnalHandler(void (*handler)(int))
{
    for (const auto& signal : Signals)
        platform::HandleSignal(signal.number, handler);
}

void tuvo::utl::GetCallStack(std::string& text, int signalNumber)
{
    void* addresses[LargestDepth];
    const int depth = platform::CaptureStack(addresses, LargestDepth, 0);
    platform::Guarded(false, [&] {
        if (signalNumber != 0)
            text.append("Signal ").append(NameOfSignal(signalNumber)).append(" caught\n");
        for (int i = 0; i < depth; ++i)
            AppendFrame(text, addresses[i]);
        return true;
    });
}
