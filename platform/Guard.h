// How the noexcept functions of the seam meet exhausted memory.
#pragma once

#include <exception>

namespace platform {

// Makes exhausted memory the last error of this thread: errno and what LastNativeError gives.
void SetOutOfMemory() noexcept;

// Runs the body of a noexcept function. An exception, which can only tell of exhausted memory, becomes the failure
// value with that as the last error.
template <typename Result, typename Body>
Result Guarded(Result failure, Body body) noexcept
{
    try {
        return body();
    } catch (const std::exception&) {
        SetOutOfMemory();
        return failure;
    }
}

}  // namespace platform
