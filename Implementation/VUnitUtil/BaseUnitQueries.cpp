#include "VUnit/Catalogue.h"

#include <TuvoUtil/Units.h>
#include <basutl/BuNumber.h>

#include <charconv>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>

namespace {

// The exponent that "%e" prints; 0 for what has none.
int DecimalExponent(double value)
{
    char text[32];
    *std::to_chars(text, text + sizeof text - 1, value, std::chars_format::scientific, 6).ptr = '\0';
    const char* const exponent = std::strchr(text, 'e');
    return exponent != nullptr ? BuReadInt(exponent + 1) : 0;
}

double ToleranceFor(double factor)
{
    switch (DecimalExponent(factor)) {
        case -1:
        case 1:
            return 1e-4;
        case -3:
        case 3:
            return 1e-2;
        default:
            return 1e-3;
    }
}

}  // namespace

int VUnitUtlGetBaseIdFromName(const char* abbreviation)
{
    const _UnitBaseTypeStr* const unit = catalogue::FindUnit(abbreviation);
    return unit != nullptr ? unit->id : -1;
}

int VUnitUtlGetBaseTypeFromId(int unitId)
{
    const _UnitBaseTypeStr* const unit = catalogue::FindUnit(unitId);
    return unit != nullptr ? unit->baseType : -1;
}

const _UnitBaseTypeStr* VUnitUtlGetBaseTypeFromConversionFactor(int baseType, double factor, int)
{
    const VUnit& all = catalogue::Get();
    const _UnitBaseTypeStr* nearest = nullptr;
    double smallest = std::numeric_limits<double>::infinity();
    for (const _UnitBaseTypeStr* unit = all.m_baseUnits; unit != all.m_baseUnits + all.m_baseUnitCount; ++unit) {
        if (unit->baseType != baseType)
            continue;
        if (unit->conversionValue == factor)
            return unit;
        const double difference = std::abs(unit->conversionValue - factor);
        if (difference < smallest) {
            smallest = difference;
            nearest = unit;
        }
    }
    const double tolerance = ToleranceFor(factor);
    return smallest < std::abs(factor) * tolerance || smallest <= tolerance ? nearest : nullptr;
}
