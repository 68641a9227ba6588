// What basutl keeps for each thread: made when the thread first needs it, freed when the thread ends.
#pragma once

#include <basutl/BuErrObj.h>

#include <cstdint>
#include <string>

struct ThreadState
{
    static constexpr unsigned int ErrorCapacity = 64 + 1;  // an error outlives the next 64

    BuErrObj errors[ErrorCapacity];  // a ring: the error number n stands at n % ErrorCapacity
    std::uint64_t errorCount = 0;    // errors made so far
    std::wstring variableValue;      // what BuVariableGetValue gave last
};

// The state of the calling thread; null when it has none yet and memory is exhausted.
ThreadState* GetThreadState() noexcept;
