#include "basutl/ThreadState.h"

#include "platform/Platform.h"

#include <memory>
#include <new>

namespace {

void Release(void* state)
{
    delete static_cast<ThreadState*>(state);
}

constinit platform::ThreadSlot g_slot(&Release);

}  // namespace

ThreadState* GetThreadState() noexcept
{
    if (void* const existing = g_slot.Get())
        return static_cast<ThreadState*>(existing);
    std::unique_ptr<ThreadState> made(new (std::nothrow) ThreadState);
    return made != nullptr && g_slot.Set(made.get()) ? made.release() : nullptr;
}
