#include "tools/tuvo/LeakReports.h"

#include <cstdlib>
#include <string>

namespace {

void Check(bool holds)
{
    if (!holds)
        std::abort();
}

}  // namespace

// Laws: each place stands once, the largest first, and all add up to the totals; the last report is one of all, and
// the same behind one that was cut short; the same reports twice are twice as much.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace tool;
    const std::string text(reinterpret_cast<const char*>(data), size);
    LeakReports all, last, twice;
    if (const auto problem = ReadLeakReports(text, ReportChoice::All, all)) {
        Check(!problem->reason.empty() && problem->line >= 1 && problem->line <= size);
        return 0;
    }
    std::uint64_t bytes = 0, blocks = 0;
    for (std::size_t i = 0; i < all.places.size(); ++i) {
        const LeakPlace& place = all.places[i];
        Check(i == 0 || place.bytes <= all.places[i - 1].bytes);
        bytes += place.bytes;
        blocks += place.blocks;
    }
    Check(bytes == all.bytes && blocks == all.blocks);
    Check(!ReadLeakReports(text, ReportChoice::Last, last) && last.bytes <= all.bytes);
    Check(last.count == (all.count > 0 ? 1 : 0) && last.time == all.time);
    if (text.starts_with("----Memory leak information -- ")) {
        const std::uint64_t lastBytes = last.bytes;
        Check(!ReadLeakReports(text.substr(0, size / 2) + text, ReportChoice::Last, last) && last.bytes == lastBytes);
    }
    if (all.bytes <= UINT64_MAX / 2) {
        Check(!ReadLeakReports(text + '\n' + text, ReportChoice::All, twice));
        Check(twice.count == 2 * all.count && twice.bytes == 2 * bytes && twice.places.size() == all.places.size());
    }
    return 0;
}
