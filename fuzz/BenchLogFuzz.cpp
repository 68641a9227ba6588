#include "tools/tuvo/BenchIcicle.h"
#include "tools/tuvo/BenchLog.h"

#include <pugixml.hpp>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>

// Laws: parents stand before what they hold and are sections; the picture is XML with one group for each entry, with
// places that are numbers.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace tool;
    const std::vector<BenchEntry> entries = ReadBenchLog({reinterpret_cast<const char*>(data), size});
    for (std::size_t i = 0; i < entries.size(); ++i) {
        const std::size_t parent = entries[i].parent;
        const bool isPlaced = parent == NoSection ? !entries[i].isStep : parent < i && !entries[parent].isStep;
        if (!isPlaced || !std::isfinite(entries[i].seconds))
            std::abort();
    }
    pugi::xml_document picture;
    if (entries.empty())
        return 0;
    if (!picture.load_string(DrawBenchIcicle(entries, "fuzz").c_str()))
        std::abort();
    std::size_t groups = 0;
    for (const pugi::xml_node group : picture.child("svg").children("g")) {
        for (const pugi::xml_attribute attribute : group.first_child().next_sibling().attributes())
            if (std::strpbrk(attribute.name(), "xywh") != nullptr && !std::isfinite(attribute.as_double(NAN)))
                std::abort();
        groups += group.child("title") && group.child("text") ? 1 : 0;
    }
    if (groups != entries.size())
        std::abort();
    return 0;
}
