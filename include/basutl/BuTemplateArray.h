// A growable array of values of any kind, as the debug parameters hand out their names. The operations are those of
// BuObjectArrayTempl.
#pragma once

#include <basutl/BuObjectArrayTempl.h>

template <typename T>
class BuTemplateArray : public BuObjectArrayTempl<T>
{};
