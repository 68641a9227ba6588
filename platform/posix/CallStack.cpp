#include "platform/Demangle.h"
#include "platform/Guard.h"
#include "platform/Platform.h"
#include "platform/posix/ModuleLog.h"

#include <backtrace.h>
#include <dlfcn.h>
#include <unwind.h>

#include <mutex>

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
    capture.addresses[capture.count++] = reinterpret_cast<void*>(address - (isBeforeInstruction != 0 ? 0 : 1));
    return _URC_NO_REASON;
}

void IgnoreError(void*, const char*, int) {}

// The debug information of all modules loaded so far, read at the first use and kept: the reader cannot give it back.
struct DebugInformation
{
    std::uint32_t modules = platform::NoteLoadedModules();
    backtrace_state* state = backtrace_create_state(nullptr, 1, IgnoreError, nullptr);
};

const DebugInformation& KnownModules()
{
    static const DebugInformation information;
    return information;
}

// Callbacks of C code: no exception may leave them.
void TakeSymbol(void* data, std::uintptr_t, const char* name, std::uintptr_t value, std::uintptr_t)
{
    if (name == nullptr)
        return;
    Dl_info& info = *static_cast<Dl_info*>(data);
    info.dli_sname = name;
    info.dli_saddr = reinterpret_cast<void*>(value);
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

Line FindLine(backtrace_state* state, std::uintptr_t address)
{
    Line line;
    backtrace_pcinfo(state, address, TakeLine, IgnoreError, &line);
    return line;
}

Dl_info FindSymbolOfFile(backtrace_state* state, std::uintptr_t address)
{
    Dl_info info{};
    backtrace_syminfo(state, address, TakeSymbol, IgnoreError, &info);
    return info;
}

// The symbol table of the file knows more names than the loader, the loader knows modules loaded later.
Dl_info FindSymbol(backtrace_state* state, const void* address)
{
    Dl_info info = FindSymbolOfFile(state, reinterpret_cast<std::uintptr_t>(address));
    if (info.dli_sname == nullptr)
        dladdr(address, &info);
    return info;
}

bool Fill(ResolvedAddress& resolved, const Dl_info& symbol, const Line& line)
{
    resolved = {};
    const char* const function = symbol.dli_sname != nullptr ? symbol.dli_sname : line.function;
    if (function == nullptr)
        return false;
    resolved.function = platform::Demangle(function);
    resolved.start = symbol.dli_sname == nullptr ? 0 : reinterpret_cast<std::uintptr_t>(symbol.dli_saddr);
    if (line.file != nullptr) {
        resolved.file = line.file;
        resolved.line = line.number;
        resolved.lineError = 0;
    }
    return true;
}

bool ResolveInProcess(const void* address, ResolvedAddress& resolved)
{
    backtrace_state* const state = KnownModules().state;
    return state != nullptr &&
           Fill(resolved, FindSymbol(state, address), FindLine(state, reinterpret_cast<std::uintptr_t>(address)));
}

// A module that is gone, or came late, is read from its file alone. The reader takes this file for that of the program
// and so expects it at the program's place.
bool ResolveInFile(platform::LoggedModule& module, const void* address, ResolvedAddress& resolved)
{
    if (module.information == nullptr && module.HasSameFile())
        module.information = backtrace_create_state(module.path.c_str(), 1, IgnoreError, nullptr);
    if (module.information == nullptr)
        return false;
    const std::uintptr_t shift = platform::ProgramBias() - module.bias;
    const std::uintptr_t shifted = reinterpret_cast<std::uintptr_t>(address) + shift;
    if (!Fill(resolved, FindSymbolOfFile(module.information, shifted), FindLine(module.information, shifted)))
        return false;
    if (resolved.start != 0)
        resolved.start -= shift;
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
    return ResolveAddress(address, NoteLoadedModules(), resolved);
}

bool platform::ResolveAddress(const void* address, std::uint32_t modules, ResolvedAddress& resolved) noexcept
{
    const std::uint32_t known = KnownModules().modules;
    const std::lock_guard lock(ModuleLogMutex());
    LoggedModule* const module = FindLoggedModule(reinterpret_cast<std::uintptr_t>(address), modules);
    const bool isKnown = module == nullptr || (module->IsLoaded() && module->from <= known);
    const auto isFilled = Guarded(false, [&] {
        return isKnown ? ResolveInProcess(address, resolved) : ResolveInFile(*module, address, resolved);
    });
    if (!isFilled)
        resolved = {};
    return isFilled;
}
