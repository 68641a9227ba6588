// The capacity rule of growing arrays.
#pragma once

#include <cstdint>

namespace memory {

// A positive count rounded up to its leading decimal digit: 7, 37 -> 40, 100, 250 -> 300, 1234 -> 2000.
std::int64_t RoundedCapacity(std::int64_t count) noexcept;

// The capacity to reallocate an array of `count` elements to before `added` more are appended; 0 when it has room.
std::int64_t GrownCapacity(std::int64_t count, std::int64_t added) noexcept;

}  // namespace memory
