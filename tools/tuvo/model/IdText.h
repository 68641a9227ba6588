// Ids in compact form: "1-999,1001".
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tool {

// The ids, which rise strictly, with runs of them as ranges; behind `mostItems` ranges and single ids stands how many
// ids follow.
std::string CompactIds(const std::vector<std::int32_t>& ids, std::size_t mostItems);

}  // namespace tool
