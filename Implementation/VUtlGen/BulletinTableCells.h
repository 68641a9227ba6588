// Setting the cells of a report table.
#pragma once

#include "VUtlGen/BulletinTableRecord.h"

namespace bulletin {

// Sets a cell by the type of its column, or adds to it; the public header says how.
Result SetCell(void*& cell, std::int32_t type, const void* value, bool isIncrement);

}  // namespace bulletin
