#include "platform/Demangle.h"
#include "platform/Guard.h"
#include "platform/Platform.h"
#include "platform/windows/Native.h"

#include <dbghelp.h>
#include <psapi.h>

#include <algorithm>
#include <atomic>
#include <vector>

namespace {

using platform::ResolvedAddress;

// The functions of dbghelp.dll, loaded at the first use: most programs never look at a stack. They know this process by
// a handle that is nobody else's, so that a host may use them beside us.
class DebugHelp
{
public:
    DebugHelp()
    {
        m_library = LoadLibraryExW(L"dbghelp.dll", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
        const HANDLE process = GetCurrentProcess();
        if (!(Find(m_getOptions, "SymGetOptions") && Find(m_setOptions, "SymSetOptions") &&
              Find(m_initialize, "SymInitialize") && Find(m_load, "SymLoadModuleExW") &&
              Find(m_symbol, "SymFromAddr") && Find(m_line, "SymGetLineFromAddr64")) ||
            !DuplicateHandle(process, process, process, &m_process, 0, FALSE, DUPLICATE_SAME_ACCESS))
            return;
        m_setOptions(m_getOptions() | SYMOPT_LOAD_LINES | SYMOPT_DEFERRED_LOADS | SYMOPT_UNDNAME);
        m_isReady = m_initialize(m_process, nullptr, TRUE) != 0;
    }

    bool IsReady() const { return m_isReady; }

    // Has the modules of now taken up, to be kept when they are unloaded. False when there are more than memory holds.
    bool TakeUpModules() const
    {
        std::vector<HMODULE> modules(256);
        DWORD needed = 0;
        const auto bytes = [&modules] { return static_cast<DWORD>(modules.size() * sizeof(HMODULE)); };
        while (K32EnumProcessModules(GetCurrentProcess(), modules.data(), bytes(), &needed) != 0 && needed > bytes())
            modules.resize(needed / sizeof(HMODULE));
        modules.resize(std::min<std::size_t>(modules.size(), needed / sizeof(HMODULE)));
        for (const HMODULE module : modules)
            TakeUp(module);
        return !modules.empty();
    }

    void FindSymbol(DWORD64 address, SYMBOL_INFO& symbol) const { m_symbol(m_process, address, nullptr, &symbol); }
    bool FindLine(DWORD64 address, IMAGEHLP_LINE64& line) const
    {
        DWORD displacement = 0;
        return m_line(m_process, address, &displacement, &line) != 0;
    }

private:
    // One that is known already stays as it is.
    void TakeUp(HMODULE module) const
    {
        MODULEINFO info{};
        const std::wstring path = platform::WholeText(
            [module](wchar_t* buffer, DWORD capacity) { return GetModuleFileNameW(module, buffer, capacity); });
        if (K32GetModuleInformation(GetCurrentProcess(), module, &info, sizeof info) != 0)
            m_load(m_process, nullptr, path.c_str(), nullptr, reinterpret_cast<DWORD64>(info.lpBaseOfDll),
                   info.SizeOfImage, nullptr, 0);
    }

    template <typename Function>
    bool Find(Function*& function, const char* name)
    {
        void* const address = m_library == nullptr ? nullptr : reinterpret_cast<void*>(GetProcAddress(m_library, name));
        function = reinterpret_cast<Function*>(address);
        return address != nullptr;
    }

    HMODULE m_library = nullptr;
    HANDLE m_process = nullptr;
    decltype(&SymGetOptions) m_getOptions = nullptr;
    decltype(&SymSetOptions) m_setOptions = nullptr;
    decltype(&SymInitialize) m_initialize = nullptr;
    decltype(&SymLoadModuleExW) m_load = nullptr;
    decltype(&SymFromAddr) m_symbol = nullptr;
    decltype(&SymGetLineFromAddr64) m_line = nullptr;
    bool m_isReady = false;
};

// The functions of dbghelp are for one thread at a time.
class DebugHelpLock
{
public:
    DebugHelpLock() { AcquireSRWLockExclusive(&m_lock); }
    ~DebugHelpLock() { ReleaseSRWLockExclusive(&m_lock); }
    DebugHelpLock(const DebugHelpLock&) = delete;
    DebugHelpLock& operator=(const DebugHelpLock&) = delete;

private:
    static constinit inline SRWLOCK m_lock = SRWLOCK_INIT;
};

ResolvedAddress Describe(const DebugHelp& help, DWORD64 address, const SYMBOL_INFO& symbol)
{
    ResolvedAddress resolved;
    resolved.function = platform::Demangle(symbol.Name);
    resolved.start = symbol.Address;
    IMAGEHLP_LINE64 line{};
    line.SizeOfStruct = sizeof line;
    if (help.FindLine(address, line)) {
        resolved.file = line.FileName;
        resolved.line = static_cast<int>(line.LineNumber);
        resolved.lineError = 0;
    } else {
        resolved.lineError = GetLastError();
    }
    return resolved;
}

// Called with the lock held.
const DebugHelp& Help()
{
    static const DebugHelp help;
    return help;
}

ResolvedAddress Resolve(DWORD64 address)
{
    const DebugHelpLock lock;
    const DebugHelp& help = Help();
    constexpr ULONG longestName = 1024;
    alignas(SYMBOL_INFO) char memory[sizeof(SYMBOL_INFO) + longestName] = {};
    SYMBOL_INFO& symbol = *reinterpret_cast<SYMBOL_INFO*>(memory);
    symbol.SizeOfStruct = sizeof symbol;
    symbol.MaxNameLen = longestName;
    if (!help.IsReady())
        return {};
    help.FindSymbol(address, symbol);
    return Describe(help, address, symbol);
}

// Counts what is loaded and unloaded from the first use on. The library that holds this is never unloaded.
class ModuleChanges
{
public:
    static std::uint32_t Count() noexcept
    {
        static const bool isWatching = Watch();
        return isWatching ? m_count.load() : m_count.fetch_add(1);
    }

private:
    using Callback = void(CALLBACK*)(ULONG reason, const void* module, void* context);
    using Register = LONG(NTAPI*)(ULONG flags, Callback callback, void* context, void** cookie);

