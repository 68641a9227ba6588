#include "tools/tuvo/model/IdText.h"

#include <TuvoUtil/IdList.h>
#include <TuvoUtil/Memory.h>

#include <memory>
#include <new>
#include <string_view>

namespace tool {
namespace {

struct FreeTracked
{
    void operator()(char* text) const { VBuFree(text, "tuvo", __LINE__); }
};

// How many ids make the first items.
std::size_t CountIds(const std::vector<std::int32_t>& ids, std::size_t items)
{
    std::size_t count = 0;
    while (count < ids.size() && (items > 0 || ids[count] == ids[count - 1] + 1)) {
        items -= count == 0 || ids[count] != ids[count - 1] + 1 ? 1 : 0;
        ++count;
    }
    return count;
}

}  // namespace

std::string CompactIds(const std::vector<std::int32_t>& ids, std::size_t mostItems)
{
    if (ids.empty() || mostItems == 0)
        return {};
    // The library closes the last run one id early. An id behind it that continues no run, and goes again, takes its
    // place.
    constexpr std::string_view Behind = ",0";
    const std::size_t count = CountIds(ids, mostItems);
    std::vector<int> shown(ids.begin(), ids.begin() + static_cast<std::ptrdiff_t>(count));
    shown.push_back(0);
    const std::unique_ptr<char, FreeTracked> list(
        UtlStrGenerateIdStringSafe(shown.data(), static_cast<int>(shown.size()), nullptr));
    if (list == nullptr)
        throw std::bad_alloc();
    std::string text = list.get();
    text.resize(text.size() - Behind.size());
    if (count < ids.size())
        text += ",... (" + std::to_string(ids.size() - count) + " more)";
    return text;
}

}  // namespace tool
