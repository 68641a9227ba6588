#include "TuvoMemory/LeakFrames.h"

#include <TuvoUtil/Memory.h>

#include <algorithm>

namespace {

// No stack is what a provider gives that has no frames to show.
leaks::CallStack MakeStack(int depth, char** frames)
{
    leaks::CallStack stack = {static_cast<std::uint16_t>(std::clamp(depth, 0, int{UINT16_MAX})), frames};
    if (stack.depth == 0 || frames == nullptr)
        leaks::FreeStack(stack);
    return stack;
}

}  // namespace

leaks::CallStack leaks::CaptureStack()
{
    char** frames = nullptr;
    const int depth = VMemoryGetCallStack(&frames);
    return MakeStack(depth, frames);
}

void leaks::ResolveStack(CallStack& stack)
{
    char** frames = stack.frames;
    const int depth = VMemoryResolveCallStack(stack.depth, &frames);
    stack = MakeStack(depth, frames);
}
