#include "tools/tuvo/model/ModelUnits.h"

#include "tools/tuvo/Catalogue.h"
#include "tools/tuvo/Conversion.h"

namespace tool {
namespace {

constexpr char Coordinate[] = "Coordinate";

}  // namespace

std::string ModelUnits::Label(std::string_view dataType) const
{
    if (m_catalogue == nullptr || dataType.empty())
        return {};
    return UnitLabel(*m_catalogue, FindDataType(*m_catalogue, std::string(dataType)), m_unitSystem);
}

void ConvertModel(Model& model, const CatalogueFile& catalogue, int from, int to)
{
    const auto conversion = [&](std::string_view dataType) {
        const DataType& type = FindDataType(catalogue, std::string(dataType));
        return Conversion(catalogue, {type, from}, {type, to});
    };
    const Conversion length = conversion(Coordinate);
    for (Point& point : model.nodes.coordinates)
        for (double& coordinate : point)
            coordinate = length.Convert(coordinate);
    for (Material& material : model.materials)
        for (MaterialValue& value : material.values)
            if (!value.dataType.empty())
                value.value = conversion(value.dataType).Convert(value.value);
}

}  // namespace tool
