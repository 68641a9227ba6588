#include <TuvoUtil/CallStack.h>

#include "CallStack/FunctionName.h"
#include "TuvoMemory/LeakFrames.h"
#include "TuvoMemory/MemoryState.h"
#include "platform/Guard.h"
#include "platform/Platform.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <new>
#include <string>
#include <utility>

namespace {

using leaks::CallFrame;

constexpr int LargestDepth = 128;

// What lies between an allocation and its caller; more than enough.
constexpr int LargestInnerDepth = 32;

// ---- The captured form ---------------------------------------------------------------------------------------------

// Its address tells captured stacks from resolved ones, which begin with the name of a function.
constexpr char CapturedMark = 0;

struct CapturedStack
{
    const void* mark;       // &CapturedMark
    std::uint32_t modules;  // the state in which it was captured
    void* addresses[LargestDepth];
};

std::size_t CapturedSize(int depth)
{
    return offsetof(CapturedStack, addresses) + static_cast<std::size_t>(depth) * sizeof(void*);
}

// Where the frames of the host begin; 0 when that is not known.
int FindCaller(void* const* addresses, int count)
{
    if (memory::g_state.caller == nullptr)
        return 0;
    const void* const call = static_cast<const char*>(memory::g_state.caller) - 1;
    void* const* const found = std::find(addresses, addresses + count, call);
    return found != addresses + count ? static_cast<int>(found - addresses) : 0;
}

// Stores the frames that count: those of the checker, which are null, and those of the host.
int TakeFrames(void* (&frames)[LargestDepth])
{
    void* addresses[LargestInnerDepth + LargestDepth];
    const int count = platform::CaptureStack(addresses, LargestInnerDepth + LargestDepth, 0);
    const int caller = FindCaller(addresses, count);
    const int own = caller > 0 ? leaks::OwnFrames : 0;
    std::fill_n(frames, own, nullptr);
    const int depth = std::min(own + count - caller, LargestDepth);
    std::copy_n(addresses + caller, depth - own, frames + own);
    return depth;
}

char** Capture(int& depth)
{
    CapturedStack stack = {&CapturedMark, platform::NoteLoadedModules(), {}};
    depth = TakeFrames(stack.addresses);
    void* const block = std::malloc(CapturedSize(depth));
    if (block == nullptr) {
        depth = 0;
        return nullptr;
    }
    return static_cast<char**>(std::memcpy(block, &stack, CapturedSize(depth)));
}

// ---- Resolving -----------------------------------------------------------------------------------------------------

template <std::size_t Size>
void CopyText(char (&target)[Size], const std::string& text)
{
    const std::size_t length = std::min(text.size(), Size - 1);
    std::copy_n(text.data(), length, target);
    target[length] = '\0';
}

CallFrame OwnFrame()
{
    return {"TuvoMemory", 0, "TuvoMemory"};
}

// What a function without a name is called.
std::string UnknownFunction(const void* address, std::uint32_t modules)
{
    const platform::ModulePlace place = platform::FindModulePlace(address, modules);
    const bool isInModule = !place.file.empty();
    char number[24];
    std::snprintf(
        number, sizeof number, "0x%llx",
        static_cast<unsigned long long>(isInModule ? place.offset : reinterpret_cast<std::uintptr_t>(address)));
    return isInModule ? PlainFileName(platform::Narrow(place.file)) + '+' + number : number;
}

CallFrame ResolveFrame(const void* address, std::uint32_t modules)
{
    CallFrame frame = {"", leaks::UnknownLine, ""};
    platform::ResolvedAddress place;
    platform::ResolveAddress(address, modules, place);
    if (place.function.empty()) {
        CopyText(frame.function, UnknownFunction(address, modules));
        return frame;
    }
    CopyText(frame.function, PlainFunctionName(place.function));
    if (place.line >= 0) {
        frame.line = place.line;
        CopyText(frame.file, PlainFileName(place.file));
    }
    return frame;
}

using FrameCache = std::map<std::pair<const void*, std::uint32_t>, CallFrame>;

// Places come again in stack after stack, report after report. Never destroyed: a report may be made late.
FrameCache& Cache()
{
    alignas(FrameCache) static unsigned char place[sizeof(FrameCache)];
    static FrameCache* const cache = new (place) FrameCache;
    return *cache;
}

CallFrame FrameOf(const void* address, std::uint32_t modules)
{
    if (address == nullptr)
        return OwnFrame();
    const std::pair key(address, modules);
    const auto known = Cache().find(key);
    return known != Cache().end() ? known->second : Cache().emplace(key, ResolveFrame(address, modules)).first->second;
}

bool ResolveAll(const CapturedStack& stack, int depth, CallFrame* frames)
{
    return platform::Guarded(false, [&] {
        for (int i = 0; i < depth; ++i)
            frames[i] = FrameOf(stack.addresses[i], stack.modules);
        return true;
    });
}

bool IsCaptured(char** frames)
{
    const void* mark = nullptr;
    std::memcpy(&mark, static_cast<const void*>(frames), sizeof mark);
    return mark == &CapturedMark;
}

// Replaces a captured stack by its frames; by none when memory is exhausted.
void Resolve(int& depth, char**& frames)
{
    auto* const captured = reinterpret_cast<CapturedStack*>(frames);
    auto* const resolved = static_cast<CallFrame*>(std::malloc(static_cast<std::size_t>(depth) * sizeof(CallFrame)));
    if (resolved == nullptr || !ResolveAll(*captured, depth, resolved)) {
        std::free(resolved);
        depth = 0;
        return;
    }
    std::free(captured);
    frames = reinterpret_cast<char**>(resolved);
}

}  // namespace

int TuvoCallStackProvider(int* depth, char*** frames)
{
    if (depth == nullptr || frames == nullptr)
        return 0;
    if (*depth == -1)
        *frames = Capture(*depth);
    else if (*depth > 0 && *frames != nullptr && IsCaptured(*frames))
        Resolve(*depth, *frames);
    return 0;
}
