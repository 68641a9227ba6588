#include "platform/Demangle.h"
#include "platform/Guard.h"
#include "platform/Platform.h"

#include <backtrace.h>
#include <dlfcn.h>
#include <unwind.h>

namespace {

using platform::ResolvedAddress;

struct Capture
{
    void** addresses;
    int capacity;
    std::int64_t skip;
    int count;
};

_Unwind_Reason_Code TakeFrame(_Unwind_Context* context, void* data)
{
    Capture& capture = *static_cast<Capture*>(data);
    if (capture.skip > 0) {
        --capture.skip;
        return _URC_NO_REASON;
    }
    if (capture.count == capture.capacity)
        return _URC_END_OF_STACK;
    int isBeforeInstruction = 0;  // in the frame that a signal interrupted
    const _Unwind_Ptr address = _Unwind_GetIPInfo(context, &isBeforeInstruction);
    if (address == 0)
        return _URC_END_OF_STACK;
    // NOLINTNEXTLINE(performance-no-int-to-ptr): the unwinder gives an integer
    capture.addresses[capture.count++] = reinterpret_cast<void*>(address - (isBeforeInstruction != 0 ? 0 : 1));
    return _URC_NO_REASON;
}

void IgnoreError(void*, const char*, int) {}

// The debug information of all modules loaded so far, read at the first use and kept: the reader cannot give it back.
backtrace_state* DebugInformation()
{
    static backtrace_state* const state = backtrace_create_state(nullptr, 1, IgnoreError, nullptr);
    return state;
}

struct Symbol
{
    const char* name = nullptr;
    std::uintptr_t start = 0;
};

// The callbacks are called from C code: no exception may leave them.
void TakeSymbol(void* data, std::uintptr_t, const char* name, std::uintptr_t start, std::uintptr_t)
{
    if (name != nullptr)
        *static_cast<Symbol*>(data) = {name, start};
}

struct Line
{
    const char* file = nullptr;
    const char* function = nullptr;
    int number = 0;
};

// Called for each function that was inlined at an address, the innermost first: its line is the one that is executed,
// while the function that stands in memory is the last.
int TakeLine(void* data, std::uintptr_t, const char* file, int number, const char* function)
{
    Line& line = *static_cast<Line*>(data);
    if (line.file == nullptr && file != nullptr) {
        line.file = file;
        line.number = number;
    }
    if (function != nullptr)
        line.function = function;
    return 0;
}

// The symbol table of the file knows more names than the loader, the loader knows modules loaded later.
Symbol FindSymbol(const void* address)
{
    Symbol symbol;
    backtrace_syminfo(DebugInformation(), reinterpret_cast<std::uintptr_t>(address), TakeSymbol, IgnoreError, &symbol);
    Dl_info info{};
    if (symbol.name == nullptr && dladdr(address, &info) != 0 && info.dli_sname != nullptr)
        symbol = {info.dli_sname, reinterpret_cast<std::uintptr_t>(info.dli_saddr)};
    return symbol;
}

bool Fill(ResolvedAddress& resolved, const Symbol& symbol, const Line& line)
{
    resolved = {};
    const char* const function = symbol.name != nullptr ? symbol.name : line.function;
    if (function == nullptr)
        return false;
    resolved.function = platform::Demangle(function);
    resolved.start = symbol.start;
    if (line.file != nullptr) {
        resolved.file = line.file;
        resolved.line = line.number;
        resolved.lineError = 0;
    }
    return true;
}

}  // namespace

[[gnu::noinline]] int platform::CaptureStack(void** addresses, int capacity, int skip) noexcept
{
    if (addresses == nullptr || capacity <= 0)
        return 0;
    Capture capture{addresses, capacity, skip < 0 ? 1 : std::int64_t{skip} + 1, 0};
    _Unwind_Backtrace(TakeFrame, &capture);
    return capture.count;
}

bool platform::ResolveAddress(const void* address, ResolvedAddress& resolved) noexcept
{
    const auto isFilled = Guarded(false, [&] {
        if (DebugInformation() == nullptr)
            return false;
        Line line;
        backtrace_pcinfo(DebugInformation(), reinterpret_cast<std::uintptr_t>(address), TakeLine, IgnoreError, &line);
        return Fill(resolved, FindSymbol(address), line);
    });
    if (!isFilled)
        resolved = {};
    return isFilled;
}