    static void CALLBACK OnChange(ULONG, const void*, void*) { ++m_count; }

    static bool Watch() noexcept
    {
        void* const found =
            reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "LdrRegisterDllNotification"));
        void* cookie = nullptr;
        return found != nullptr && reinterpret_cast<Register>(found)(0, OnChange, nullptr, &cookie) == 0;
    }

    static constinit inline std::atomic<std::uint32_t> m_count = 1;
};

// The function of the system that a fault enters. Its caller was interrupted, while all others wait for a call to return.
class FaultDispatcher
{
public:
    static bool Holds(const void* address) noexcept
    {
        static const FaultDispatcher dispatcher;
        return address > dispatcher.m_begin && address <= dispatcher.m_end;
    }

private:
    FaultDispatcher() noexcept
    {
        const FARPROC function = GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "KiUserExceptionDispatcher");
        DWORD64 module = 0;
        const auto entry = RtlLookupFunctionEntry(reinterpret_cast<DWORD64>(function), &module, nullptr);
        if (entry == nullptr)
            return;
        m_begin = reinterpret_cast<const void*>(module + entry->BeginAddress);
        m_end = reinterpret_cast<const void*>(module + entry->EndAddress);
    }

    const void* m_begin = nullptr;
    const void* m_end = nullptr;
};

}  // namespace

[[gnu::noinline]] int platform::CaptureStack(void** addresses, int capacity, int skip) noexcept
{
    if (addresses == nullptr || capacity <= 0)
        return 0;
    const int count = RtlCaptureStackBackTrace(static_cast<DWORD>(std::max(skip, 0)) + 1, static_cast<DWORD>(capacity),
                                               addresses, nullptr);
    bool isInterrupted = false;
    for (int i = 0; i < count; ++i) {
        const bool isDispatcher = FaultDispatcher::Holds(addresses[i]);
        if (!isInterrupted)
            addresses[i] = static_cast<char*>(addresses[i]) - 1;
        isInterrupted = isDispatcher;
    }
    return count;
}

bool platform::ResolveAddress(const void* address, ResolvedAddress& resolved) noexcept
{
    NoteLoadedModules();
    resolved = Guarded(ResolvedAddress(), [&] { return Resolve(reinterpret_cast<std::uintptr_t>(address)); });
    return !resolved.function.empty();
}

std::uint32_t platform::NoteLoadedModules() noexcept
{
    static constinit std::atomic<std::uint32_t> noted = 0;
    const std::uint32_t changes = ModuleChanges::Count();
    if (noted.load() == changes)
        return changes;
    const bool isNoted = Guarded(false, [] {
        const DebugHelpLock lock;
        return Help().IsReady() && Help().TakeUpModules();
    });
    if (isNoted)
        noted = changes;
    return noted;
}

// What was taken up once is known by its address for good.
bool platform::ResolveAddress(const void* address, std::uint32_t, ResolvedAddress& resolved) noexcept
{
    return ResolveAddress(address, resolved);
}

platform::ModulePlace platform::FindModulePlace(const void* address, std::uint32_t)
{
    HMODULE module = nullptr;
    const DWORD flags = GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
    if (!GetModuleHandleExW(flags, static_cast<const wchar_t*>(address), &module))
        return {};
    return {ModuleFile(address), reinterpret_cast<std::uintptr_t>(address) - reinterpret_cast<std::uintptr_t>(module)};
}
