#include "tools/tuvo/Conversion.h"

#include "tools/tuvo/Catalogue.h"
#include "tools/tuvo/Command.h"
#include "tools/tuvo/Console.h"
#include "tools/tuvo/NumberText.h"

#include <TuvoUtil/Units.h>

#include <algorithm>
#include <cmath>

namespace tool {
namespace {

bool IsTemperature(const DataType& type)
{
    const auto& e = type.exponents;
    return !type.multiplier && e[0] == 0 && e[1] == 0 && e[2] == 0 && e[3] >= 1;
}

int DecimalExponent(double value)
{
    return static_cast<int>(std::floor(std::log10(std::abs(value))));
}

}  // namespace

bool IsIndependentOfSystem(const DataType& type)
{
    return type.multiplier || type.exponents == decltype(type.exponents){};
}

Conversion::Conversion(const CatalogueFile& catalogue, const End& from, const End& to)
    : m_fromType(from.type.id),
      m_toType(to.type.id),
      m_fromSystem(from.unitSystem),
      m_toSystem(to.unitSystem),
      m_sourceUnit(UnitLabel(catalogue, from.type, from.unitSystem)),
      m_targetUnit(UnitLabel(catalogue, to.type, to.unitSystem))
{
    if (!from.type.multiplier && !to.type.multiplier && from.type.exponents != to.type.exponents)
        throw Failure("the data types " + Quoted(from.type.name) + " and " + Quoted(to.type.name) +
                      " have different dimensions");
    if (IsTemperature(from.type) && IsTemperature(to.type)) {
        const _UnitDataStr source = {m_fromType, m_fromSystem};
        const _UnitDataStr target = {m_toType, m_toSystem};
        double sourceFactor = 1.0, sourceOffset = 0.0, targetFactor = 1.0, targetOffset = 0.0;
        VUnitGetFactorsToConvert(&source, &target, &sourceFactor, &sourceOffset, &targetFactor, &targetOffset);
        m_largestTerm = std::max(std::abs(sourceOffset * targetFactor / sourceFactor), std::abs(targetOffset));
    }
}

double Conversion::Convert(double value) const
{
    double result = 0.0;
    VUnitUtlConvertFromOneToAnother(m_fromType, m_toType, m_fromSystem, m_toSystem, value, &result);
    return result;
}

void Conversion::AppendResult(std::string& out, double result, int digits) const
{
    if (result != 0.0 && std::abs(result) < m_largestTerm) {
        const int supported = DefaultDigits - DecimalExponent(m_largestTerm) + DecimalExponent(result);
        if (supported < 1)
            result = 0.0;
        else
            digits = std::min(digits, supported);
    }
    AppendNumber(out, result, digits);
}

double Conversion::Factor() const
{
    // Measured over a long way, so that an offset does not cost digits of it.
    constexpr double Way = 1099511627776.0;  // 2^40
    return (Convert(Way) - Convert(0.0)) / Way;
}

}  // namespace tool
