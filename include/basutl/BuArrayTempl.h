// A growable array of plain values: numbers, pointers, small structs. The operations are those of BuObjectArrayTempl.
#pragma once

#include <basutl/BuObjectArrayTempl.h>

#include <type_traits>

template <typename T>
class BuArrayTempl : public BuObjectArrayTempl<T>
{
    static_assert(std::is_trivially_copyable_v<T>);
};
