// How the noexcept functions of the seam meet exhausted memory.
#pragma once

#include <cerrno>
#include <exception>

namespace platform {

// Runs the body of a noexcept function. An exception, which can only tell of exhausted memory, becomes the failure
// value with errno ENOMEM.
template <typename Result, typename Body>
Result Guarded(Result failure, Body body) noexcept
{
    try {
        return body();
    } catch (const std::exception&) {
        errno = ENOMEM;
        return failure;
    }
}

}  // namespace platform
