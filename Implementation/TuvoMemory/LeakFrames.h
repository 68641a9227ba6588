// Call stacks of leak records, as call-stack providers fill them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <utility>

namespace leaks {

struct CallFrame
{
    char function[52];
    std::int32_t line;  // UnknownLine when unknown
    char file[48];
};
static_assert(sizeof(CallFrame) == 104 && offsetof(CallFrame, line) == 52 && offsetof(CallFrame, file) == 56);

constexpr std::int32_t UnknownLine = -1;

// The frames of the checker itself, which stand in front and are never printed.
constexpr std::uint16_t OwnFrames = 3;

// The frames of one record in the process heap. Plain data, so that tables of records can be; who removes a record
// frees them.
struct CallStack
{
    std::uint16_t depth;
    char** frames;  // until it is resolved in a form that only the provider knows, then an array of CallFrame

    const CallFrame& operator[](std::size_t index) const noexcept
    {
        return reinterpret_cast<const CallFrame*>(frames)[index];
    }
};

// Asks the installed provider, if any, for the present stack.
CallStack CaptureStack();

// Has it resolved for a report.
void ResolveStack(CallStack& stack);

inline void FreeStack(CallStack& stack) noexcept
{
    std::free(static_cast<void*>(std::exchange(stack.frames, nullptr)));
    stack.depth = 0;
}

}  // namespace leaks
